#pragma once

#include "platform/host/MediaEngine.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace probe {

/// What one media file holds, from its structure and its first samples.
struct FileFacts {
  /// A file is readable when it is a regular file of a known container (by its contents; the name does not count)
  /// that describes at least one track of sound or moving pictures. Tracks are numbered in file order, from 1;
  /// cover images count as `Other`. `soundOpens` refers to the track that the file marks as its default, or else
  /// the best one; nothing is decoded of a protected file, whose sound counts as not opening. Where the header
  /// states no duration it is estimated, if the container allows that, or found at the end of the file; broadcasts
  /// begin at 0.
  host::MediaFacts media;
  /// What went wrong where `media.readable` or `media.soundOpens` is false, in words for a log.
  std::string reason;
  /// The title tag, one line of UTF-8 without blanks at its ends, not empty.
  std::optional<std::string> title;
  /// The media library's kind: the container's media-kind tag (`stik` of MP4 files, the like of Matroska) in the
  /// library's own numbers, 8192 (home video) where there is none.
  std::uint64_t mediaType = 8192;
  /// A moving picture track (a cover image does not count) for whose format there is a decoder.
  bool hasPicture = false;
  /// Degrees clockwise that make the picture upright: 0, 90, 180 or 270. A mirror image, which no turn makes upright,
  /// counts by where the upper edge of its stored picture belongs.
  int rotation = 0;
};

/// The reason of a file that needs more memory than the process may have.
inline constexpr const char* outOfMemory = "out of memory";

/// Looks into the file at `path` (bytes, as the file system has them). Blocks; any thread; never throws.
/// `deadlineSeconds` bounds the look: past it the file counts as unreadable. (A read that the file system itself
/// does not return from cannot be cut short.) The first use turns FFmpeg's own log off for the whole process.
FileFacts look(const std::string& path, double deadlineSeconds);

/// A picture out of a file, upright, of square pixels.
struct Still {
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> bgrx;  ///< rows of width x 4 bytes: blue, green, red, 255
};

/// A picture that stands for the film: a key frame that is neither black nor flat, looked for at 10 %, then 30 %,
/// then 50 % of the length, or else the last of these that could be decoded. Fitted into `largestSide` x
/// `largestSide` pixels, proportions kept, never enlarged. Blocks; any thread; never throws.
/// None when no frame can be decoded, and for protected files.
std::optional<Still> representativeStill(const std::string& path, int largestSide, double deadlineSeconds);

/// What `look` and `representativeStill` tell, for little more than the price of one of them.
struct FactsAndStill {
  FileFacts facts;
  std::optional<Still> still;
};

/// Both at once. Blocks; any thread; never throws. `deadlineSeconds` bounds the look and, once more, the search for
/// the still in a file in which one cannot seek.
FactsAndStill lookWithStill(const std::string& path, int largestSide, double deadlineSeconds);

}  // namespace probe
