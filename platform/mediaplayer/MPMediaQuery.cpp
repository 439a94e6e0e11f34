#include "platform/mediaplayer/MPMediaQuery.h"

#include "platform/Platform.h"
#include "platform/foundation/Console.h"

void MPMediaQuery::addFilterPredicate(const Strong<MPMediaPropertyPredicate>& predicate) {
  if (predicate->property() != MPMediaItemPropertyMediaType) {
    fatalError("the media library cannot be asked for " + predicate->property());
  }
  mediaType_ = static_cast<std::uint64_t>(predicate->value()->integerValue());
}

std::optional<MPMediaQuery::Items> MPMediaQuery::items() const {
  if (!mediaType_) fatalError("a media query needs the kind of media that it is about");
  const auto found = Platform::current().ports().mediaLibrary.items(*mediaType_);
  if (!found) return std::nullopt;
  Items items;
  items.reserve(found->count());
  for (std::size_t i = 0; i < found->count(); ++i) items.push_back(make<MPMediaItem>(found, i));
  return items;
}
