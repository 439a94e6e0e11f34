#include "platform/uikit/UIScrollView.h"
#include "tests/host/qtquick/ScreenStage.h"

#include <gtest/gtest.h>

#include <QTest>

namespace {

/// Counts what a control sends.
class Counter final : public NSObject {
 public:
  void sent() { ++times; }
  int takeTimes() { return std::exchange(times, 0); }
  int times = 0;
};

/// A view over the main screen, 1000 x 400 points of its own, of which two make one point of the window.
class TouchTargetTest : public testing::Test {
 protected:
  TouchTargetTest() {
    view->setFrame({origin, {500, 200}});
    view->setScale(0.5);
    add(*stage.screen().view(), view);
  }

  void add(UIView& above, const Strong<UIView>& added) {
    stage.event([&] { above.addSubview(added); });
  }
  /// A button in `view`, in its points.
  Strong<Counter> addButton(const char* title, CGRect frame) {
    const auto button = make<UIButton>();
    const auto counter = make<Counter>();
    button->setTitle_forState(title, UIControlState::Normal);
    button->setFrame(frame);
    button->addTarget_action_forControlEvents(counter, &Counter::sent, UIControlEvents::TouchUpInside);
    add(*view, button);
    counters.push_back(counter);
    return counter;
  }
  Strong<UISlider> addSlider(CGRect frame) {
    const auto slider = make<UISlider>();
    slider->setMaximumValue(100);
    slider->setFrame(frame);
    add(*view, slider);
    return slider;
  }
  /// A place of the window, in the points of `view`.
  static QPoint at(double x, double y) {
    return {static_cast<int>(origin.x + x / 2), static_cast<int>(origin.y + y / 2)};
  }
  void click(QPoint place) {
    QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, place);
    stage.settle();
  }
  void touch(QPoint place) {
    QTest::touchEvent(&stage.window(), finger_.get()).press(0, place);
    QTest::touchEvent(&stage.window(), finger_.get()).release(0, place);
    stage.settle();
  }

  static constexpr CGPoint origin{300, 100};
  ScreenStage stage;
  Strong<UIView> view = make<UIView>();
  std::vector<Strong<Counter>> counters;  // a control keeps no target alive

 private:
  std::unique_ptr<QPointingDevice> finger_{QTest::createTouchDevice()};
};

}  // namespace

TEST_F(TouchTargetTest, OfASmallButtonIsFortyFourPointsWideAndHigh) {
  const auto counter = addButton("Small", {{200, 100}, {40, 20}});
  const QPoint middle = at(220, 110);
  for (const QPoint distance : {QPoint(0, 0), QPoint(21, 21), QPoint(-21, -21), QPoint(21, -21)}) {
    click(middle + distance);
    EXPECT_EQ(counter->takeTimes(), 1) << distance.x() << ' ' << distance.y();
    touch(middle + distance);
    EXPECT_EQ(counter->takeTimes(), 1) << distance.x() << ' ' << distance.y();
  }
  for (const QPoint distance : {QPoint(24, 0), QPoint(0, 24), QPoint(-24, 0), QPoint(0, -24)}) {
    click(middle + distance);
    touch(middle + distance);
    EXPECT_EQ(counter->takeTimes(), 0) << distance.x() << ' ' << distance.y();
  }
}

TEST_F(TouchTargetTest, OfALargeButtonIsTheButton) {
  const auto counter = addButton("Large", {{200, 100}, {200, 100}});
  click(at(300, 152));
  EXPECT_EQ(counter->takeTimes(), 1);
  for (const QPoint place : {at(196, 150), at(404, 150), at(300, 96), at(300, 204)}) {
    click(place);
    touch(place);
  }
  EXPECT_EQ(counter->takeTimes(), 0);
}

TEST_F(TouchTargetTest, OfALowSliderIsHigherThanItIs) {
  const auto slider = addSlider({{200, 100}, {422, 20}});
  click(at(200 + 11 + 200, 110) + QPoint(0, 20));
  EXPECT_NEAR(slider->value(), 50, 1);
  touch(at(200 + 11 + 100, 110) - QPoint(0, 20));
  EXPECT_NEAR(slider->value(), 25, 1);
  touch(at(200 + 11 + 300, 110) - QPoint(0, 24));
  EXPECT_NEAR(slider->value(), 25, 1);
}

