#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace medialibrary {

/// What the indexer found in one file.
struct Finding {
  /// A media file with at least one track. Only what is readable, has a decodable picture and a duration is listed.
  bool isReadable = false;
  std::string reason;                ///< why it is not readable, one line of UTF-8 for people; else empty
  std::uint64_t mediaType = 8192;    ///< the media library's number for its kind
  std::optional<std::string> title;  ///< the title tag, one line of UTF-8
  double duration = 0.0;             ///< seconds
  int rotation = 0;                  ///< degrees clockwise that make the picture upright: 0, 90, 180 or 270
  int soundTracks = 0;
  int pictureTracks = 0;    ///< cover images do not count
  bool hasPicture = false;  ///< a picture track for which there is a decoder
  bool isProtected = false;

  bool operator==(const Finding&) const = default;
};

}  // namespace medialibrary
