#include "hosts/gstreamer/Target.h"

namespace gstreamer {

namespace {

/// Seeks that follow each other faster than this are those of a moving finger.
constexpr Instant fingerPause = nanoseconds(0.3);
/// Sound waits for so long whether the finger goes on: sound that jumps along with it would only crackle.
constexpr Instant settling = nanoseconds(0.1);
/// A finger that holds its slider still for so long has come to where it wants to be.
constexpr Instant resting = nanoseconds(0.15);

}  // namespace

void Target::seek(double position, Instant time, bool isHeld) {
  const bool quickly = time - lastSeek_ < settling;
  fingerMoves_ = isHeld || time - lastSeek_ < fingerPause;
  lastSeek_ = time;
  settlesAt_ = quickly && !hasPreviews_ ? time + settling : 0;
  if (isHeld) settlesAt_ = time + resting;
  position_ = position;
}

void Target::clear() {
  position_.reset();
  previewed_.reset();
}

Instant Target::due() const {
  const bool takesLong = !hasPreviews_ || previewed_ == position_;
  return takesLong ? settlesAt_ : 0;
}

Target::Step Target::next() {
  const double position = *position_;
  if (hasPreviews_ && fingerMoves_ && previewed_ != position_) {
    previewed_ = position_;
    return {position, true};
  }
  clear();
  fingerMoves_ = false;
  return {position, false};
}

}  // namespace gstreamer
