#pragma once

#include "hosts/medialibrary/FolderScan.h"
#include "hosts/medialibrary/FolderWatch.h"
#include "hosts/medialibrary/Index.h"
#include "hosts/medialibrary/Stocktaking.h"

#include <chrono>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace medialibrary {

/// Searches the folders of the library, all of them or those that changed, writes what it finds into the index, and
/// has every folder watched from before it is listed, so that nothing is missed in between. One thread; operations
/// may throw `IndexError`.
class FolderSearch {
 public:
  FolderSearch(Index& index, FolderWatch& watch) : index_(index), watch_(watch) {}

  /// Begins anew, with everything in `folders` and below.
  void beginAll(std::vector<std::string> folders);
  /// Everything once more, in the folders of the last time.
  void beginAll() { beginAll(roots_); }
  /// These folders changed: they are searched themselves, and what is new below them. Of no effect for folders that
  /// are no part of the library.
  void add(const std::set<std::string>& folders);
  bool isUnderWay() const { return stocktaking_.has_value(); }
  /// Goes on until `time`, at least by one folder. All of it is one transaction.
  void goOn(std::chrono::steady_clock::time_point time);

  /// Whether there are folders that cannot be watched.
  bool hasUnwatchedFolders() const { return hasUnwatchedFolders_; }
  /// Folders with files that somebody was still writing when they were searched.
  std::set<std::string> unfinishedFolders() { return std::exchange(unfinishedFolders_, {}); }

 private:
  enum class Extent { Everything, Changes };

  void step();
  void scanOn();
  void searchAgain(const std::string& folder);
  void found(const ScannedFolder& folder);
  void meetChildren(const ScannedFolder& folder);
  void lose(const std::string& folder);
  void finish();
  bool isRoot(const std::string& folder) const;
  void watchFolder(const std::string& folder);

  Index& index_;
  FolderWatch& watch_;
  std::vector<std::string> roots_;
  std::set<std::string> searched_;  // folders of the library, as of the last search of everything and since
  bool hasUnwatchedFolders_ = false;
  std::set<std::string> unfinishedFolders_;

  // The search that is under way.
  std::optional<Stocktaking> stocktaking_;
  Extent extent_ = Extent::Everything;
  std::unique_ptr<FolderScan> scan_;
  std::vector<std::string> newFolders_;  // to be scanned with all below
  std::set<std::string> changedFolders_;
  bool hasOtherNames_ = false;  // some file or folder has names of which only one is listed
};

}  // namespace medialibrary
