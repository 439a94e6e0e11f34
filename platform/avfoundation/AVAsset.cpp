#include "platform/avfoundation/AVAsset.h"

#include "platform/Platform.h"

#include <cmath>

namespace {
constexpr std::int32_t durationTimescale = 1000000;
}

const host::MediaFacts& AVAsset::facts() const {
  if (!facts_) facts_ = Platform::current().ports().mediaEngine.facts(url_->absoluteString());
  return *facts_;
}

CMTime AVAsset::duration() const {
  const double seconds = facts().duration;
  return std::isfinite(seconds) && seconds > 0 ? CMTimeMakeWithSeconds(seconds, durationTimescale) : kCMTimeZero;
}

std::vector<Strong<AVAssetTrack>> AVAsset::tracksWithMediaType(const std::string& mediaType) const {
  const auto kind = mediaType == AVMediaTypeAudio   ? host::TrackKind::Audio
                    : mediaType == AVMediaTypeVideo ? host::TrackKind::Video
                                                    : host::TrackKind::Other;
  std::vector<Strong<AVAssetTrack>> tracks;
  for (const auto& track : facts().tracks) {
    if (track.kind == kind) tracks.push_back(make<AVAssetTrack>(track.identifier));
  }
  return tracks;
}
