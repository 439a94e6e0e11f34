#include "platform/poptip/PopTip.h"

#include "tests/unit/foundation/BarePlatform.h"

#include <gmock/gmock.h>

using testing::ElementsAre;

namespace {

class PopTipTest : public BarePlatform {
 protected:
  void show(std::optional<double> duration) {
    popTip->show("tap here", PopTipDirection::Up, 200, container, CGRectMake(10, 20, 30, 40), duration);
  }

  const Strong<UIView> container = make<UIView>(CGRectMake(0, 0, 400, 300));
  Strong<PopTip> popTip = make<PopTip>();
};

TEST_F(PopTipTest, IsNotVisibleAtFirst) {
  EXPECT_FALSE(popTip->isVisible());
  EXPECT_EQ(popTip->direction(), PopTipDirection::None);
}

TEST_F(PopTipTest, ShowsItsTextInItsContainer) {
  show(std::nullopt);
  EXPECT_TRUE(popTip->isVisible());
  EXPECT_THAT(container->subviews(), ElementsAre(popTip));
  EXPECT_EQ(popTip->text(), "tap here");
  EXPECT_EQ(popTip->direction(), PopTipDirection::Up);
  EXPECT_EQ(popTip->maxWidth(), 200);
  EXPECT_EQ(popTip->sourceRect(), CGRectMake(10, 20, 30, 40));
}

TEST_F(PopTipTest, StaysUntilItIsHiddenWhereItHasNoDuration) {
  show(std::nullopt);
  advance(3600);
  EXPECT_TRUE(popTip->isVisible());
  popTip->hide();
  EXPECT_FALSE(popTip->isVisible());
  EXPECT_THAT(container->subviews(), ElementsAre());
}

TEST_F(PopTipTest, GoesAfterItsDuration) {
  show(4);
  advance(3.9);
  EXPECT_TRUE(popTip->isVisible());
  advance(0.1);
  EXPECT_FALSE(popTip->isVisible());
}

TEST_F(PopTipTest, HiddenWhileItIsNotShownNothingHappens) {
  popTip->hide();
  popTip->hide(true);
  EXPECT_FALSE(popTip->isVisible());
}

TEST_F(PopTipTest, ShownAgainItMoves) {
  const auto other = make<UIView>();
  show(std::nullopt);
  popTip->show("and here", PopTipDirection::Down, 100, other, CGRectMake(1, 2, 3, 4));
  EXPECT_THAT(container->subviews(), ElementsAre());
  EXPECT_THAT(other->subviews(), ElementsAre(popTip));
  EXPECT_EQ(popTip->text(), "and here");
  EXPECT_EQ(popTip->direction(), PopTipDirection::Down);
}

TEST_F(PopTipTest, ShownAgainTheEarlierDurationNoLongerCounts) {
  show(4);
  advance(2);
  show(4);
  advance(2);
  EXPECT_TRUE(popTip->isVisible());
  advance(2);
  EXPECT_FALSE(popTip->isVisible());
}

TEST_F(PopTipTest, HiddenAndShownAgainTheEarlierDurationNoLongerCounts) {
  show(4);
  advance(2);
  popTip->hide(true);
  show(std::nullopt);
  advance(100);
  EXPECT_TRUE(popTip->isVisible());
}

TEST_F(PopTipTest, ItsDurationDoesNotKeepIt) {
  const Weak<PopTip> weak = popTip;
  show(4);
  popTip->hide();
  popTip = nullptr;
  EXPECT_TRUE(weak.expired());
  advance(4);
}

TEST_F(PopTipTest, TakesNoTouches) {
  show(std::nullopt);
  EXPECT_EQ(container->hitTest({20, 30}), container);
  EXPECT_EQ(container->hitTest({0, 0}), container);
}

}  // namespace
