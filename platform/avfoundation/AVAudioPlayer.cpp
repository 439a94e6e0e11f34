#include "platform/avfoundation/AVAudioPlayer.h"

#include "platform/Platform.h"

#include <algorithm>
#include <cmath>

Strong<AVAudioPlayer> AVAudioPlayer::initWithContentsOfURL_error(const Strong<NSURL>& url, Strong<NSError>* error) {
  const auto facts = Platform::current().ports().mediaEngine.facts(url->absoluteString());
  if (!facts.readable || !facts.soundOpens) {
    if (error != nullptr)
      *error = make<NSError>(facts.readable ? "the sound cannot be decoded" : "no readable media");
    return nullptr;
  }
  auto player = make<AVAudioPlayer>();
  player->open(url->absoluteString());
  return player;
}

void AVAudioPlayer::open(const std::string& url) {
  const auto end = [weak = weakReference(this)] {
    if (const auto player = weak.lock()) player->playing_ = false;
  };
  engine_ = Platform::current().ports().mediaEngine.openSound(url, {.ended = end, .failed = end});
}

void AVAudioPlayer::prepareToPlay() {
  engine_->prepare();
}

void AVAudioPlayer::setPan(float pan) {
  pan_ = std::isnan(pan) ? 0 : std::clamp(pan, -1.0F, 1.0F);
  engine_->setPan(pan_);
}

void AVAudioPlayer::setVolume(float volume) {
  volume_ = std::isnan(volume) ? 0 : std::clamp(volume, 0.0F, 1.0F);
  engine_->setVolume(volume_);
}

void AVAudioPlayer::play() {
  playing_ = true;
  engine_->play();
}

void AVAudioPlayer::pause() {
  playing_ = false;
  engine_->pause();
}

void AVAudioPlayer::stop() {
  playing_ = false;
  engine_->stop();
}

double AVAudioPlayer::currentTime() const {
  return engine_->position();
}

void AVAudioPlayer::setCurrentTime(double seconds) {
  engine_->seek(seconds);
}
