#include "tests/host/qtquick/ScreenStage.h"

#include "platform/uikit/UILabel.h"

#include <gtest/gtest.h>

#include <QCloseEvent>
#include <QGuiApplication>
#include <QTest>

TEST(Window, HasItsFirstAndItsSmallestSize) {
  qtquick::ScreenHost host(nullptr, {});
  EXPECT_EQ(host.window().size(), QSize(1024, 640));
  EXPECT_EQ(host.window().minimumSize(), QSize(360, 360));
  EXPECT_EQ(host.width(), 1024);
  EXPECT_EQ(host.height(), 640);
  EXPECT_TRUE(host.isResizable());
}

TEST(Window, TellsThatItIsToBeClosedAndStays) {
  int asked = 0;
  qtquick::ScreenHost host(nullptr, {.closed = [&] { ++asked; }, .hidden = {}, .shown = {}});
  host.show();
  QCloseEvent close;
  QCoreApplication::sendEvent(&host.window(), &close);
  EXPECT_EQ(asked, 1);
  EXPECT_TRUE(host.window().isVisible());
}

TEST(Window, TellsThatItIsOutOfSightAndBack) {
  std::string told;
  qtquick::ScreenHost host(nullptr, {.closed = {}, .hidden = [&] { told += 'h'; }, .shown = [&] { told += 's'; }});
  host.show();
  host.window().setWindowState(Qt::WindowMinimized);
  QCoreApplication::processEvents();
  EXPECT_EQ(told, "h");
  host.window().setWindowState(Qt::WindowNoState);
  QCoreApplication::processEvents();
  EXPECT_EQ(told, "hs");
}

TEST(Window, ItsSizeReachesTheScreensOnceAFrame) {
  ScreenStage stage;
  stage.window().resize(800, 600);
  stage.window().resize(390, 844);
  stage.settle();
  EXPECT_EQ(stage.platformWindow()->frame().size.height, 844);
  const auto lines = stage.takeLines();
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "cambia orientamento"), 1);
}

TEST(Window, F11TogglesFullScreen) {
  ScreenStage stage;
  QTest::keyClick(&stage.window(), Qt::Key_F11);
  EXPECT_TRUE(stage.window().windowStates() & Qt::WindowFullScreen);
  QTest::keyClick(&stage.window(), Qt::Key_F11);
  EXPECT_FALSE(stage.window().windowStates() & Qt::WindowFullScreen);
}

TEST(Window, EscapeLeavesFullScreen) {
  ScreenStage stage;
  QTest::keyClick(&stage.window(), Qt::Key_F11);
  QTest::keyClick(&stage.window(), Qt::Key_Escape);
  EXPECT_FALSE(stage.window().windowStates() & Qt::WindowFullScreen);
}

TEST(Window, ADoubleClickOnTheBarTogglesFullScreenAndOneOnAFilmDoesNot) {
  ScreenStage stage;
  QTest::mouseDClick(&stage.window(), Qt::LeftButton, {}, {700, 300});
  EXPECT_FALSE(stage.window().windowStates() & Qt::WindowFullScreen);
  QTest::mouseDClick(&stage.window(), Qt::LeftButton, {}, {700, 20});
  EXPECT_TRUE(stage.window().windowStates() & Qt::WindowFullScreen);
}

class LooksAt : public testing::TestWithParam<QSize> {};

namespace {

void collectControls(const Strong<UIView>& view, std::vector<Strong<UIView>>& controls) {
  if (std::dynamic_pointer_cast<UIControl>(view)) controls.push_back(view);
  for (const auto& subview : view->subviews()) collectControls(subview, controls);
}

}  // namespace

TEST_P(LooksAt, EveryControlIsLargeEnoughForAFingerAndInReach) {
  ScreenStage stage({.size = GetParam()});
  std::vector<Strong<UIView>> controls;
  collectControls(stage.screen().view(), controls);
  ASSERT_EQ(controls.size(), 10U);
  for (const auto& control : controls) {
    const CGRect frame = control->frame();
    EXPECT_GE(frame.size.width, 44) << control->accessibilityLabel();
    EXPECT_GE(frame.size.height, 44) << control->accessibilityLabel();
    EXPECT_TRUE(control->superview()->bounds().contains(frame.origin)) << control->accessibilityLabel();
    EXPECT_LE(frame.origin.x + frame.size.width, control->superview()->frame().size.width)
        << control->accessibilityLabel();
  }
}

INSTANTIATE_TEST_SUITE_P(Sizes, LooksAt,
                         testing::Values(QSize(390, 844), QSize(844, 390), QSize(1024, 640), QSize(1920, 1080),
                                         QSize(360, 640), QSize(360, 360)));
