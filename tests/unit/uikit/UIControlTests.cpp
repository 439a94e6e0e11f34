#include "platform/uikit/UIControl.h"

#include "tests/unit/uikit/WindowFixture.h"

#include <gmock/gmock.h>

#include <algorithm>

using testing::ElementsAre;

namespace {

class ActionTarget final : public NSObject {
 public:
  void withSender(const Strong<UIControl>& sender) { print("sender " + std::to_string(sender->tag())); }
  void withoutSender() { print("no sender"); }
};

class UIControlTest : public WindowFixture {
 protected:
  UIControlTest() { launch(); }
  void press() {
    event([this] { root().button->press(); });
  }
  static Strong<UIAlertController> alert() {
    return UIAlertController::alertControllerWithTitle_message_preferredStyle("title", std::nullopt,
                                                                              UIAlertControllerStyle::Alert);
  }
};

TEST_F(UIControlTest, SendsItsActionsInTheOrderInWhichTheyWereAdded) {
  const auto control = make<UIControl>();
  const auto target = make<ActionTarget>();
  control->setTag(3);
  control->addTarget_action_forControlEvents(target, &ActionTarget::withoutSender, UIControlEvents::ValueChanged);
  control->addTarget_action_forControlEvents(target, &ActionTarget::withSender, UIControlEvents::ValueChanged);
  control->addTarget_action_forControlEvents(target, &ActionTarget::withSender, UIControlEvents::TouchUpInside);
  control->sendActionsForControlEvents(UIControlEvents::ValueChanged);
  EXPECT_THAT(takeLines(), ElementsAre("no sender", "sender 3"));
}

TEST_F(UIControlTest, DoesNotKeepItsTarget) {
  const auto control = make<UIControl>();
  auto target = make<ActionTarget>();
  const Weak<ActionTarget> weak = target;
  control->addTarget_action_forControlEvents(target, &ActionTarget::withoutSender, UIControlEvents::TouchUpInside);
  target = nullptr;
  EXPECT_TRUE(weak.expired());
  control->sendActionsForControlEvents(UIControlEvents::TouchUpInside);
  EXPECT_THAT(takeLines(), ElementsAre());
}

TEST_F(UIControlTest, MayLoseItsLastReferenceInItsOwnAction) {
  auto control = make<UIControl>();
  control->addAction(
      window(),
      [&control](const Strong<UIControl>& sender) {
        control = nullptr;
        print("still of tag " + std::to_string(sender->tag()));
      },
      UIControlEvents::TouchUpInside);
  auto* raw = control.get();
  raw->sendActionsForControlEvents(UIControlEvents::TouchUpInside);
  EXPECT_THAT(takeLines(), ElementsAre("still of tag 0"));
}

TEST_F(UIControlTest, AButtonActsInTheTopmostScreenAtRest) {
  press();
  EXPECT_THAT(takeLines(), ElementsAre("Root pressed 5"));
}

TEST_F(UIControlTest, AHiddenButtonDoesNotAct) {
  root().button->setHidden(true);
  press();
  root().button->setHidden(false);
  root().view()->setHidden(true);
  press();
  EXPECT_THAT(takeLines(), ElementsAre());
}

TEST_F(UIControlTest, AButtonOutsideOfTheWindowDoesNotAct) {
  root().button->removeFromSuperview();
  press();
  EXPECT_THAT(takeLines(), ElementsAre());
}

TEST_F(UIControlTest, AButtonBeneathAnotherScreenDoesNotAct) {
  for (const char* segue : {"toSheet", "toFull"}) {
    show(segue);
    press();
    EXPECT_THAT(takeLines(), ElementsAre()) << segue;
    event([this] { root().dismissViewControllerAnimated_completion(false); });
    takeLines();
    press();
    EXPECT_THAT(takeLines(), ElementsAre("Root pressed 5")) << segue;
  }
}

TEST_F(UIControlTest, AButtonInTheScreenOnTopActs) {
  show("toSheet");
  event([this] { top().button->press(); });
  EXPECT_THAT(takeLines(), ElementsAre("Sheet pressed 0"));
}

TEST_F(UIControlTest, AButtonBeneathAnAlertDoesNotAct) {
  event([this] { root().presentViewController_animated_completion(alert(), true); });
  finishTransition();
  press();
  EXPECT_THAT(takeLines(), ElementsAre());
}

TEST_F(UIControlTest, NoButtonActsWhileAPresentationIsPendingOrRunning) {
  event([this] {
    root().performSegueWithIdentifier_sender("toSheet", nullptr);
    root().button->press();
  });
  press();
  event([this] { top().button->press(); });
  EXPECT_THAT(takeLines(), testing::Not(testing::Contains(testing::HasSubstr("pressed"))));
}

TEST_F(UIControlTest, NoButtonActsWhileADismissalIsRunning) {
  show("toSheet");
  const auto sheetsButton = top().button;
  event([this] { root().dismissViewControllerAnimated_completion(true); });
  press();
  event([&] { sheetsButton->press(); });
  finishTransition();
  EXPECT_THAT(takeLines(), testing::Not(testing::Contains(testing::HasSubstr("pressed"))));
  press();
  EXPECT_THAT(takeLines(), ElementsAre("Root pressed 5"));
}

TEST_F(UIControlTest, ASecondPressNeverOpensASecondScreen) {
  root().button->addAction(
      window()->rootViewController(),
      [this](const Strong<UIControl>&) { root().performSegueWithIdentifier_sender("toSheet", nullptr); },
      UIControlEvents::TouchUpInside);
  event([this] {
    root().button->press();
    root().button->press();
  });
  press();
  finishTransition();
  press();
  EXPECT_EQ(window()->presentations().size(), 1U);
  EXPECT_EQ(std::ranges::count(host.console.lines, "Root prepares toSheet"), 1);
}

TEST_F(UIControlTest, AnInvisibleWindowTakesNoInput) {
  const auto other = make<UIWindow>(CGRectMake(0, 0, 100, 100));
  other->setRootViewController(make<NotedScreen>("Other"));
  const auto button = make<UIButton>();
  other->addSubview(button);
  EXPECT_FALSE(acceptsInput(*button));
}

class UIButtonTest : public UIControlTest {};

TEST_F(UIButtonTest, HasNothingToShowAtFirst) {
  const auto button = make<UIButton>();
  EXPECT_EQ(button->titleForState(UIControlState::Normal), "");
  EXPECT_EQ(button->titleColorForState(UIControlState::Normal), UIColor::whiteColor());
  EXPECT_EQ(button->imageForState(UIControlState::Normal), nullptr);
  EXPECT_EQ(button->backgroundImageForState(UIControlState::Normal), nullptr);
}

TEST_F(UIButtonTest, AStateWithoutLooksOfItsOwnShowsTheNormalOnes) {
  const auto button = make<UIButton>();
  const auto play = make<UIImage>("play", CGSize{1, 1});
  const auto pause = make<UIImage>("pause", CGSize{1, 1});
  button->setTitle_forState("title", UIControlState::Normal);
  button->setTitleColor_forState(UIColor::grayColor(), UIControlState::Normal);
  button->setImage_forState(play, UIControlState::Normal);
  button->setBackgroundImage_forState(play, UIControlState::Normal);
  EXPECT_EQ(button->titleForState(UIControlState::Highlighted), "title");
  EXPECT_EQ(button->titleColorForState(UIControlState::Highlighted), UIColor::grayColor());
  EXPECT_EQ(button->imageForState(UIControlState::Highlighted), play);
  button->setImage_forState(pause, UIControlState::Highlighted);
  EXPECT_EQ(button->imageForState(UIControlState::Highlighted), pause);
  EXPECT_EQ(button->imageForState(UIControlState::Normal), play);
  EXPECT_EQ(button->backgroundImageForState(UIControlState::Highlighted), play);
}

}  // namespace
