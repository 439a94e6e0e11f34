#pragma once

#include "platform/host/MainLoop.h"
#include "platform/host/MediaLibrary.h"

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

/// The videos in folders of the user's, sub-folders included, without hidden ones.
///
/// A file is an item if its name ends like a video's, and a look into it finds a duration and a picture. What a look
/// found is kept in memory for as long as the file stays the same (path, size, time of modification, identity). Two
/// threads of low priority begin looking at once, so that a query usually finds everything known. A query itself
/// lists the folders afresh, and waits a few seconds at most for files that were not looked into yet: what is not
/// known by then appears in the next query. One file is one item, whatever the number of its names and links.
///
/// Access always counts as granted: on this system nobody is asked whether an app may read the user's own videos
/// folder, so that nobody can refuse it either. A folder that is missing or may not be read has no items.
///
/// Main thread. Destroying it waits for the looks that are under way. `mainLoop` outlives the library.
std::unique_ptr<host::MediaLibrary> makeLibrary(host::MainLoop& mainLoop, LibraryOptions options);

}  // namespace medialibrary
