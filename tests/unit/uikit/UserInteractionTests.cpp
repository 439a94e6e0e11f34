#include "tests/unit/uikit/WindowFixture.h"

#include <gmock/gmock.h>

using testing::IsEmpty;

namespace {

class UserInteractionTest : public WindowFixture {
 protected:
  UserInteractionTest() {
    launch();
    takeLines();
  }
};

TEST_F(UserInteractionTest, NoControlActsWhileTheWindowTakesNoInput) {
  window()->setUserInteractionEnabled(false);
  event([&] { root().button->press(); });
  EXPECT_THAT(takeLines(), IsEmpty());
  window()->setUserInteractionEnabled(true);
  event([&] { root().button->press(); });
  EXPECT_FALSE(takeLines().empty());
}

TEST_F(UserInteractionTest, AnAlertMayComeMeanwhileButWaitsForItsAnswer) {
  int pressed = 0;
  const auto alert = UIAlertController::alertControllerWithTitle_message_preferredStyle(
      "title", "message", UIAlertControllerStyle::Alert);
  alert->addAction(UIAlertAction::actionWithTitle_style_handler("OK", UIAlertActionStyle::Cancel,
                                                                [&](const Strong<UIAlertAction>&) { ++pressed; }));
  window()->setUserInteractionEnabled(false);
  event([&] { root().presentViewController_animated_completion(alert, false); });
  EXPECT_EQ(window()->topmostViewController(), alert);
  event([&] { alert->pressCancel(); });
  EXPECT_EQ(pressed, 0);
  window()->setUserInteractionEnabled(true);
  event([&] { alert->pressCancel(); });
  finishTransition();
  EXPECT_EQ(pressed, 1);
}

TEST_F(UserInteractionTest, AFullScreenWaitsUntilTheWindowTakesInputAgain) {
  const auto screen = make<UIViewController>();
  screen->setModalPresentationStyle(UIModalPresentationStyle::FullScreen);
  window()->setUserInteractionEnabled(false);
  event([&] { root().presentViewController_animated_completion(screen, true); });
  finishTransition();
  EXPECT_EQ(window()->topmostViewController().get(), &root());
  event([&] { window()->setUserInteractionEnabled(true); });
  EXPECT_EQ(window()->topmostViewController(), screen);
}

}  // namespace
