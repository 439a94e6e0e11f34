#include "tests/host/qtquick/ScreenStage.h"

#include <gtest/gtest.h>

#include <QTest>

namespace {

/// The one test program asks for no motion; here it is wanted.
class MotionTest : public testing::Test {
 protected:
  MotionTest() {
    qunsetenv("QUILLOP_REDUCE_MOTION");
    stage = std::make_unique<ScreenStage>();
  }
  ~MotionTest() override { qputenv("QUILLOP_REDUCE_MOTION", "1"); }

  QQuickItem* topmostScreen() const { return stage->window().contentItem()->childItems().last(); }

  std::unique_ptr<ScreenStage> stage;
};

}  // namespace

TEST_F(MotionTest, ControlsFadeAndAreInertAtOnce) {
  stage->load(1);
  auto* const close = stage->named("Close film 1");
  ASSERT_NE(close, nullptr);
  ASSERT_TRUE(QTest::qWaitFor([&] { return close->parentItem()->opacity() == 1; }));
  const QPoint place = middleOf(*close);
  stage->toggleOverlay(1);
  EXPECT_EQ(stage->named("Close film 1"), nullptr);
  EXPECT_TRUE(close->isVisible());
  stage->takeLines();
  QTest::mouseClick(&stage->window(), Qt::LeftButton, {}, place);
  EXPECT_EQ(stage->takeLines().front(), "toccatoFilm1");
  stage->toggleOverlay(1);
  EXPECT_TRUE(QTest::qWaitFor([&] { return !close->isVisible(); }));
}

TEST_F(MotionTest, ASheetSlidesInAndOut) {
  stage->event([&] { std::dynamic_pointer_cast<UIButton>(stage->screen().view()->viewWithTag(5))->press(); });
  auto* const sheet = topmostScreen();
  const auto progress = [&] { return sheet->property("progress").toDouble(); };
  EXPECT_LT(progress(), 1);
  EXPECT_TRUE(QTest::qWaitFor([&] { return progress() == 1; }));
  stage->advance(UIWindow::transitionDuration);
  QTest::keyClick(&stage->window(), Qt::Key_Escape);
  stage->settle();
  EXPECT_EQ(topmostScreen(), sheet);
  EXPECT_TRUE(QTest::qWaitFor([&] { return progress() == 0; }));
  stage->advance(UIWindow::transitionDuration);
  EXPECT_NE(topmostScreen(), sheet);
}

TEST(NoMotion, ASheetIsThereAtOnceAndGoneAtOnce) {
  ScreenStage stage;
  stage.openList();
  auto* const sheet = stage.window().contentItem()->childItems().last();
  EXPECT_EQ(sheet->property("progress").toDouble(), 1);
}
