#pragma once

#include "platform/foundation/Values.h"
#include "platform/host/MediaLibrary.h"
#include "platform/uikit/UIImage.h"

#include <string>

inline constexpr const char* MPMediaItemPropertyMediaType = "mediaType";
inline constexpr const char* MPMediaItemPropertyTitle = "title";
inline constexpr const char* MPMediaItemPropertyPlaybackDuration = "playbackDuration";
inline constexpr const char* MPMediaItemPropertyArtwork = "artwork";
inline constexpr const char* MPMediaItemPropertyAssetURL = "assetURL";

/// The picture that stands for an item.
class MPMediaItemArtwork final : public NSObject {
 public:
  explicit MPMediaItemArtwork(std::string source) : source_(std::move(source)) {}

  /// The picture for that size in points; at zero too, where whoever shows it decides. Its pixels may arrive later.
  Strong<UIImage> imageWithSize(CGSize size) const { return make<UIImage>(source_, size); }

 private:
  std::string source_;
};

/// One item of the media library.
class MPMediaItem : public NSObject {
 public:
  explicit MPMediaItem(host::LibraryItem item) : item_(std::move(item)) {}

  /// The value of a property in its own class (`NSString`, `NSNumber`, `MPMediaItemArtwork`, `NSURL`), or none.
  /// Asking for the address tells the media engine that the film is about to be played.
  virtual Strong<NSObject> valueForProperty(const std::string& property) const;

 private:
  host::LibraryItem item_;
};
