#include "hosts/desktop/Film.h"

#include "platform/avfoundation/AVPlayerLayer.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace desktop {

namespace {

/// Seconds by which a film may be elsewhere than was told: what was told is then told anew, or the film has jumped.
constexpr double tolerance = 0.1;
constexpr double jump = 1.0;

class Listener final : public NSObject {};

void press(UIButton& button) {
  // Not `UIButton::press`: what nobody touches need not be in sight.
  button.sendActionsForControlEvents(UIControlEvents::TouchUpInside);
}

void move(UISlider& slider, double value) {
  // Not `UISlider::adjust`, for the same reason, and because a film may have left the place at which its control,
  // which follows it once a second, still stands.
  const double step = slider.step();
  slider.setValue(static_cast<float>(step > 0 ? std::round(value / step) * step : value));
  slider.sendActionsForControlEvents(UIControlEvents::ValueChanged);
}

/// How far apart the two say that the film is, in seconds, at the time of `now`.
double distance(const FilmState& before, const FilmState& now) {
  return std::abs(before.positionAt(now.at) - now.position);
}

bool saysTheSame(const std::optional<FilmState>& before, const std::optional<FilmState>& now) {
  if (!before || !now) return before.has_value() == now.has_value();
  return before->load == now->load && before->length == now->length && before->volume == now->volume &&
         before->isPlaying == now->isPlaying && before->jumps == now->jumps && distance(*before, *now) < tolerance;
}

}  // namespace

double FilmState::positionAt(Clock::time_point time) const {
  double now = position;
  if (isPlaying) now += std::max(0.0, std::chrono::duration<double>(time - at).count());
  return length > 0 ? std::min(now, length) : now;
}

Film::Film(FilmControls controls) : controls_(std::move(controls)), listener_(make<Listener>()) {
  noteUse(*controls_.playPause, UIControlEvents::TouchUpInside);
  noteUse(*controls_.close, UIControlEvents::TouchUpInside);
  noteUse(*controls_.volume, UIControlEvents::ValueChanged);
  noteUse(*controls_.position, UIControlEvents::ValueChanged);
  controls_.position->addAction(
      listener_, [this](const Strong<UIControl>&) { wasMoved_ = true; }, UIControlEvents::ValueChanged);
}

void Film::noteUse(UIControl& control, UIControlEvents events) {
  control.addAction(
      listener_, [this](const Strong<UIControl>&) { emit used(); }, events);
}

/// A closed film leaves its layer behind, without a player.
Strong<AVPlayer> Film::player() const {
  const auto layers = controls_.view->layer()->sublayers();
  if (!layers) return nullptr;
  for (const auto& each : *layers) {
    const auto layer = std::dynamic_pointer_cast<AVPlayerLayer>(each);
    if (layer && layer->player()) return layer->player();
  }
  return nullptr;
}

bool Film::isPlaying() const {
  // The control offers what it would do.
  const auto image = controls_.playPause->imageForState(UIControlState::Normal);
  return image && image->name() == "pause" && isLoaded();
}

void Film::play() {
  if (!isPlaying()) playOrPause();
}

void Film::pause() {
  if (isPlaying()) playOrPause();
}

void Film::playOrPause() {
  if (isLoaded()) press(*controls_.playPause);
}

void Film::close() {
  if (isLoaded()) press(*controls_.close);
}

void Film::moveTo(double seconds) {
  if (isLoaded() && std::isfinite(seconds)) move(*controls_.position, seconds);
}

void Film::moveBy(double seconds) {
  if (const auto player = this->player()) moveTo(CMTimeGetSeconds(player->currentTime()) + seconds);
}

void Film::setVolume(double volume) {
  if (isLoaded() && !std::isnan(volume)) move(*controls_.volume, volume);
}

FilmState Film::read(const AVPlayer& player) const {
  const auto& asset = *player.currentItem()->asset();
  FilmState now;
  now.load = loads_;
  now.url = asset.URL()->absoluteString();
  now.length = CMTimeGetSeconds(asset.duration());
  now.volume = controls_.volume->value();
  now.isPlaying = isPlaying();
  now.jumps = jumps_;
  now.position = CMTimeGetSeconds(player.currentTime());
  now.at = FilmState::Clock::now();
  return now;
}

void Film::look() {
  const auto player = this->player();
  const bool isNew = player && player != loaded_.lock();
  loaded_ = player;
  if (isNew) ++loads_;
  const bool wasMoved = std::exchange(wasMoved_, false);
  auto now = player ? std::optional(read(*player)) : std::nullopt;
  if (now && state_ && !isNew && (wasMoved || distance(*state_, *now) >= jump)) now->jumps = ++jumps_;
  if (saysTheSame(state_, now)) return;
  state_ = std::move(now);
  emit changed();
  if (isNew) emit used();
}

}  // namespace desktop
