#include "platform/mediaplayer/MPMediaQuery.h"

#include "tests/unit/foundation/BarePlatform.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class MPMediaQueryTest : public BarePlatform {
 protected:
  static std::vector<std::string> titles(const MPMediaQuery::Items& items) {
    std::vector<std::string> result;
    for (const auto& item : items) {
      const auto title = std::dynamic_pointer_cast<NSString>(item->valueForProperty(MPMediaItemPropertyTitle));
      result.push_back(title ? title->text() : "(none)");
    }
    return result;
  }
  static Strong<MPMediaQuery> queryFor(std::uint64_t mediaType) {
    auto query = make<MPMediaQuery>();
    query->addFilterPredicate(MPMediaPropertyPredicate::predicateWithValue_forProperty(
        NSNumber::numberWithInteger(static_cast<std::int64_t>(mediaType)), MPMediaItemPropertyMediaType));
    return query;
  }
};

TEST_F(MPMediaQueryTest, AHomeVideoIs8192) {
  EXPECT_EQ(MPMediaTypeHomeVideo, 8192U);
}

TEST_F(MPMediaQueryTest, FindsTheItemsOfThatKindInTheLibrarysOrder) {
  host.mediaLibrary.itemsByType[8192] = {{"file:///b", "b", 1, ""}, {"file:///a", "a", 1, ""}};
  host.mediaLibrary.itemsByType[256] = {{"file:///film", "film", 1, ""}};
  const auto items = queryFor(MPMediaTypeHomeVideo)->items();
  ASSERT_TRUE(items);
  EXPECT_THAT(titles(*items), ElementsAre("b", "a"));
}

TEST_F(MPMediaQueryTest, FindsNothingInAnEmptyLibrary) {
  const auto items = queryFor(MPMediaTypeHomeVideo)->items();
  ASSERT_TRUE(items);
  EXPECT_THAT(*items, IsEmpty());
}

TEST_F(MPMediaQueryTest, HasNoItemsAtAllWhereTheLibraryCannotBeQueried) {
  host.mediaLibrary.fails = true;
  EXPECT_EQ(queryFor(MPMediaTypeHomeVideo)->items(), std::nullopt);
}

TEST_F(MPMediaQueryTest, AsksTheLibraryEachTime) {
  const auto query = queryFor(MPMediaTypeHomeVideo);
  EXPECT_EQ(host.mediaLibrary.queries, 0);
  query->items();
  host.mediaLibrary.itemsByType[8192] = {{"file:///new", "new", 1, ""}};
  EXPECT_THAT(titles(*query->items()), ElementsAre("new"));
  EXPECT_EQ(host.mediaLibrary.queries, 2);
}

TEST_F(MPMediaQueryTest, ItemsAlreadyFoundDoNotChange) {
  host.mediaLibrary.itemsByType[8192] = {{"file:///a", "a", 1, ""}};
  const auto items = queryFor(MPMediaTypeHomeVideo)->items();
  host.mediaLibrary.itemsByType.clear();
  EXPECT_THAT(titles(*items), ElementsAre("a"));
}

using MPMediaQueryDeathTest = MPMediaQueryTest;

TEST_F(MPMediaQueryDeathTest, KnowsTheKindOnly) {
  MPMediaQuery query;
  const auto byTitle = MPMediaPropertyPredicate::predicateWithValue_forProperty(NSNumber::numberWithInteger(1),
                                                                                MPMediaItemPropertyTitle);
  EXPECT_DEATH(query.addFilterPredicate(byTitle), "the media library cannot be asked for title");
}

TEST_F(MPMediaQueryDeathTest, NeedsAKind) {
  EXPECT_DEATH(MPMediaQuery().items(), "a media query needs the kind of media");
}

}  // namespace