TEST_F(TouchTargetTest, AFingerBesideALowSliderDragsIt) {
  const auto slider = addSlider({{200, 100}, {422, 20}});
  const std::unique_ptr<QPointingDevice> finger(QTest::createTouchDevice());
  const QPoint below(0, 18);
  QTest::touchEvent(&stage.window(), finger.get()).press(0, at(211, 110) + below);
  for (const double x : {250.0, 300.0, 411.0}) {
    QTest::touchEvent(&stage.window(), finger.get()).move(0, at(x, 110) + below);
  }
  EXPECT_TRUE(slider->isTracking());
  QTest::touchEvent(&stage.window(), finger.get()).release(0, at(411, 110) + below);
  EXPECT_NEAR(slider->value(), 50, 1);
}

TEST_F(TouchTargetTest, EndsWhereAnotherControlBegins) {
  const auto lower = addButton("Lower", {{200, 100}, {40, 20}});
  const auto upper = addButton("Upper", {{244, 100}, {40, 20}});
  click(at(238, 110));
  EXPECT_EQ(lower->takeTimes(), 1);
  EXPECT_EQ(upper->takeTimes(), 0);
  touch(at(246, 110));
  EXPECT_EQ(lower->takeTimes(), 0);
  EXPECT_EQ(upper->takeTimes(), 1);
}

TEST_F(TouchTargetTest, OfTwoTheNearerOneIsMeant) {
  const auto lower = addButton("Lower", {{200, 100}, {40, 20}});
  const auto upper = addButton("Upper", {{260, 100}, {40, 20}});
  for (const double y : {110.0, 140.0}) {
    click(at(246, y));
    touch(at(246, y));
    EXPECT_EQ(lower->takeTimes(), 2) << y;
    EXPECT_EQ(upper->takeTimes(), 0) << y;
    click(at(254, y));
    touch(at(254, y));
    EXPECT_EQ(lower->takeTimes(), 0) << y;
    EXPECT_EQ(upper->takeTimes(), 2) << y;
  }
}

TEST_F(TouchTargetTest, AButtonAndASliderShareTheRoomBetweenThem) {
  const auto slider = addSlider({{200, 100}, {422, 20}});
  const auto counter = addButton("Below", {{200, 140}, {422, 20}});
  touch(at(411, 126));
  EXPECT_NEAR(slider->value(), 50, 1);
  EXPECT_EQ(counter->takeTimes(), 0);
  touch(at(300, 134));
  EXPECT_NEAR(slider->value(), 50, 1);
  EXPECT_EQ(counter->takeTimes(), 1);
}

TEST_F(TouchTargetTest, ANeighbourThatIsHiddenLeavesItsRoom) {
  const auto counter = addButton("Shown", {{200, 100}, {40, 20}});
  addButton("Hidden", {{244, 100}, {40, 20}});
  stage.event([&] { view->subviews().back()->setHidden(true); });
  touch(at(250, 110));
  EXPECT_EQ(counter->takeTimes(), 1);
}

TEST_F(TouchTargetTest, EndsWhereAStripBeginsUnlessItIsInside) {
  const auto strip = make<UIScrollView>();
  strip->setFrame({{200, 0}, {400, 100}});
  strip->setContentSize({800, 100});
  add(*view, strip);
  const auto below = addButton("Below", {{200, 110}, {200, 20}});
  touch(at(300, 96));
  EXPECT_EQ(below->takeTimes(), 0);
  touch(at(300, 104));
  EXPECT_EQ(below->takeTimes(), 1);

  const auto inside = addButton("Inside", {{50, 40}, {40, 20}});
  add(*strip, view->subviews().back());
  touch(at(200 + 70, 50 + 30));
  EXPECT_EQ(inside->takeTimes(), 1);
}

TEST_F(TouchTargetTest, WhatAStripDoesNotShowTakesNoRoom) {
  const auto strip = make<UIScrollView>();
  strip->setFrame({{200, 0}, {200, 100}});
  strip->setContentSize({800, 100});
  add(*view, strip);
  const auto beyond = addButton("Beyond", {{210, 40}, {200, 20}});
  add(*strip, view->subviews().back());
  const auto beside = addButton("Beside", {{410, 80}, {20, 20}});
  touch(at(412, 60));
  EXPECT_EQ(beyond->takeTimes(), 0);
  EXPECT_EQ(beside->takeTimes(), 1);
}
