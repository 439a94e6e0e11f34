#pragma once

#include <chrono>
#include <cstdint>

namespace gstreamer {

/// Nanoseconds of the one clock that everything here runs on: the system's monotonic clock, which GStreamer's system
/// clock (its default kind) and `std::chrono::steady_clock` both read. Asking it needs no GStreamer.
using Instant = std::int64_t;

inline Instant now() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

/// The nearest one: cut off, a time computed in seconds would fall before the frame that begins at it.
constexpr Instant nanoseconds(double seconds) {
  return static_cast<Instant>(seconds * 1e9 + (seconds < 0.0 ? -0.5 : 0.5));
}
constexpr double seconds(Instant nanoseconds) {
  return static_cast<double>(nanoseconds) / 1e9;
}

}  // namespace gstreamer
