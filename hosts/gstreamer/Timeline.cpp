#include "hosts/gstreamer/Timeline.h"

#include <algorithm>

namespace gstreamer {

double Timeline::positionAt(Instant instant) const {
  const std::lock_guard lock(mutex_);
  double position = announced_.value_or(origin_);
  if (runningSince_ && !announced_) position += seconds(std::max<Instant>(0, instant - *runningSince_));
  return length_ > 0.0 ? std::min(position, length_) : position;
}

std::uint64_t Timeline::announce(double position) {
  const std::lock_guard lock(mutex_);
  announced_ = position;
  return ++announcements_;
}

void Timeline::hold(double position) {
  const std::lock_guard lock(mutex_);
  origin_ = position;
  runningSince_.reset();
}

void Timeline::run(double position, Instant instant) {
  const std::lock_guard lock(mutex_);
  origin_ = position;
  runningSince_ = instant;
}

void Timeline::carriedOut(std::uint64_t announcement) {
  const std::lock_guard lock(mutex_);
  if (announcement == announcements_) announced_.reset();
}

void Timeline::setLength(double seconds) {
  const std::lock_guard lock(mutex_);
  length_ = seconds;
}

double Timeline::length() const {
  const std::lock_guard lock(mutex_);
  return length_;
}

}  // namespace gstreamer
