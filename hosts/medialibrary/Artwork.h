#pragma once

#include "hosts/probe/MediaProbe.h"

#include <optional>
#include <string>
#include <string_view>

namespace medialibrary {

/// The address under which the screen host asks for the picture of the video at `path`:
/// "image://artwork/" and the path, percent-encoded throughout, its slashes included.
std::string artworkSource(std::string_view path);

/// The path that `encoded` stands for, which is what follows "image://artwork/" in an address; whatever has been
/// decoded already may stay so, as long as no "%25" is. Bytes, any thread.
std::string pathOfArtwork(std::string_view encoded);

/// The picture of the video at `path`, fitted into `largestSide` x `largestSide` pixels, never enlarged.
///
/// Taken from the user's thumbnail cache, which file managers share, if that holds one that is up to date; otherwise
/// made from the film, which takes some ten milliseconds, and stored there. None when there is no picture, which is
/// looked into again at the next call. Blocks; any thread; never throws.
std::optional<probe::Still> artwork(const std::string& path, int largestSide);

}  // namespace medialibrary
