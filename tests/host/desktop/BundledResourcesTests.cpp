#include "hosts/desktop/BundledResources.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

TEST(BundledResourcesTest, FindsADrawingByItsNameAlone) {
  const auto picture = BundledResources().picture("play");
  ASSERT_TRUE(picture);
  EXPECT_EQ(picture->source, "qrc:/images/play.svg");
  EXPECT_GT(picture->width, 0);
  EXPECT_GT(picture->height, 0);
  EXPECT_EQ(picture->description, "");
}

TEST(BundledResourcesTest, TellsWhatAPictureShowsWhereATextLiesBesideIt) {
  const auto first = BundledResources().picture("1tutorial.jpg");
  ASSERT_TRUE(first);
  EXPECT_EQ(first->source, "qrc:/images/1tutorial.jpg");
  EXPECT_NE(first->description.find("left ear"), std::string::npos) << first->description;
  EXPECT_EQ(first->description.back(), '.');
  const auto second = BundledResources().picture("2tutorial.jpg");
  ASSERT_TRUE(second);
  EXPECT_NE(second->description.find("controls"), std::string::npos) << second->description;
}

TEST(BundledResourcesTest, HasNothingForOtherNames) {
  EXPECT_FALSE(BundledResources().picture("no such picture"));
  EXPECT_FALSE(BundledResources().picture("no such picture.jpg"));
}

}  // namespace
}  // namespace desktop
