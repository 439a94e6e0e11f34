#pragma once

#include <string>

namespace medialibrary {

// Folders of the user's, absolute, as bytes. They are read from the environment at each call. Any thread, as long as
// nobody changes the environment.

/// Of $HOME, or else of the user data base.
std::string homeFolder();

/// Where thumbnails and the like are kept: $XDG_CACHE_HOME, or else `.cache` of the home folder (XDG base directory
/// specification).
std::string cacheFolder();

/// Where what an app has found out is kept: $XDG_DATA_HOME, or else `.local/share` of the home folder.
std::string dataFolder();

/// The videos folder that `user-dirs.dirs` names (xdg-user-dirs, "XDG_VIDEOS_DIR"), or else `Videos` of the home
/// folder. Naming the home folder itself is how that file says that there is no such folder.
std::string videosFolder();

}  // namespace medialibrary
