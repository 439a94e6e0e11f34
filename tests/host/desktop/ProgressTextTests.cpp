#include "hosts/desktop/ProgressText.h"

#include <gtest/gtest.h>

#include <utility>

namespace desktop {
namespace {

TEST(ProgressTextTest, ThousandsAreSeparated) {
  EXPECT_EQ(numberText(0), QStringLiteral("0"));
  EXPECT_EQ(numberText(999), QStringLiteral("999"));
  EXPECT_EQ(numberText(4000), QStringLiteral("4,000"));
  EXPECT_EQ(numberText(1234567), QStringLiteral("1,234,567"));
}

TEST(ProgressTextTest, OneVideoIsOne) {
  EXPECT_EQ(videosText(0), QStringLiteral("0 videos"));
  EXPECT_EQ(videosText(1), QStringLiteral("1 video"));
  EXPECT_EQ(videosText(4000), QStringLiteral("4,000 videos"));
}

TEST(ProgressTextTest, RemainingTimeIsToldInWords) {
  for (const auto& [seconds, words] : {
           std::pair(0.0, "about 1 second left"),
           std::pair(1.4, "about 1 second left"),
           std::pair(1.5, "about 2 seconds left"),
           std::pair(10.4, "about 10 seconds left"),
           std::pair(12.0, "about 10 seconds left"),
           std::pair(13.0, "about 15 seconds left"),
           std::pair(57.0, "about 55 seconds left"),
           std::pair(58.0, "about 1 minute left"),
           std::pair(89.0, "about 1 minute left"),
           std::pair(91.0, "about 2 minutes left"),
           std::pair(3569.0, "about 59 minutes left"),
           std::pair(3571.0, "about 1 hour left"),
           std::pair(5399.0, "about 1 hour left"),
           std::pair(5401.0, "about 2 hours left"),
           std::pair(90000.0, "about 25 hours left"),
       }) {
    EXPECT_EQ(remainingText(seconds).toStdString(), words) << seconds;
  }
}

TEST(ProgressTextTest, ProgressTellsTheTimeWhereThatIsKnown) {
  EXPECT_EQ(countText({120, 4000, 90.0}), QStringLiteral("120 of 4,000"));
  EXPECT_EQ(progressText({120, 4000, std::nullopt}), QStringLiteral("120 of 4,000"));
  EXPECT_EQ(progressText({120, 4000, 120.0}), QStringLiteral("120 of 4,000, about 2 minutes left"));
}

}  // namespace
}  // namespace desktop
