#include "tests/host/qtquick/ScreenStage.h"

#include "platform/poptip/PopTip.h"

#include <gtest/gtest.h>

#include <QTest>

namespace {

const QColor accent("#3DA9FC");

}  // namespace

TEST(Balloon, HangsBelowTheChooseButtonOnTheFirstRun) {
  ScreenStage stage({.isFirstRun = true});
  auto* const balloon = stage.named("Click on this and select your videos");
  ASSERT_NE(balloon, nullptr);
  const auto button = stage.screen().view()->viewWithTag(5)->frame();
  const auto x = static_cast<int>(button.origin.x + button.size.width / 2);
  const auto y = static_cast<int>(button.origin.y + button.size.height);
  const QImage window = stage.grab();
  EXPECT_EQ(window.pixelColor(x, y + 10), accent);       // the arrow, under the button's middle
  EXPECT_NE(window.pixelColor(x - 20, y + 8), accent);   // and nothing beside it
  EXPECT_EQ(window.pixelColor(x - 60, y + 20), accent);  // the bubble
}

TEST(Balloon, IsNoWiderThanItIsAllowedToBe) {
  ScreenStage stage;
  const auto balloon = make<PopTip>();
  stage.event([&] {
    balloon->show("a rather long text that certainly takes several lines", PopTipDirection::Down, 120,
                  stage.screen().view(), CGRectMake(500, 100, 40, 40));
  });
  const QImage window = stage.grab();
  int width = 0;
  for (int x = 0; x < window.width(); ++x) width += window.pixelColor(x, 158) == accent ? 1 : 0;
  EXPECT_GT(width, 100);
  EXPECT_LE(width, 120);
}

TEST(Balloon, TakesNoInput) {
  ScreenStage stage;
  stage.load(1);
  stage.takeLines();
  const auto balloon = make<PopTip>();
  stage.event(
      [&] { balloon->show("here", PopTipDirection::Down, 200, stage.screen().view(), CGRectMake(180, 80, 40, 40)); });
  QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, {200, 150});
  EXPECT_EQ(stage.takeLines(), std::vector<std::string>{"toccatoFilm1"});
}

TEST(Balloon, GoesWhenTheListIsOpened) {
  ScreenStage stage({.isFirstRun = true});
  stage.openList();
  QTest::keyClick(&stage.window(), Qt::Key_Escape);
  stage.advance(UIWindow::transitionDuration);
  EXPECT_EQ(stage.named("Click on this and select your videos"), nullptr);
}
