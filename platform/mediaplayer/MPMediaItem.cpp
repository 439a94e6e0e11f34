#include "platform/mediaplayer/MPMediaItem.h"

#include "platform/Platform.h"

Strong<NSObject> MPMediaItem::valueForProperty(const std::string& property) const {
  if (property == MPMediaItemPropertyTitle) return item_.title ? make<NSString>(*item_.title) : nullptr;
  if (property == MPMediaItemPropertyPlaybackDuration) return NSNumber::numberWithDouble(item_.duration);
  if (property == MPMediaItemPropertyArtwork) return make<MPMediaItemArtwork>(item_.artworkSource);
  if (property == MPMediaItemPropertyAssetURL) {
    Platform::current().ports().mediaEngine.expect(item_.url);
    return NSURL::URLWithString(item_.url);
  }
  return nullptr;
}
