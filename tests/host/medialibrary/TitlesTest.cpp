#include "hosts/medialibrary/Titles.h"

#include <gtest/gtest.h>

namespace {

using medialibrary::titleOf;

TEST(Titles, AreTheTag) {
  EXPECT_EQ(titleOf("/f/name.mp4", "Tag"), "Tag");
}

TEST(Titles, AreTheNameOfTheFileWithoutATag) {
  EXPECT_EQ(titleOf("/f.d/Film (1) più.mp4", std::nullopt), "Film (1) più");
  EXPECT_EQ(titleOf("/f/two.endings.mkv", std::nullopt), "two.endings");
  EXPECT_EQ(titleOf("/f/none", std::nullopt), "none");
}

TEST(Titles, AreNeverEmptyForANameThatCanBeShown) {
  EXPECT_EQ(titleOf("/f/.mp4", std::nullopt), ".mp4");
  EXPECT_EQ(titleOf("/f/ .mp4", std::nullopt), ".mp4");
}

TEST(Titles, AreOneLineOfText) {
  EXPECT_EQ(titleOf("/f/a\nb\xFF.mp4", std::nullopt), "a b\xEF\xBF\xBD");
}

}  // namespace
