#pragma once

#include <cstdint>

/// A media time as a whole number of parts of a second.
struct CMTime {
  std::int64_t value = 0;
  std::int32_t timescale = 1;
  bool operator==(const CMTime&) const = default;
};

inline constexpr CMTime kCMTimeZero{0, 1};

/// The time of `seconds` in parts of 1/`preferredTimescale` s, the rest cut off: 12.7 s at timescale 1 is 12 s.
CMTime CMTimeMakeWithSeconds(double seconds, std::int32_t preferredTimescale);

/// `time` in seconds.
double CMTimeGetSeconds(CMTime time);
