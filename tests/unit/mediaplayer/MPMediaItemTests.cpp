#include "platform/mediaplayer/MPMediaItem.h"

#include "tests/unit/foundation/BarePlatform.h"

#include <gmock/gmock.h>

using testing::ElementsAre;

namespace {

Strong<MPMediaItem> itemOf(host::LibraryItem item) {
  return make<MPMediaItem>(std::make_shared<simulated::LibraryItems>(std::vector<host::LibraryItem>{std::move(item)}),
                           0);
}

class MPMediaItemTest : public BarePlatform {
 protected:
  template <class T>
  Strong<T> value(const char* property) const {
    return std::dynamic_pointer_cast<T>(item->valueForProperty(property));
  }

  Strong<MPMediaItem> item = itemOf({"file:///videos/mare.mp4", "mare", 3725.9, "image://artwork/mare"});
};

TEST_F(MPMediaItemTest, GivesEachPropertyInItsOwnClass) {
  ASSERT_TRUE(value<NSString>(MPMediaItemPropertyTitle));
  ASSERT_TRUE(value<NSNumber>(MPMediaItemPropertyPlaybackDuration));
  ASSERT_TRUE(value<NSURL>(MPMediaItemPropertyAssetURL));
  EXPECT_EQ(value<NSString>(MPMediaItemPropertyTitle)->text(), "mare");
  EXPECT_EQ(value<NSNumber>(MPMediaItemPropertyPlaybackDuration)->doubleValue(), 3725.9);
  EXPECT_EQ(value<NSURL>(MPMediaItemPropertyAssetURL)->absoluteString(), "file:///videos/mare.mp4");
}

TEST_F(MPMediaItemTest, HasNoOtherProperty) {
  EXPECT_EQ(item->valueForProperty("albumTitle"), nullptr);
}

TEST_F(MPMediaItemTest, MayHaveNoTitle) {
  item = itemOf({"file:///videos/mare.mp4", std::nullopt, 1, ""});
  EXPECT_EQ(item->valueForProperty(MPMediaItemPropertyTitle), nullptr);
}

TEST_F(MPMediaItemTest, AnAddressThatIsNoneIsNone) {
  item = itemOf({"no address", "mare", 1, ""});
  EXPECT_EQ(item->valueForProperty(MPMediaItemPropertyAssetURL), nullptr);
}

TEST_F(MPMediaItemTest, OnlyAskingForTheAddressTellsTheEngineToExpectTheFilm) {
  item->valueForProperty(MPMediaItemPropertyTitle);
  item->valueForProperty(MPMediaItemPropertyArtwork);
  EXPECT_THAT(host.mediaEngine.expected, ElementsAre());
  item->valueForProperty(MPMediaItemPropertyAssetURL);
  EXPECT_THAT(host.mediaEngine.expected, ElementsAre("file:///videos/mare.mp4"));
}

TEST_F(MPMediaItemTest, ItsArtworkAnswersWithAnImageAtAnySize) {
  const auto artwork = value<MPMediaItemArtwork>(MPMediaItemPropertyArtwork);
  ASSERT_TRUE(artwork);
  for (const CGSize size : {CGSize{60, 60}, CGSize{1, 2000}, CGSize{0, 0}}) {
    const auto image = artwork->imageWithSize(size);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->size(), size);
    EXPECT_EQ(image->source(), "image://artwork/mare");
  }
}

}  // namespace
