#include "platform/avfoundation/CMTime.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(CMTime, TruncatesSeconds) {
  EXPECT_EQ(CMTimeMakeWithSeconds(12.7, 1), (CMTime{12, 1}));
  EXPECT_EQ(CMTimeMakeWithSeconds(12.999999, 1), (CMTime{12, 1}));
  EXPECT_EQ(CMTimeMakeWithSeconds(-12.7, 1), (CMTime{-12, 1}));
  EXPECT_EQ(CMTimeMakeWithSeconds(0.9, 1), (CMTime{0, 1}));
}

TEST(CMTime, CountsInPartsOfASecond) {
  EXPECT_EQ(CMTimeMakeWithSeconds(12.5, 1000), (CMTime{12500, 1000}));
  EXPECT_EQ(CMTimeMakeWithSeconds(0.0019, 1000), (CMTime{1, 1000}));
}

TEST(CMTime, ComesBackAsSeconds) {
  EXPECT_EQ(CMTimeGetSeconds({12500, 1000}), 12.5);
  EXPECT_EQ(CMTimeGetSeconds(CMTimeMakeWithSeconds(12.7, 1)), 12.0);
  EXPECT_EQ(CMTimeGetSeconds(kCMTimeZero), 0.0);
}

TEST(CMTime, StaysInsideItsRange) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  EXPECT_GT(CMTimeMakeWithSeconds(infinity, 1).value, 8'000'000'000'000'000'000);
  EXPECT_LT(CMTimeMakeWithSeconds(-infinity, 1).value, -8'000'000'000'000'000'000);
  EXPECT_EQ(CMTimeMakeWithSeconds(std::numeric_limits<double>::quiet_NaN(), 1), (CMTime{0, 1}));
}

}  // namespace
