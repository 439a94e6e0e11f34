#include "platform/uikit/LayoutRule.h"

#include <gtest/gtest.h>

namespace {

LayoutLength length(const char* text) {
  const auto parsed = LayoutLength::parse(text);
  EXPECT_TRUE(parsed) << text;
  return parsed.value_or(LayoutLength{-1, -1});
}

TEST(LayoutLength, IsAFractionPlusPoints) {
  EXPECT_EQ(length("50% - 16"), (LayoutLength{0.5, -16}));
  EXPECT_EQ(length("50%+8"), (LayoutLength{0.5, 8}));
  EXPECT_EQ(length(" 100 % "), (LayoutLength{1, 0}));
  EXPECT_EQ(length("0"), (LayoutLength{0, 0}));
  EXPECT_EQ(length("-8"), (LayoutLength{0, -8}));
  EXPECT_EQ(length("-25%"), (LayoutLength{-0.25, 0}));
  EXPECT_EQ(length("8 + 50%"), (LayoutLength{0.5, 8}));
  EXPECT_EQ(length("\t12.5"), (LayoutLength{0, 12.5}));
  EXPECT_EQ(length("50% + 12.5% - 4 - 4"), (LayoutLength{0.625, -8}));
}

TEST(LayoutLength, IsNotReadFromAnythingElse) {
  for (const char* text : {"", " ", "a", "50%%", "50% 16", "8px", "50% +", "+", "--8", "50% - -8", "5e3", "0x10",
                           "inf", "nan", "1,5", "%", "50%-"}) {
    EXPECT_FALSE(LayoutLength::parse(text)) << text;
  }
}

TEST(LayoutLength, IsMeasuredInItsParent) {
  EXPECT_EQ((LayoutLength{0.5, -16}).in(400), 184);
}

struct AxisTexts {
  const char* start = "";
  const char* end = "";
  const char* extent = "";
  const char* centre = "";
};

/// The axis of those lengths; an empty text is a length that is not said.
LayoutAxis axis(const AxisTexts& texts) {
  LayoutAxis result;
  result.start = LayoutLength::parse(texts.start);
  result.end = LayoutLength::parse(texts.end);
  result.extent = LayoutLength::parse(texts.extent);
  result.centre = LayoutLength::parse(texts.centre);
  return result;
}

void expectSpan(const AxisTexts& texts, double start, double extent) {
  const auto span = axis(texts).in(400);
  EXPECT_EQ(span.start, start);
  EXPECT_EQ(span.extent, extent);
}

TEST(LayoutAxis, TwoOfStartEndAndExtentFixIt) {
  expectSpan({.start = "10", .extent = "50%"}, 10, 200);
  expectSpan({.end = "10", .extent = "50"}, 340, 50);
  expectSpan({.start = "25%", .end = "20"}, 100, 280);
}

TEST(LayoutAxis, AnExtentAndACentreCentreIt) {
  expectSpan({.extent = "100", .centre = "50% + 10"}, 160, 100);
}

TEST(LayoutAxis, WhatIsNotSaidReachesToTheParentsEdge) {
  expectSpan({}, 0, 400);
  expectSpan({.start = "30"}, 30, 370);
  expectSpan({.end = "30"}, 0, 370);
}

TEST(LayoutPlace, HasItsEdgesOnWholePoints) {
  const LayoutRule::Place place{axis({.start = "0", .extent = "33.3%"}), axis({.start = "0.4", .extent = "10.2"})};
  EXPECT_EQ(place.in({100, 50}), CGRectMake(0, 0, 33, 11));
}

TEST(LayoutPlace, NeighboursMeetWithoutASeam) {
  const LayoutRule::Place left{axis({.start = "0", .extent = "50%"}), axis({})};
  const LayoutRule::Place right{axis({.start = "50%", .end = "0"}), axis({})};
  for (double width = 1; width < 50; width += 0.5) {
    const CGRect first = left.in({width, 10});
    const CGRect second = right.in({width, 10});
    EXPECT_EQ(first.origin.x + first.size.width, second.origin.x) << width;
  }
}

TEST(LayoutPlace, IsNeverOfNegativeSize) {
  const LayoutRule::Place narrow{axis({.start = "80", .end = "80"}), axis({.start = "0", .extent = "50% - 30"})};
  const CGRect frame = narrow.in({100, 40});
  EXPECT_EQ(frame.size.width, 0);
  EXPECT_EQ(frame.size.height, 0);
}

}  // namespace
