#pragma once

#include "hosts/medialibrary/FolderScan.h"
#include "hosts/medialibrary/Index.h"

#include <set>
#include <string>
#include <vector>

namespace medialibrary {

/// Brings the index in line with what a search of folders finds: each folder is compared as it is found, and what has
/// gone is decided on at the end, when everything has been seen that may have moved.
///
/// A file that is found under another name keeps its row. One that has gone from a file system that is still there
/// loses it; one whose drive was taken away, or whose folder is no part of the library any more, is only not present,
/// so that it need not be looked into again when it comes back. One thread; operations may throw `IndexError`.
class Stocktaking {
 public:
  explicit Stocktaking(Index& index) : index_(index) {}

  void compare(const ScannedFolder& folder);
  /// The folder is not there any more, with everything in it and below it.
  void loseFolder(const std::string& path);
  /// Whatever lies in none of the folders that were compared is lost.
  void loseAllOthers();

  struct Outcome {
    std::vector<VideoFile> beingWritten;  ///< left out, because somebody is still writing them
    bool hasOtherNames = false;           ///< some files have several names, of which only one is listed
    bool hasLosses = false;
  };
  Outcome finish();

 private:
  void meet(const VideoFile& found, const IndexedFile* known);
  void meetAgain(const VideoFile& found, const IndexedFile& known);
  void meetNew(const VideoFile& found);
  void lose(const std::vector<IndexedFile>& files);
  void letGo(const IndexedFile& file);

  Index& index_;
  std::set<std::string> compared_;
  std::vector<IndexedFile> lost_;
  Outcome outcome_;
};

}  // namespace medialibrary
