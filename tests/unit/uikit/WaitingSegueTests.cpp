#include "tests/unit/uikit/WindowFixture.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Segues that wait for the media library, which takes its time except where a test says otherwise.
class WaitingSegueTest : public WindowFixture {
 protected:
  WaitingSegueTest() {
    host.mediaLibrary.holdsPreparations = true;
    launch();
  }

  void performOn(NotedScreen& screen) {
    event([&] { screen.performSegueWithIdentifier_sender("toListing", make<NSString>("sender")); });
  }
  void answer(bool isReady) {
    host.mediaLibrary.answerPreparations(isReady);
    advance(0);
  }
  void press() {
    event([this] { root().button->press(); });
  }
  std::size_t waiting() const { return host.mediaLibrary.preparations.size(); }
};

TEST_F(WaitingSegueTest, RunsWithinTheSameCallWhereTheLibraryIsPrepared) {
  host.mediaLibrary.holdsPreparations = false;
  event([this] {
    root().performSegueWithIdentifier_sender("toListing", nullptr);
    EXPECT_THAT(takeLines(), ElementsAre("Root prepares toListing", "Sheet did load", "Sheet will appear animated"));
  });
  finishTransition();
  EXPECT_THAT(takeLines(), ElementsAre("Sheet did appear animated"));
}

TEST_F(WaitingSegueTest, OthersDoNotAsk) {
  show("toSheet");
  EXPECT_EQ(waiting(), 0U);
  EXPECT_EQ(window()->presentations().size(), 1U);
}

TEST_F(WaitingSegueTest, RunsOnceTheLibraryIsPrepared) {
  performOn(root());
  advance(60);
  EXPECT_THAT(takeLines(), IsEmpty());
  answer(true);
  EXPECT_THAT(takeLines(), ElementsAre("Root prepares toListing", "Sheet did load", "Sheet will appear animated"));
  finishTransition();
  EXPECT_THAT(takeLines(), ElementsAre("Sheet did appear animated"));
  EXPECT_TRUE(window()->isTopmostAtRest(top()));
}

TEST_F(WaitingSegueTest, ControlsDoNotActMeanwhile) {
  performOn(root());
  press();
  EXPECT_THAT(takeLines(), IsEmpty());
  EXPECT_FALSE(window()->acceptsInputIn(*root().table));
}

TEST_F(WaitingSegueTest, CancelledItDoesNothingAndControlsActAgain) {
  performOn(root());
  answer(false);
  press();
  EXPECT_THAT(takeLines(), ElementsAre("Root pressed 5"));
  EXPECT_TRUE(window()->presentations().empty());
  performOn(root());
  answer(true);
  finishTransition();
  EXPECT_EQ(window()->presentations().size(), 1U);
}

TEST_F(WaitingSegueTest, ASecondOneIsRefusedMeanwhile) {
  performOn(root());
  performOn(root());
  event([this] { root().performSegueWithIdentifier_sender("toFull", nullptr); });
  EXPECT_EQ(waiting(), 1U);
  answer(true);
  finishTransition();
  EXPECT_EQ(window()->presentations().size(), 1U);
  EXPECT_EQ(top().name, "Sheet");
}

TEST_F(WaitingSegueTest, ASecondAnswerDoesNothing) {
  performOn(root());
  const auto ready = host.mediaLibrary.preparations.front();
  answer(true);
  finishTransition();
  event([&] { ready(true); });
  event([&] { ready(false); });
  finishTransition();
  EXPECT_EQ(window()->presentations().size(), 1U);
}

TEST_F(WaitingSegueTest, AnAlertThatIsPresentedMeanwhileComesAfterIt) {
  const auto alert = UIAlertController::alertControllerWithTitle_message_preferredStyle(
      "alert", std::nullopt, UIAlertControllerStyle::Alert);
  performOn(root());
  event([&] { root().presentViewController_animated_completion(alert, true); });
  finishTransition();
  EXPECT_TRUE(window()->presentations().empty());
  answer(true);
  finishTransition();
  EXPECT_EQ(top().name, "Sheet");
  event([this] { root().dismissViewControllerAnimated_completion(false); });
  EXPECT_EQ(window()->topmostViewController(), alert);
}

TEST_F(WaitingSegueTest, AnAlertThatIsPresentedMeanwhileAppearsWhereItIsCancelled) {
  const auto alert = UIAlertController::alertControllerWithTitle_message_preferredStyle(
      "alert", std::nullopt, UIAlertControllerStyle::Alert);
  performOn(root());
  event([&] { root().presentViewController_animated_completion(alert, true); });
  answer(false);
  EXPECT_EQ(window()->topmostViewController(), alert);
}

TEST_F(WaitingSegueTest, AScreenThatIsGoneMeanwhilePresentsNothing) {
  show("toSheet");
  const Weak<UIViewController> sheet = window()->topmostViewController();
  performOn(top());
  event([this] { root().dismissViewControllerAnimated_completion(true); });
  finishTransition();
  EXPECT_TRUE(sheet.expired()) << "the library does not keep it";
  takeLines();
  answer(true);
  finishTransition();
  EXPECT_THAT(takeLines(), IsEmpty());
  press();
  EXPECT_THAT(takeLines(), ElementsAre("Root pressed 5"));
}

TEST_F(WaitingSegueTest, AScreenOnItsWayOutPresentsNothing) {
  show("toSheet");
  const auto sheet = window()->topmostViewController();
  performOn(top());
  event([this] { root().dismissViewControllerAnimated_completion(true); });
  answer(true);
  finishTransition();
  EXPECT_TRUE(window()->presentations().empty());
  performOn(root());
  answer(true);
  finishTransition();
  EXPECT_EQ(window()->presentations().size(), 1U) << "what was lost is in nobody's way";
}

TEST_F(WaitingSegueTest, AScreenThatIsItsOwnSenderIsNotKept) {
  show("toSheet");
  const Weak<UIViewController> sheet = window()->topmostViewController();
  event([&] { sheet.lock()->performSegueWithIdentifier_sender("toListing", sheet.lock()); });
  event([this] { root().dismissViewControllerAnimated_completion(false); });
  EXPECT_TRUE(sheet.expired());
  EXPECT_EQ(waiting(), 1U);
}

TEST_F(WaitingSegueTest, RunsInTheBackgroundToo) {
  performOn(root());
  event([] { UIApplication::sharedApplication()->enterBackground(); });
  press();
  EXPECT_THAT(takeLines(), ElementsAre("will resign active", "did enter background"));
  answer(true);
  finishTransition();
  event([] { UIApplication::sharedApplication()->enterForeground(); });
  EXPECT_EQ(top().name, "Sheet");
}

TEST_F(WaitingSegueTest, AnAnswerAfterTheEndOfTheAppDoesNothing) {
  performOn(root());
  const auto ready = host.mediaLibrary.preparations.front();
  platform.reset();
  ready(true);
  EXPECT_THAT(takeLines(), IsEmpty());
}

}  // namespace
