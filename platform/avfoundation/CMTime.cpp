#include "platform/avfoundation/CMTime.h"

#include <algorithm>
#include <cmath>

CMTime CMTimeMakeWithSeconds(double seconds, std::int32_t preferredTimescale) {
  constexpr double limit = 9.0e18;
  const double parts = std::isnan(seconds) ? 0 : std::clamp(std::trunc(seconds * preferredTimescale), -limit, limit);
  return {static_cast<std::int64_t>(parts), preferredTimescale};
}

double CMTimeGetSeconds(CMTime time) {
  return static_cast<double>(time.value) / time.timescale;
}
