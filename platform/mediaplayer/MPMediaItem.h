#pragma once

#include "platform/foundation/Values.h"
#include "platform/host/MediaLibrary.h"
#include "platform/uikit/UIImage.h"

#include <cstddef>
#include <memory>
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

/// One item of the media library, which keeps the query's answer that it is part of: a hundred thousand of them have
/// to fit into a list.
class MPMediaItem : public NSObject {
 public:
  MPMediaItem(std::shared_ptr<const host::LibraryItems> items, std::size_t index)
      : items_(std::move(items)), index_(index) {}

  /// The value of a property in its own class (`NSString`, `NSNumber`, `MPMediaItemArtwork`, `NSURL`), or none.
  /// Asking for the address tells the media engine that the film is about to be played.
  virtual Strong<NSObject> valueForProperty(const std::string& property) const;

 private:
  std::shared_ptr<const host::LibraryItems> items_;
  std::size_t index_;
};
