#include "hosts/qtquick/TimeText.h"

#include <gtest/gtest.h>

#include <limits>

using qtquick::clockText;
using qtquick::spokenTime;

TEST(TimeText, ClockTextsCutFractionsOffAndShowHoursOnlyWhereThereAreAny) {
  EXPECT_EQ(clockText(0), "0:00");
  EXPECT_EQ(clockText(7.99), "0:07");
  EXPECT_EQ(clockText(725), "12:05");
  EXPECT_EQ(clockText(3600), "1:00:00");
  EXPECT_EQ(clockText(3723.5), "1:02:03");
}

TEST(TimeText, ClockTextsOfWhatIsNoTimeAreZero) {
  EXPECT_EQ(clockText(-3), "0:00");
  EXPECT_EQ(clockText(std::numeric_limits<double>::quiet_NaN()), "0:00");
  EXPECT_EQ(clockText(std::numeric_limits<double>::infinity()), "0:00");
}

TEST(TimeText, TimesAreSpokenWithoutEmptyParts) {
  EXPECT_EQ(spokenTime(0), "0 seconds");
  EXPECT_EQ(spokenTime(1), "1 second");
  EXPECT_EQ(spokenTime(60), "1 minute");
  EXPECT_EQ(spokenTime(3723), "1 hour 2 minutes 3 seconds");
}
