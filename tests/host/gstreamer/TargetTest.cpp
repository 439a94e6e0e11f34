#include "hosts/gstreamer/Target.h"

#include <gtest/gtest.h>

namespace gstreamer {

namespace {

constexpr Instant begin = nanoseconds(1000.0);

Instant after(double time) {
  return begin + nanoseconds(time);
}

void expectStep(Target& target, double position, bool isPreview) {
  ASSERT_TRUE(target.isSet());
  const auto step = target.next();
  EXPECT_EQ(step.position, position);
  EXPECT_EQ(step.isPreview, isPreview);
}

}  // namespace

TEST(Target, ASingleSeekGoesStraightToThePlaceAtOnce) {
  for (const bool hasPreviews : {true, false}) {
    Target target(hasPreviews);
    target.seek(7.0, begin, false);
    EXPECT_LE(target.due(), begin);
    expectStep(target, 7.0, false);
    EXPECT_FALSE(target.isSet());
  }
}

TEST(Target, APictureUnderAFingerIsShownBrieflyFirstAndExactlyOnceTheFingerRests) {
  Target target(true);
  target.seek(7.0, begin, true);
  EXPECT_LE(target.due(), begin);
  expectStep(target, 7.0, true);
  EXPECT_GT(target.due(), after(0.1));
  EXPECT_LT(target.due(), after(0.2));
  expectStep(target, 7.0, false);
  EXPECT_FALSE(target.isSet());
}

TEST(Target, TheNextPlaceUnderAFingerIsShownWithoutTheExactPictureOfTheLastOne) {
  Target target(true);
  target.seek(7.0, begin, true);
  expectStep(target, 7.0, true);
  target.seek(8.0, after(0.05), true);
  EXPECT_LE(target.due(), after(0.05));
  expectStep(target, 8.0, true);
}

TEST(Target, AFingerThatIsLiftedWaitsForNothing) {
  Target target(true);
  target.seek(7.0, begin, true);
  expectStep(target, 7.0, true);
  target.settle();
  EXPECT_LE(target.due(), begin);
  expectStep(target, 7.0, false);
}

TEST(Target, SeeksInQuickSuccessionAreThoseOfAFinger) {
  Target target(true);
  target.seek(7.0, begin, false);
  expectStep(target, 7.0, false);
  target.seek(8.0, after(0.2), false);
  expectStep(target, 8.0, true);
  EXPECT_LE(target.due(), after(0.2)) << "nobody holds the slider";
  expectStep(target, 8.0, false);
  target.seek(9.0, after(1.0), false);
  expectStep(target, 9.0, false);
}

TEST(Target, SoundWaitsUntilTheFingerRests) {
  Target target(false);
  target.seek(7.0, begin, true);
  EXPECT_GT(target.due(), after(0.1));
  target.seek(8.0, after(0.1), true);
  EXPECT_GT(target.due(), after(0.2));
  expectStep(target, 8.0, false);
}

TEST(Target, SoundThatIsSoughtAgainAtOnceWaitsAMoment) {
  Target target(false);
  target.seek(7.0, begin, false);
  target.seek(8.0, after(0.05), false);
  EXPECT_GT(target.due(), after(0.1));
  EXPECT_LT(target.due(), after(0.2));
}

TEST(Target, WhatTheDeckSetsItselfIsGoneToExactly) {
  Target target(true);
  target.set(7.0);
  expectStep(target, 7.0, false);
  target.set(8.0);
  target.clear();
  EXPECT_FALSE(target.isSet());
}

}  // namespace gstreamer
