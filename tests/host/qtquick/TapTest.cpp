#include "tests/host/qtquick/ScreenStage.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QTest>

namespace {

class TapTest : public testing::Test {
 protected:
  TapTest() {
    stage.load(1);
    stage.takeLines();
  }

  bool overlayIsShown() const { return !stage.screen().vistaControlliFilm1->isHidden(); }
  void click(QPoint place) {
    QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, place);
    stage.settle();
  }
  std::size_t taps() {
    const auto lines = stage.takeLines();
    return static_cast<std::size_t>(std::count(lines.begin(), lines.end(), "toccatoFilm1"));
  }

  ScreenStage stage;
};

}  // namespace

TEST_F(TapTest, OnTheFilmTogglesItsControls) {
  click({200, 100});
  EXPECT_FALSE(overlayIsShown());
  click({200, 100});
  EXPECT_TRUE(overlayIsShown());
  EXPECT_EQ(taps(), 2U);
}

TEST_F(TapTest, OfAFingerIsOneTap) {
  const std::unique_ptr<QPointingDevice> finger(QTest::createTouchDevice());
  QTest::touchEvent(&stage.window(), finger.get()).press(0, {200, 100});
  QTest::touchEvent(&stage.window(), finger.get()).release(0, {200, 100});
  EXPECT_EQ(taps(), 1U);
}

TEST_F(TapTest, OnAnEmptyPartOfTheControlsReachesTheFilm) {
  const auto overlay = stage.screen().vistaControlliFilm1->frame();
  click({static_cast<int>(overlay.origin.x) + 260, 56 + static_cast<int>(overlay.origin.y) + 80});
  EXPECT_EQ(taps(), 1U);
  EXPECT_FALSE(overlayIsShown());
}

TEST_F(TapTest, OnAControlDoesNotReachTheFilm) {
  for (const char* const name : {"Pause film 1", "Play film 1", "Volume of film 1", "Position in film 1"}) {
    auto* const control = stage.named(name);
    ASSERT_NE(control, nullptr) << name;
    click(middleOf(*control));
    EXPECT_EQ(taps(), 0U) << name;
  }
  EXPECT_TRUE(overlayIsShown());
}

TEST_F(TapTest, OfAFingerOnAControlDoesNotReachTheFilm) {
  const std::unique_ptr<QPointingDevice> finger(QTest::createTouchDevice());
  for (const char* const name : {"Pause film 1", "Volume of film 1"}) {
    const QPoint place = middleOf(*stage.named(name));
    QTest::touchEvent(&stage.window(), finger.get()).press(0, place);
    QTest::touchEvent(&stage.window(), finger.get()).release(0, place);
    EXPECT_EQ(taps(), 0U) << name;
  }
}

TEST_F(TapTest, WhereControlsAreHiddenReachesTheFilm) {
  const QPoint place = middleOf(*stage.named("Pause film 1"));
  stage.toggleOverlay(1);
  stage.takeLines();
  click(place);
  EXPECT_EQ(taps(), 1U);
  EXPECT_TRUE(overlayIsShown());
}

TEST_F(TapTest, ByKeyOrAssistiveTechnologyIsATap) {
  auto* const film = stage.named("Film 1");
  film->forceActiveFocus(Qt::TabFocusReason);
  QTest::keyClick(&stage.window(), Qt::Key_Space);
  QTest::keyClick(&stage.window(), Qt::Key_Return);
  EXPECT_EQ(taps(), 2U);
  QAccessible::queryAccessibleInterface(film)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(taps(), 1U);
}

TEST_F(TapTest, OnAFilmThatWasNeverLoadedDoesNothing) {
  click({700, 100});
  EXPECT_TRUE(stage.takeLines().empty());
}

TEST_F(TapTest, BesideASheetReachesNothing) {
  stage.openList();
  stage.takeLines();
  click({8, 300});
  EXPECT_TRUE(stage.takeLines().empty());
}
