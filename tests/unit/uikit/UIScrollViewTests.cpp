#include "platform/uikit/UIScrollView.h"

#include "tests/support/Stage.h"

#include <gtest/gtest.h>

namespace {

/// A view onto three pages of 100 points, on its way to the second one.
Strong<UIScrollView> scrollingView(Stage& stage) {
  const auto view = make<UIScrollView>(CGRectMake(0, 0, 100, 100));
  view->setContentSize({300, 100});
  stage.event([&] { view->scrollRectToVisible_animated({{100, 0}, {100, 100}}, true); });
  stage.advance(UIScrollView::animationDuration / 2);
  return view;
}

}  // namespace

TEST(UIScrollView, ScrollsSoftlyToItsTarget) {
  Stage stage;
  const auto view = scrollingView(stage);
  EXPECT_TRUE(view->isScrolling());
  EXPECT_GT(view->contentOffset().x, 0);
  EXPECT_LT(view->contentOffset().x, 100);
  stage.advance(UIScrollView::animationDuration);
  EXPECT_FALSE(view->isScrolling());
  EXPECT_EQ(view->contentOffset(), (CGPoint{100, 0}));
  EXPECT_FALSE(stage.host.mainLoop.wake());
}

TEST(UIScrollView, LeavesNoTimerBehindWhenItGoesOnItsWay) {
  Stage stage;
  auto view = scrollingView(stage);
  view = nullptr;
  stage.advance(UIScrollView::animationDuration);
  EXPECT_FALSE(stage.host.mainLoop.wake());
}

TEST(UIScrollView, MayBeOnItsWayWhenTheAppEnds) {
  Strong<UIScrollView> view;
  {
    Stage stage;
    view = scrollingView(stage);
  }
  EXPECT_TRUE(view->isScrolling());
  view = nullptr;
}
