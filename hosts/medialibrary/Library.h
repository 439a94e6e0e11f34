#pragma once

#include "platform/host/MainLoop.h"
#include "platform/host/MediaLibrary.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace medialibrary {

struct LibraryOptions {
  /// The folders whose videos make up the library, absolute, as bytes; `videosFolder()` where there are none.
  std::vector<std::string> folders;
  /// The locale whose collation orders the titles ("it_IT"; "C" and "POSIX" mean that of no language in
  /// particular); the one of the environment (LC_ALL, LC_COLLATE, LANG) where it is empty.
  std::string locale;
};

/// A media library whose folders can be changed while it is in use.
class FolderLibrary : public host::MediaLibrary {
 public:
  struct Contents {
    std::size_t items = 0;
    std::size_t unknownFiles = 0;  ///< not looked into yet; each may turn out to be an item
  };

  /// The library is made up of `folders` from the next query on; what was found in those that stay is not forgotten.
  virtual void setFolders(std::vector<std::string> folders) = 0;
  /// How much there is of `mediaType` as far as that is known. Waits for nothing; looking into what is not known yet
  /// begins, so that asking again tells more.
  virtual Contents contents(std::uint64_t mediaType) = 0;
};

/// The videos in folders of the user's, sub-folders included, without hidden ones.
///
/// A file is an item if its name ends like a video's, and a look into it finds a duration and a picture. What a look
/// found is kept in memory for as long as the file stays the same (path, size, time of modification, identity). Two
/// threads of low priority begin looking at once, so that a query usually finds everything known. A query itself
/// lists the folders afresh, and waits a few seconds at most for files that were not looked into yet: what is not
/// known by then appears in the next query. One file is one item, whatever the number of its names and links.
///
/// Access always counts as granted: whether the app may read these folders is asked and decided by whoever makes the
/// library, before it does. A folder that is missing or may not be read has no items.
///
/// Main thread. Destroying it waits for the looks that are under way. `mainLoop` outlives the library.
std::unique_ptr<FolderLibrary> makeLibrary(host::MainLoop& mainLoop, LibraryOptions options);

}  // namespace medialibrary
