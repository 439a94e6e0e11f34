#include "tests/host/qtquick/ScreenStage.h"

#include "platform/uikit/UIAlertController.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QTest>

namespace {

class AlertTest : public testing::Test {
 protected:
  void present(UIAlertActionStyle second) {
    alert = UIAlertController::alertControllerWithTitle_message_preferredStyle("Title", "A message",
                                                                               UIAlertControllerStyle::Alert);
    const auto record = [this](const Strong<UIAlertAction>& action) { pressed.push_back(action->title()); };
    alert->addAction(UIAlertAction::actionWithTitle_style_handler("Go", UIAlertActionStyle::Default, record));
    alert->addAction(UIAlertAction::actionWithTitle_style_handler("Stay", second, record));
    stage.window().requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&stage.window()));
    stage.event([&] { stage.screen().presentViewController_animated_completion(alert, true); });
    stage.advance(UIWindow::transitionDuration);
  }
  void key(Qt::Key key) {
    QTest::keyClick(&stage.window(), key);
    stage.advance(UIWindow::transitionDuration);
  }

  ScreenStage stage;
  Strong<UIAlertController> alert;
  std::vector<std::string> pressed;
};

using Titles = std::vector<std::string>;

}  // namespace

TEST_F(AlertTest, IsReadOutAndLeavesNothingElseInReach) {
  present(UIAlertActionStyle::Cancel);
  auto* const box = stage.named("Title");
  ASSERT_NE(box, nullptr);
  auto* const interface = QAccessible::queryAccessibleInterface(box);
  EXPECT_EQ(interface->role(), QAccessible::Dialog);
  EXPECT_EQ(interface->text(QAccessible::Description), "A message");
  EXPECT_NE(stage.named("Go"), nullptr);
  EXPECT_EQ(stage.named("Choose videos"), nullptr);
}

TEST_F(AlertTest, AButtonClosesItAndRunsItsHandlerOnce) {
  present(UIAlertActionStyle::Cancel);
  QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, middleOf(*stage.named("Go")));
  stage.advance(UIWindow::transitionDuration);
  EXPECT_EQ(pressed, Titles{"Go"});
  EXPECT_TRUE(stage.platformWindow()->presentations().empty());
  EXPECT_EQ(stage.named("Go"), nullptr);
}

TEST_F(AlertTest, AssistiveTechnologyPressesAButton) {
  present(UIAlertActionStyle::Default);
  auto* const interface = QAccessible::queryAccessibleInterface(stage.named("Stay"));
  interface->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  stage.advance(UIWindow::transitionDuration);
  EXPECT_EQ(pressed, Titles{"Stay"});
}

TEST_F(AlertTest, TheKeyboardBeginsAtTheCancelButton) {
  present(UIAlertActionStyle::Cancel);
  key(Qt::Key_Return);
  EXPECT_EQ(pressed, Titles{"Stay"});
}

TEST_F(AlertTest, TheKeyboardBeginsAtTheFirstButtonWithoutACancelButton) {
  present(UIAlertActionStyle::Default);
  key(Qt::Key_Space);
  EXPECT_EQ(pressed, Titles{"Go"});
}

TEST_F(AlertTest, TabGoesRoundItsButtons) {
  present(UIAlertActionStyle::Default);
  QTest::keyClick(&stage.window(), Qt::Key_Tab);
  key(Qt::Key_Return);
  EXPECT_EQ(pressed, Titles{"Stay"});
}

TEST_F(AlertTest, EscapePressesCancel) {
  present(UIAlertActionStyle::Cancel);
  key(Qt::Key_Escape);
  EXPECT_EQ(pressed, Titles{"Stay"});
}

TEST(EmptyLibraryAlert, LiesOverTheListAndLeavesIt) {
  ScreenStage stage({.videos = 0});
  const auto list = stage.openList();
  stage.advance(UIWindow::transitionDuration);
  QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, middleOf(*stage.named("OK")));
  stage.advance(UIWindow::transitionDuration);
  EXPECT_EQ(stage.platformWindow()->presentations().size(), 1U);
  EXPECT_NE(stage.named("Close"), nullptr);
}
