#include "tests/host/qtquick/ScreenStage.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QStyleHints>
#include <QTest>

namespace {

constexpr int shortPatience = 50;  // milliseconds

/// Asking for the menu of the window, which somebody else shows.
class WindowMenuTest : public testing::Test {
 protected:
  WindowMenuTest() { QGuiApplication::styleHints()->setMousePressAndHoldInterval(shortPatience); }
  ~WindowMenuTest() override { QGuiApplication::styleHints()->setMousePressAndHoldInterval(800); }

  void rightClick(QPoint place) { QTest::mouseClick(&stage.window(), Qt::RightButton, {}, place); }
  bool isAskedFor(int times = 1) {
    return QTest::qWaitFor([&] { return stage.menusRequested() == times; });
  }
  bool isNotAskedFor() {
    QTest::qWait(4 * shortPatience);
    return stage.menusRequested() == 0;
  }

  ScreenStage stage;
  const QPoint bar{512, 28};
};

}  // namespace

TEST_F(WindowMenuTest, ARightClickOnTheBarAsksForIt) {
  rightClick(bar);
  EXPECT_EQ(stage.menusRequested(), 1);
}

TEST_F(WindowMenuTest, ARightClickElsewhereDoesNot) {
  rightClick(middleOf(*stage.named("Choose videos")));
  rightClick(middleOf(*stage.named("Film 1")));
  EXPECT_EQ(stage.menusRequested(), 0);
}

TEST_F(WindowMenuTest, AFingerThatRestsOnTheBarAsksForItOnce) {
  const std::unique_ptr<QPointingDevice> finger(QTest::createTouchDevice());
  QTest::touchEvent(&stage.window(), finger.get()).press(0, bar);
  EXPECT_TRUE(isAskedFor());
  QTest::touchEvent(&stage.window(), finger.get()).release(0, bar);
  QTest::qWait(2 * shortPatience);
  EXPECT_EQ(stage.menusRequested(), 1);
}

TEST_F(WindowMenuTest, AFingerThatMovesOrLeavesDoesNot) {
  const std::unique_ptr<QPointingDevice> finger(QTest::createTouchDevice());
  auto touch = QTest::touchEvent(&stage.window(), finger.get(), false);
  // Nothing else is handled between the two, so that it does not rest even where the machine halts.
  touch.press(0, bar).commit(false);
  touch.move(0, bar + QPoint(60, 0)).commit();
  EXPECT_TRUE(isNotAskedFor());
  touch.release(0, bar + QPoint(60, 0)).commit();
  touch.press(1, bar).commit(false);
  touch.release(1, bar).commit();
  EXPECT_TRUE(isNotAskedFor());
}

TEST_F(WindowMenuTest, AFingerThatRestsOnAFilmDoesNot) {
  const std::unique_ptr<QPointingDevice> finger(QTest::createTouchDevice());
  const QPoint film = middleOf(*stage.named("Film 1"));
  QTest::touchEvent(&stage.window(), finger.get()).press(0, film);
  EXPECT_TRUE(isNotAskedFor());
  QTest::touchEvent(&stage.window(), finger.get()).release(0, film);
}

TEST_F(WindowMenuTest, TheLeftButtonHeldOnTheBarAsksForIt) {
  QTest::mousePress(&stage.window(), Qt::LeftButton, {}, bar);
  EXPECT_TRUE(isAskedFor());
  QTest::mouseRelease(&stage.window(), Qt::LeftButton, {}, bar);
}

TEST_F(WindowMenuTest, KeysAskForIt) {
  stage.window().requestActivate();
  EXPECT_TRUE(QTest::qWaitForWindowActive(&stage.window()));
  QTest::keyClick(&stage.window(), Qt::Key_Menu);
  QTest::keyClick(&stage.window(), Qt::Key_F10, Qt::ShiftModifier);
  EXPECT_EQ(stage.menusRequested(), 2);
  QTest::keyClick(&stage.window(), Qt::Key_F10);
  EXPECT_EQ(stage.menusRequested(), 2);
}

TEST_F(WindowMenuTest, NothingAsksForItUnderASheet) {
  stage.openInfo();
  stage.window().requestActivate();
  EXPECT_TRUE(QTest::qWaitForWindowActive(&stage.window()));
  rightClick(bar);
  QTest::keyClick(&stage.window(), Qt::Key_Menu);
  EXPECT_TRUE(isNotAskedFor());
}
