#include "tests/host/qtquick/ScreenStage.h"

#include <gtest/gtest.h>

#include <QTest>

TEST(Presentation, TheSheetLiesOverTheDimmedScreen) {
  ScreenStage stage;
  const QColor bar = stage.grab().pixelColor(500, 40);
  ASSERT_TRUE(stage.openList());
  const QImage window = stage.grab();
  EXPECT_EQ(window.pixelColor(500, 100), QColor(Qt::black));
  EXPECT_LT(window.pixelColor(500, 10).lightness(), bar.lightness());
}

TEST(Presentation, BeneathASheetNothingIsThereForAssistiveTechnology) {
  ScreenStage stage;
  stage.load(1);
  ASSERT_TRUE(stage.openList());
  for (const char* const name : {"Choose videos", "Film 1", "Pause film 1", "Volume of film 1"}) {
    EXPECT_EQ(stage.named(name), nullptr) << name;
  }
  EXPECT_NE(stage.named("Close"), nullptr);
}

TEST(Presentation, EscapeAndBackPressTheCloseButtonOfTheSheet) {
  for (const auto key : {Qt::Key_Escape, Qt::Key_Back}) {
    ScreenStage stage;
    ASSERT_TRUE(stage.openList());
    stage.takeLines();
    QTest::keyClick(&stage.window(), key);
    EXPECT_EQ(stage.takeLines(), std::vector<std::string>{"chiudi"});
    stage.advance(UIWindow::transitionDuration);
    EXPECT_TRUE(stage.platformWindow()->presentations().empty());
  }
}

TEST(Presentation, EscapeDoesNothingOnTheMainScreen) {
  ScreenStage stage;
  QTest::keyClick(&stage.window(), Qt::Key_Escape);
  EXPECT_TRUE(stage.takeLines().empty());
}

TEST(Presentation, TheCloseButtonClosesTheList) {
  ScreenStage stage;
  ASSERT_TRUE(stage.openList());
  QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, middleOf(*stage.named("Close")));
  stage.advance(UIWindow::transitionDuration);
  EXPECT_TRUE(stage.platformWindow()->presentations().empty());
  EXPECT_NE(stage.named("Choose videos"), nullptr);
}

TEST(Presentation, ItsItemsGoWithTheScreen) {
  ScreenStage stage;
  const auto before = stage.window().contentItem()->childItems().size();
  stage.openList();
  EXPECT_EQ(stage.window().contentItem()->childItems().size(), before + 1);
  QTest::keyClick(&stage.window(), Qt::Key_Escape);
  stage.advance(UIWindow::transitionDuration);
  EXPECT_EQ(stage.window().contentItem()->childItems().size(), before);
}
