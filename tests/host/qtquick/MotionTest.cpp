#include "tests/host/qtquick/ScreenStage.h"

#include <gtest/gtest.h>

#include <QTest>

namespace {

class MotionTest : public testing::Test {
 protected:
  QQuickItem* topmostScreen() { return stage.window().contentItem()->childItems().last(); }

  ScreenStage stage{{.moves = true}};
};

constexpr double fading = 0.18;

}  // namespace

TEST_F(MotionTest, ControlsFadeAndAreInertAtOnce) {
  stage.load(1);
  stage.advance(fading);
  auto* const close = stage.named("Close film 1");
  ASSERT_NE(close, nullptr);
  const auto opacity = [&] { return close->parentItem()->opacity(); };
  ASSERT_EQ(opacity(), 1);
  const QPoint place = middleOf(*close);
  stage.toggleOverlay(1);
  stage.advance(fading / 2);
  EXPECT_EQ(stage.named("Close film 1"), nullptr);
  EXPECT_TRUE(close->isVisible());
  EXPECT_GT(opacity(), 0);
  EXPECT_LT(opacity(), 1);
  stage.takeLines();
  QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, place);
  EXPECT_EQ(stage.takeLines().front(), "toccatoFilm1");
  stage.toggleOverlay(1);
  stage.advance(fading);
  EXPECT_FALSE(close->isVisible());
}

TEST_F(MotionTest, ASheetSlidesInAndOut) {
  stage.event([&] { std::dynamic_pointer_cast<UIButton>(stage.screen().view()->viewWithTag(5))->press(); });
  auto* const sheet = topmostScreen();
  const auto progress = [&] { return sheet->property("progress").toDouble(); };
  const auto isBetween = [&] { return progress() > 0 && progress() < 1; };
  EXPECT_EQ(progress(), 0);
  stage.advance(UIWindow::transitionDuration / 2);
  EXPECT_TRUE(isBetween()) << progress();
  stage.advance(UIWindow::transitionDuration / 2);
  EXPECT_EQ(progress(), 1);
  QTest::keyClick(&stage.window(), Qt::Key_Escape);
  stage.settle();
  stage.advance(UIWindow::transitionDuration / 2);
  EXPECT_EQ(topmostScreen(), sheet);
  EXPECT_TRUE(isBetween()) << progress();
  stage.advance(UIWindow::transitionDuration / 2);
  EXPECT_NE(topmostScreen(), sheet);
}

TEST(NoMotion, ASheetIsThereAtOnceAndGoneAtOnce) {
  ScreenStage stage;
  stage.openList();
  const QPointer<QQuickItem> sheet = stage.window().contentItem()->childItems().last();
  EXPECT_EQ(sheet->property("progress").toDouble(), 1);
  QTest::keyClick(&stage.window(), Qt::Key_Escape);
  stage.settle();
  EXPECT_FALSE(sheet);
}
