#pragma once

#include "platform/host/MainLoop.h"
#include "platform/host/MediaLibrary.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace medialibrary {

struct LibraryOptions {
  /// The folders whose videos make up the library, absolute, as bytes; `videosFolder()` where there are none.
  std::vector<std::string> folders;
  /// The locale whose collation orders the titles ("it_IT"; "C" and "POSIX" mean that of no language in particular);
  /// the one of the environment (LC_ALL, LC_COLLATE, LANG) where it is empty.
  std::string locale;
  std::string index;    ///< the file that holds the index, absolute; `indexFile()` where it is empty
  std::string indexer;  ///< the program that looks into files, absolute; `indexerProgram()` where it is empty
  /// Where the index is kept from the moment on that its own place cannot be used (a full disk, a home folder that
  /// may not be written to), until the library ends; nowhere where it is empty, and then nothing new is listed until
  /// its own place can be used.
  std::string spare;
};

/// A media library whose folders can be changed while it is in use.
class FolderLibrary : public host::MediaLibrary {
 public:
  /// What there is, as far as that is known.
  struct Contents {
    std::size_t items = 0;         ///< of the media type that was asked for
    std::size_t unknownFiles = 0;  ///< not looked into yet; each may turn out to be an item
    std::size_t unreadableFiles = 0;
    bool isSearching = false;  ///< the folders are being searched; more files may turn up
  };
  /// How far the looking into files is, counted from when there was last nothing to do.
  struct Progress {
    std::size_t done = 0;
    std::size_t total = 0;              ///< 0 when there is nothing to do
    std::optional<double> secondsLeft;  ///< as soon as there is enough to judge by
  };
  struct UnreadableFile {
    std::string path;    ///< absolute, as bytes
    std::string reason;  ///< one line of UTF-8
  };

  /// The library is made up of `folders` from the next query on; what was found in those that stay is not forgotten.
  virtual void setFolders(std::vector<std::string> folders) = 0;
  virtual Contents contents(std::uint64_t mediaType) = 0;
  virtual Progress progress() = 0;
  /// What the video at `path` (absolute, as bytes) is called in the list; made of its name where it is not known.
  virtual std::string title(const std::string& path) = 0;
  /// By path, `most` at most.
  virtual std::vector<UnreadableFile> unreadableFiles(std::size_t most) = 0;
  /// Searches all folders again and looks once more into what could not be read.
  virtual void rescan() = 0;
  /// Searches again those folders that cannot be watched, because somebody is about to ask what there is.
  virtual void refresh() = 0;
  /// Looking into files takes only a little of the machine while `isGentle`: something that must not falter is going
  /// on.
  virtual void setGentle(bool isGentle) = 0;
  /// `changed` is called whenever one of the above may have changed, a few times per second at most.
  virtual void setChanged(std::function<void()> changed) = 0;
};

/// The videos in folders of the user's, sub-folders included, without hidden ones.
///
/// A file is an item if its name ends like a video's, it is complete, and a look into it found a duration and a
/// picture. What a look found is kept in an index on disk for as long as the file stays the same (path, size, time of
/// modification, identity). A thread of its own keeps the index true: it searches the folders, watches them, and has
/// other processes look into what is new. A query answers from the index and waits for none of that. One file is one
/// item, whatever the number of its names and links.
///
/// Access always counts as granted: whether the app may read these folders is asked and decided by whoever makes the
/// library, before it does. A folder that is missing or may not be read has no items.
///
/// Main thread. Destroying it ends its thread and processes without waiting for looks that are under way. `mainLoop`
/// outlives the library.
std::unique_ptr<FolderLibrary> makeLibrary(host::MainLoop& mainLoop, LibraryOptions options);

/// Where the index is kept: `quillop/library.db` in $XDG_DATA_HOME, or else in `.local/share` of the home folder.
std::string indexFile();
/// `quillop-indexer` beside the running program, as it is in a build, or else where the two are installed.
std::string indexerProgram();

}  // namespace medialibrary
