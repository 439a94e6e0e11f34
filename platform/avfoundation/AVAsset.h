#pragma once

#include "platform/avfoundation/CMTime.h"
#include "platform/foundation/Values.h"
#include "platform/host/MediaEngine.h"

#include <optional>
#include <string>
#include <vector>

inline constexpr const char* AVMediaTypeAudio = "soun";
inline constexpr const char* AVMediaTypeVideo = "vide";

/// One track of a medium.
class AVAssetTrack final : public NSObject {
 public:
  explicit AVAssetTrack(int trackID) : trackID_(trackID) {}
  int trackID() const { return trackID_; }

 private:
  int trackID_;
};

/// A medium and what is known of it; looked into when first asked.
class AVAsset final : public NSObject {
 public:
  explicit AVAsset(Strong<NSURL> url) : url_(std::move(url)) {}

  const Strong<NSURL>& URL() const { return url_; }
  bool hasProtectedContent() const { return facts().hasProtectedContent; }
  /// Always finite; zero where it is not known.
  CMTime duration() const;
  /// In file order.
  std::vector<Strong<AVAssetTrack>> tracksWithMediaType(const std::string& mediaType) const;

 private:
  const host::MediaFacts& facts() const;

  Strong<NSURL> url_;
  mutable std::optional<host::MediaFacts> facts_;
};
