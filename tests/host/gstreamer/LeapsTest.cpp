#include "hosts/gstreamer/Leaps.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace gstreamer {

namespace {

/// All that is tried at one place.
std::vector<double> all(Leaps& leaps, double place) {
  std::vector<double> tried;
  while (const auto leap = leaps.next(place)) tried.push_back(*leap);
  return tried;
}

const std::vector<double> everything = {0.5, 1.0, 4.0, 12.0};

}  // namespace

TEST(Leaps, LeaveOutMoreEachTimeUntilEnoughWasTried) {
  Leaps leaps;
  EXPECT_EQ(all(leaps, 10.0), everything);
  EXPECT_FALSE(leaps.next(10.0));
}

TEST(Leaps, DamageAfterSomeGoodSecondsIsOtherDamage) {
  Leaps leaps;
  all(leaps, 10.0);
  EXPECT_FALSE(leaps.next(15.0));
  EXPECT_EQ(all(leaps, 15.5), everything);
}

TEST(Leaps, DamageThatIsMetAgainSoonIsTheSame) {
  Leaps leaps;
  EXPECT_EQ(leaps.next(10.0), 0.5);
  EXPECT_EQ(leaps.next(10.5), 1.0);
  EXPECT_EQ(leaps.next(11.5), 4.0);
}

TEST(Leaps, BeginAnewForWhoeverGoesElsewhere) {
  Leaps leaps;
  all(leaps, 10.0);
  leaps.forget();
  EXPECT_EQ(all(leaps, 10.0), everything);
}

}  // namespace gstreamer
