#include "platform/avfoundation/AVPlayer.h"

#include "platform/Platform.h"
#include "platform/foundation/NSNotificationCenter.h"

namespace {
constexpr std::int32_t clockTimescale = 1000000;
}

void AVPlayerItem::setAudioMix(Strong<AVMutableAudioMix> mix) {
  audioMix_ = std::move(mix);
  if (audioMixChanged_) audioMixChanged_();
}

Strong<AVPlayer> AVPlayer::playerWithURL(const Strong<NSURL>& url) {
  auto player = make<AVPlayer>(url);
  player->open();
  return player;
}

AVPlayer::AVPlayer(const Strong<NSURL>& url) : currentItem_(make<AVPlayerItem>(url)) {}

AVPlayer::~AVPlayer() {
  if (currentItem_) currentItem_->audioMixChanged_ = nullptr;
}

void AVPlayer::open() {
  const auto end = [weak = weakReference(this)] {
    if (const auto player = weak.lock()) player->didReachEnd();
  };
  engine_ = Platform::current().ports().mediaEngine.openPicture(currentItem_->asset()->URL()->absoluteString(),
                                                                {.ended = end, .failed = end});
  currentItem_->audioMixChanged_ = [this] { engine_->setSilenced(silencedTracks()); };
}

std::vector<int> AVPlayer::silencedTracks() const {
  std::vector<int> silenced;
  const auto& mix = currentItem_->audioMix();
  if (!mix) return silenced;
  for (const auto& parameters : mix->inputParameters()) {
    if (parameters->volume() == 0) silenced.push_back(parameters->trackID());
  }
  return silenced;
}

void AVPlayer::didReachEnd() {
  wakefulness_ = nullptr;
  if (actionAtItemEnd_ == AVPlayerActionAtItemEnd::Pause) pause();
  NSNotificationCenter::defaultCenter().postNotificationName_object(AVPlayerItemDidPlayToEndTimeNotification,
                                                                    currentItem_);
}

void AVPlayer::play() {
  wakefulness_ = Platform::current().wakefulness();
  engine_->play();
}

void AVPlayer::pause() {
  wakefulness_ = nullptr;
  engine_->pause();
}

void AVPlayer::seekToTime(CMTime time) {
  engine_->seek(CMTimeGetSeconds(time));
}

CMTime AVPlayer::currentTime() const {
  return CMTimeMakeWithSeconds(engine_->position(), clockTimescale);
}

std::shared_ptr<host::PictureStream> AVPlayer::pictures() const {
  return engine_->pictures();
}
