#include "platform/coregraphics/CGGeometry.h"

#include <gtest/gtest.h>

namespace {

TEST(CGRect, ContainsItsUpperLeftEdgesOnly) {
  const auto rect = CGRectMake(10, 20, 30, 40);
  EXPECT_TRUE(rect.contains({10, 20}));
  EXPECT_TRUE(rect.contains({39.9, 59.9}));
  EXPECT_FALSE(rect.contains({40, 30}));
  EXPECT_FALSE(rect.contains({20, 60}));
  EXPECT_FALSE(rect.contains({9.9, 30}));
  EXPECT_FALSE(rect.contains({20, 19.9}));
}

TEST(CGRect, OfNoSizeContainsNothing) {
  EXPECT_FALSE(CGRectZero.contains({0, 0}));
}

}  // namespace
