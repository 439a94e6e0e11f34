#include "hosts/desktop/UserPresence.h"

#include <gtest/gtest.h>

#include <QKeyEvent>
#include <QPointingDevice>
#include <QTest>
#include <QWindow>

#include <memory>

namespace desktop {
namespace {

class UserPresenceTest : public testing::Test {
 protected:
  UserPresenceTest() {
    window.resize(200, 200);
    window.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
  }

  QWindow window;
  int noticed = 0;
  UserPresence presence{[this] { ++noticed; }};
};

TEST_F(UserPresenceTest, AClickCountsOnce) {
  QTest::mouseClick(&window, Qt::LeftButton, {}, QPoint(20, 20));
  EXPECT_EQ(noticed, 1);
}

TEST_F(UserPresenceTest, AKeyCounts) {
  QTest::keyClick(&window, Qt::Key_Space);
  EXPECT_EQ(noticed, 1);
}

TEST_F(UserPresenceTest, ATouchCounts) {
  const std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
  QTest::touchEvent(&window, screen.get()).press(0, QPoint(20, 20), &window);
  QTest::touchEvent(&window, screen.get()).release(0, QPoint(20, 20), &window);
  EXPECT_GE(noticed, 1);
}

TEST_F(UserPresenceTest, WhatTheProgramDoesToItselfDoesNotCount) {
  QKeyEvent key(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier);
  QCoreApplication::sendEvent(&window, &key);
  window.resize(300, 300);
  window.hide();
  window.show();
  QCoreApplication::processEvents();
  EXPECT_EQ(noticed, 0);
}

}  // namespace
}  // namespace desktop
