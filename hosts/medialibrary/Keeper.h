#pragma once

#include "hosts/medialibrary/Looking.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace medialibrary {

/// Keeps the index true, on a thread of its own: opens it, searches the folders, watches them, and has other
/// processes look into the files that are new. Every operation on any thread; none of them waits for the disk.
class Keeper {
 public:
  struct Options {
    std::vector<std::string> folders;
    std::string locale;   ///< as in `LibraryOptions`
    std::string index;    ///< the index's file
    std::string spare;    ///< where the index is kept for as long as its own place cannot be used
    std::string indexer;  ///< the program that looks into files
    Pace pace = Pace::Full;
  };

  struct State {
    bool isOpen = false;         ///< the index can be read
    bool isSearching = false;    ///< the folders are being searched, or will be next
    bool missesChanges = false;  ///< some folders cannot be watched
    std::size_t unknown = 0;     ///< files that wait to be looked into
    std::size_t done = 0;        ///< looked into since there was last nothing to do
    std::optional<double> secondsLeft;
    std::uint64_t version = 0;  ///< another one whenever the index may hold something else

    bool operator==(const State&) const = default;
  };

  /// An index that was opened.
  struct Opening {
    std::string file;
    std::uint64_t number = 0;  ///< of openings so far: the file may be another one of the same name

    bool operator==(const Opening&) const = default;
  };

  /// `changed` is called on the keeper's thread, a few times per second at most while there is something to tell.
  Keeper(Options options, std::function<void()> changed);
  /// Ends the thread and its processes; what they have not finished is done the next time.
  ~Keeper();
  Keeper(const Keeper&) = delete;
  Keeper& operator=(const Keeper&) = delete;

  State state() const;
  /// Waits until the index can be read; none when `seconds` were not enough.
  std::optional<Opening> openIndex(double seconds) const;

  void setFolders(std::vector<std::string> folders);
  /// Searches everything, and looks once more into what could not be read.
  void rescan();
  /// Searches everything if there are folders that cannot be watched; else nothing happens.
  void refresh();
  /// How much of the machine looking into files may take from now on.
  void setPace(Pace pace);
  /// The index turned out to be damaged: it is set aside, whatever a check says, and everything is looked into again.
  void rebuild();

 private:
  class Thread;
  std::unique_ptr<Thread> thread_;
};

}  // namespace medialibrary
