#pragma once

#include "hosts/gstreamer/Instant.h"

#include <cstdint>
#include <mutex>
#include <optional>

namespace gstreamer {

/// Where a player is. The position is never asked of a pipeline: it follows from the instant at which the player was
/// started, so that it can be told at any moment and two players started together always agree.
///
/// The engine's thread moves the timeline. What the main thread has commanded and the engine has not carried out yet
/// is announced, and until then the announced position is the answer.
class Timeline {
 public:
  /// Seconds. Any thread.
  double position() const { return positionAt(now()); }
  double positionAt(Instant instant) const;

  /// Main thread: `position` is the answer until the engine has carried out the command with the returned number, or
  /// a later one.
  std::uint64_t announce(double position);

  /// Engine's thread: stands still at `position`.
  void hold(double position);
  /// Engine's thread: is at `position` at `instant` (before that too, if it lies ahead) and goes on from there.
  void run(double position, Instant instant);
  /// Engine's thread: the command with this number has been carried out.
  void carriedOut(std::uint64_t announcement);
  /// Engine's thread: no position lies beyond `seconds`; 0 takes the bound away.
  void setLength(double seconds);
  double length() const;

 private:
  mutable std::mutex mutex_;
  double origin_ = 0.0;
  std::optional<Instant> runningSince_;
  double length_ = 0.0;
  std::optional<double> announced_;
  std::uint64_t announcements_ = 0;
};

}  // namespace gstreamer
