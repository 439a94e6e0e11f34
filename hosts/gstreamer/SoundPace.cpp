#include "hosts/gstreamer/SoundPace.h"

#include <algorithm>
#include <cmath>

namespace gstreamer {

namespace {

/// A device that was just started is compared with the clock so often, any other one less.
constexpr double pauseAtStart = 0.05;
constexpr double pauseAtEase = 0.2;
constexpr std::size_t manyAtStart = 20;
/// Lags that lie within this say the same.
constexpr double sameLag = 0.05;
/// Wireless devices are late by a good part of this; one that begins later still was asleep.
constexpr double mostStartLag = 0.5;
/// No device gains or loses faster: half a thousandth.
constexpr double mostDriftStep = 0.0005 * pauseAtEase;
/// A device that is suddenly later than this did not drift but stand still.
constexpr double stall = 0.15;
/// A skip that brings less than this was no use.
constexpr double leastGain = 0.05;
/// Nothing is heard before it was handed over, and nothing suddenly earlier; a server that says so is guessing.
constexpr double mostLead = 0.05;
/// No device is this far from its way for long. After it stood still, a server may tell for tens of seconds that it
/// is seconds ahead or behind while it is not: the time that it tells never goes back, even where it was a wrong
/// guess.
constexpr double absurdLag = 3.0;
/// How far the picture is moved at a time: a change of speed by a twentieth, which nobody sees.
constexpr double leastDelayStep = 0.001;
constexpr double mostDelayStep = 0.01;

}  // namespace

void SoundPace::begin(double expected) {
  delay_ = usual_ = expected;
  drifted_ = 0.0;
  settled_ = false;
  startLag_.reset();
  told_ = late_ = early_ = absurd_ = 0;
}

double SoundPace::pause() const {
  return settled_ || told_ >= manyAtStart ? pauseAtEase : pauseAtStart;
}

SoundPace::Advice SoundPace::take(double lag) {
  newest_.at(told_++ % certain) = lag;
  absurd_ = std::abs(lag - usual_) > absurdLag ? absurd_ + 1 : 0;
  if (absurd_ < certain) return settled_ ? follow(lag) : settle(lag);
  absurd_ = 0;
  return Advice::Renew;
}

/// What the newest lags say, where they say the same.
std::optional<double> SoundPace::agreed() const {
  if (told_ < certain) return std::nullopt;
  auto sorted = newest_;
  std::sort(sorted.begin(), sorted.end());
  if (sorted.back() - sorted.front() > sameLag) return std::nullopt;
  return sorted.at(certain / 2);
}

/// A start is a jump of picture and sound anyway, so the picture goes to its place at once.
SoundPace::Advice SoundPace::settle(double lag) {
  const auto found = agreed();
  if (found && *found > mostStartLag) return skip(*found);
  if (found && *found > -mostLead) {
    accept(*found);
    startLag_ = *found;
  } else if (lag > -mostLead && lag < mostStartLag) {
    moveTowards(lag);
  }
  return Advice::Follow;
}

SoundPace::Advice SoundPace::follow(double lag) {
  late_ = lag > usual_ + stall ? late_ + 1 : 0;
  early_ = lag < usual_ - mostLead ? early_ + 1 : 0;
  if (late_ == certain) return skip(lag);
  if (early_ >= certain) {
    // Another device, or one that has caught up.
    if (const auto found = agreed(); found && *found > drifted_ - mostLead) accept(*found);
  } else if (late_ + early_ == 0) {
    const double drift = std::clamp(lag - usual_, -mostDriftStep, mostDriftStep);
    usual_ += drift;
    drifted_ += drift;
    moveTowards(lag);
  }
  return Advice::Follow;
}

/// A skip that changed nothing was not about a stall: such a lag is the way of the device.
SoundPace::Advice SoundPace::skip(double lag) {
  late_ = 0;
  if (beforeSkip_ && lag > *beforeSkip_ - leastGain) {
    accept(lag);
    return Advice::Follow;
  }
  beforeSkip_ = lag;
  return Advice::Skip;
}

void SoundPace::accept(double lag) {
  delay_ = usual_ = lag;
  settled_ = true;
  beforeSkip_.reset();
}

void SoundPace::moveTowards(double lag) {
  const double step = std::clamp(lag - delay_, -mostDelayStep, mostDelayStep);
  if (std::abs(step) >= leastDelayStep) delay_ += step;
}

}  // namespace gstreamer
