#pragma once

#include <optional>
#include <string>

namespace medialibrary {

/// What a video is called: its title tag; without one, the name of the file at `path` without its ending, or with it
/// where nothing would be left. One line of UTF-8.
std::string titleOf(const std::string& path, const std::optional<std::string>& titleTag);

}  // namespace medialibrary
