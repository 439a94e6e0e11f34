#include "platform/uikit/UIGestureRecognizer.h"

#include "platform/poptip/PopTip.h"
#include "tests/unit/uikit/WindowFixture.h"

#include <gmock/gmock.h>

using testing::ElementsAre;

namespace {

class TapTarget final : public NSObject {
 public:
  explicit TapTarget(std::string name) : name_(std::move(name)) {}
  void tapped() { print(name_); }

 private:
  std::string name_;
};

/// The root screen's box with an overlay in it, and a button in the overlay.
class UITapGestureRecognizerTest : public WindowFixture {
 protected:
  UITapGestureRecognizerTest() {
    launch();
    box()->addSubview(overlay);
    overlay->addSubview(button);
  }

  const Strong<UIView>& box() const { return root().box; }
  Strong<TapTarget> recognize(const Strong<UIView>& view, const std::string& name) const {
    auto target = make<TapTarget>(name);
    view->addGestureRecognizer(
        UITapGestureRecognizer::tapGestureRecognizerWithTarget_action(target, &TapTarget::tapped));
    return target;
  }
  void tap(CGPoint point) {
    event([&] { deliverTap(box(), point); });
  }

  const Strong<UIView> overlay = make<UIView>(CGRectMake(100, 0, 200, 100));
  const Strong<UIButton> button = make<UIButton>(CGRectMake(0, 50, 50, 50));
};

TEST_F(UITapGestureRecognizerTest, RecognisesATapOnItsView) {
  const auto target = recognize(box(), "box");
  tap({10, 10});
  EXPECT_THAT(takeLines(), ElementsAre("box"));
}

TEST_F(UITapGestureRecognizerTest, DoesNotKeepItsTarget) {
  auto target = recognize(box(), "box");
  const Weak<TapTarget> weak = target;
  target = nullptr;
  EXPECT_TRUE(weak.expired());
  tap({10, 10});
  EXPECT_THAT(takeLines(), ElementsAre());
}

TEST_F(UITapGestureRecognizerTest, OfSeveralOnOneViewExactlyOneRecognises) {
  const auto first = recognize(box(), "first");
  const auto second = recognize(box(), "second");
  tap({10, 10});
  EXPECT_THAT(takeLines(), ElementsAre("first"));
}

TEST_F(UITapGestureRecognizerTest, ATapOnTheEmptyPartOfAnOverlayReachesTheViewBeneath) {
  const auto target = recognize(box(), "box");
  tap({250, 10});
  EXPECT_THAT(takeLines(), ElementsAre("box"));
}

TEST_F(UITapGestureRecognizerTest, TheClosestViewWithARecogniserWins) {
  const auto first = recognize(box(), "box");
  const auto second = recognize(overlay, "overlay");
  tap({250, 10});
  EXPECT_THAT(takeLines(), ElementsAre("overlay"));
}

TEST_F(UITapGestureRecognizerTest, ATapOnAControlIsTheControls) {
  const auto target = recognize(box(), "box");
  tap({110, 60});
  EXPECT_THAT(takeLines(), ElementsAre());
  button->setHidden(true);
  tap({110, 60});
  EXPECT_THAT(takeLines(), ElementsAre("box"));
}

TEST_F(UITapGestureRecognizerTest, ATapOnSomethingInAControlIsTheControls) {
  const auto target = recognize(box(), "box");
  button->addSubview(make<UIView>(CGRectMake(0, 0, 50, 50)));
  tap({110, 60});
  EXPECT_THAT(takeLines(), ElementsAre());
}

TEST_F(UITapGestureRecognizerTest, ATapOnAHintBalloonReachesWhatLiesBeneath) {
  const auto target = recognize(box(), "box");
  const auto balloon = make<PopTip>();
  balloon->show("tap here", PopTipDirection::Up, 200, box(), CGRectMake(0, 0, 60, 60));
  tap({10, 10});
  EXPECT_THAT(takeLines(), ElementsAre("box"));
}

TEST_F(UITapGestureRecognizerTest, ATapOutsideOfTheViewIsNone) {
  const auto target = recognize(box(), "box");
  tap({-1, 10});
  tap({10, 100});
  EXPECT_THAT(takeLines(), ElementsAre());
}

TEST_F(UITapGestureRecognizerTest, ATapWithoutAPlaceReachesItsView) {
  const auto target = recognize(box(), "box");
  event([this] { deliverTap(box()); });
  EXPECT_THAT(takeLines(), ElementsAre("box"));
}

TEST_F(UITapGestureRecognizerTest, AHiddenViewTakesNoTapOfAnyKind) {
  const auto target = recognize(box(), "box");
  box()->setHidden(true);
  tap({10, 10});
  event([this] { deliverTap(box()); });
  box()->setHidden(false);
  root().view()->setHidden(true);
  tap({10, 10});
  event([this] { deliverTap(box()); });
  EXPECT_THAT(takeLines(), ElementsAre());
}

TEST_F(UITapGestureRecognizerTest, BeneathAnotherScreenNothingIsRecognised) {
  const auto target = recognize(box(), "box");
  event([this] { root().performSegueWithIdentifier_sender("toSheet", nullptr); });
  takeLines();
  tap({10, 10});
  finishTransition();
  takeLines();
  tap({10, 10});
  event([this] { deliverTap(box()); });
  EXPECT_THAT(takeLines(), ElementsAre());
}

TEST_F(UITapGestureRecognizerTest, OutsideOfTheWindowNothingIsRecognised) {
  const auto target = recognize(box(), "box");
  const auto removed = box();
  removed->removeFromSuperview();
  tap({10, 10});
  EXPECT_THAT(takeLines(), ElementsAre());
}

}  // namespace
