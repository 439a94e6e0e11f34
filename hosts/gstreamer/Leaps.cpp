#include "hosts/gstreamer/Leaps.h"

#include <array>
#include <cstddef>

namespace gstreamer {

namespace {

constexpr std::array leaps = {0.5, 1.0, 4.0, 12.0};
/// Damage that is met after so many good seconds is other damage.
constexpr double goodSeconds = 5.0;

}  // namespace

std::optional<double> Leaps::next(double place) {
  if (tried_ == 0 || place - metAt_ > goodSeconds) {
    tried_ = 0;
    metAt_ = place;
  }
  if (tried_ == static_cast<int>(leaps.size())) return std::nullopt;
  return leaps.at(static_cast<std::size_t>(tried_++));
}

}  // namespace gstreamer
