#include "platform/mediaplayer/MPMediaItem.h"

#include "platform/Platform.h"

Strong<NSObject> MPMediaItem::valueForProperty(const std::string& property) const {
  const host::LibraryItem item = items_->item(index_);
  if (property == MPMediaItemPropertyTitle) return item.title ? make<NSString>(*item.title) : nullptr;
  if (property == MPMediaItemPropertyPlaybackDuration) return NSNumber::numberWithDouble(item.duration);
  if (property == MPMediaItemPropertyArtwork) return make<MPMediaItemArtwork>(item.artworkSource);
  if (property == MPMediaItemPropertyAssetURL) {
    Platform::current().ports().mediaEngine.expect(item.url);
    return NSURL::URLWithString(item.url);
  }
  return nullptr;
}
