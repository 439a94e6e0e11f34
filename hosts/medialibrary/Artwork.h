#pragma once

#include "hosts/probe/MediaProbe.h"

#include <optional>
#include <string>
#include <string_view>

namespace medialibrary {

/// The address under which the screen host asks for the picture of the video at `path`:
/// "image://artwork/" and the path, percent-encoded throughout, its slashes included.
std::string artworkSource(std::string_view path);

/// The picture of the video at `path`, fitted into `largestSide` x `largestSide` pixels, never enlarged, from the
/// user's thumbnail cache, which file managers share: none where that holds none that is up to date. The film itself
/// is not opened. Any thread; never throws.
std::optional<probe::Still> keptArtwork(const std::string& path, int largestSide);

/// The file in which the thumbnail cache keeps a picture of the video at `path`, for other programs to show: one that
/// is up to date, of `wantedSide` x `wantedSide` pixels or more if there is one; none where there is none. Any
/// thread; never throws.
std::optional<std::string> keptArtworkFile(const std::string& path, int wantedSide);

}  // namespace medialibrary
