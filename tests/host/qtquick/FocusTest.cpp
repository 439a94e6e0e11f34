#include "tests/host/qtquick/ScreenStage.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QTest>

namespace {

class FocusTest : public testing::Test {
 protected:
  FocusTest() {
    stage.window().requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&stage.window()));
  }

  std::string focusedName() {
    auto* const item = stage.window().activeFocusItem();
    auto* const interface = item == nullptr ? nullptr : QAccessible::queryAccessibleInterface(item);
    if (interface == nullptr) return {};
    // In a list its current row has the focus.
    const bool isRow = interface->role() == QAccessible::ListItem;
    return (isRow ? interface->parent() : interface)->text(QAccessible::Name).toStdString();
  }
  std::vector<std::string> namesInTabOrder(int count) {
    std::vector<std::string> names;
    for (int tab = 0; tab < count; ++tab) {
      QTest::keyClick(&stage.window(), Qt::Key_Tab);
      names.push_back(focusedName());
    }
    return names;
  }

  ScreenStage stage;
};

using Names = std::vector<std::string>;

}  // namespace

TEST_F(FocusTest, TabFollowsTheEye) {
  stage.load(1);
  stage.load(2);
  EXPECT_EQ(namesInTabOrder(13), (Names{"Choose videos", "Info", "Film 1", "Pause film 1", "Position in film 1",
                                        "Close film 1", "Volume of film 1", "Film 2", "Pause film 2",
                                        "Position in film 2", "Close film 2", "Volume of film 2", "Choose videos"}));
}

TEST_F(FocusTest, TabPassesOverWhatIsHidden) {
  stage.load(1);
  stage.toggleOverlay(1);
  EXPECT_EQ(namesInTabOrder(4), (Names{"Choose videos", "Info", "Film 1", "Choose videos"}));
}

TEST_F(FocusTest, GoesToTheFilmWhenItsControlsHide) {
  stage.load(1);
  stage.named("Close film 1")->forceActiveFocus(Qt::TabFocusReason);
  stage.toggleOverlay(1);
  EXPECT_EQ(focusedName(), "Film 1");
  QTest::keyClick(&stage.window(), Qt::Key_Space);
  EXPECT_FALSE(stage.screen().vistaControlliFilm1->isHidden());
}

TEST_F(FocusTest, StaysWhereItIsWhenOtherControlsHide) {
  stage.load(1);
  stage.named("Choose videos")->forceActiveFocus(Qt::TabFocusReason);
  stage.toggleOverlay(1);
  EXPECT_EQ(focusedName(), "Choose videos");
}

TEST_F(FocusTest, GoesIntoASheetAndBack) {
  stage.named("Choose videos")->forceActiveFocus(Qt::TabFocusReason);
  QTest::keyClick(&stage.window(), Qt::Key_Return);
  stage.advance(UIWindow::transitionDuration);
  EXPECT_EQ(focusedName(), "Videos for film 1");
  EXPECT_EQ(namesInTabOrder(3), (Names{"Videos for film 2", "Close", "Videos for film 1"}));
  QTest::keyClick(&stage.window(), Qt::Key_Escape);
  stage.advance(UIWindow::transitionDuration);
  EXPECT_EQ(focusedName(), "Choose videos");
}

TEST_F(FocusTest, IsShownInASheetThatTheKeyboardOpened) {
  stage.named("Choose videos")->forceActiveFocus(Qt::TabFocusReason);
  QTest::keyClick(&stage.window(), Qt::Key_Space);
  stage.advance(UIWindow::transitionDuration);
  EXPECT_TRUE(stage.named("Videos for film 1")->property("showsFocus").toBool());
}

TEST_F(FocusTest, IsNotShownInASheetThatAClickOpened) {
  QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, middleOf(*stage.named("Choose videos")));
  stage.advance(UIWindow::transitionDuration);
  EXPECT_FALSE(stage.named("Videos for film 1")->property("showsFocus").toBool());
}

TEST_F(FocusTest, RingsShowOnlyForTheKeyboard) {
  auto* const choose = stage.named("Choose videos");
  const QImage before = stage.grab();
  choose->forceActiveFocus(Qt::MouseFocusReason);
  EXPECT_EQ(stage.grab(), before);
  stage.named("Choose videos")->setFocus(false);
  choose->forceActiveFocus(Qt::TabFocusReason);
  EXPECT_NE(stage.grab(), before);
}
