#include "tests/host/qtquick/ScreenStage.h"

#include "platform/uikit/UISlider.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QTest>

#include <set>

namespace {

void collect(QAccessibleInterface* from, std::multiset<std::string>& names) {
  const bool isUsed =
      from->role() == QAccessible::Button || from->role() == QAccessible::Slider || from->role() == QAccessible::List;
  if (isUsed) names.insert(from->text(QAccessible::Name).toStdString());
  for (int child = 0; child < from->childCount(); ++child) collect(from->child(child), names);
}

/// The names of everything that can be used, each as often as it is there.
std::multiset<std::string> names(ScreenStage& stage) {
  std::multiset<std::string> found;
  collect(QAccessible::queryAccessibleInterface(&stage.window()), found);
  return found;
}

using Names = std::multiset<std::string>;

}  // namespace

TEST(Accessibility, TheMainScreenWithoutControls) {
  ScreenStage stage;
  EXPECT_EQ(names(stage), (Names{"Choose videos", "Info", "Film 1", "Film 2"}));
}

TEST(Accessibility, TheControlsOfAFilmThatPlays) {
  ScreenStage stage;
  stage.load(2);
  EXPECT_EQ(names(stage), (Names{"Choose videos", "Info", "Film 1", "Film 2", "Pause film 2", "Close film 2",
                                 "Position in film 2", "Volume of film 2"}));
}

TEST(Accessibility, ThePlayButtonSaysWhatItWouldDo) {
  ScreenStage stage;
  stage.load(1);
  EXPECT_NE(stage.named("Pause film 1"), nullptr);
  stage.event([&] { stage.screen().bottonePlayPausaFilm1->press(); });
  EXPECT_EQ(stage.named("Pause film 1"), nullptr);
  EXPECT_NE(stage.named("Play film 1"), nullptr);
}

TEST(Accessibility, TheList) {
  ScreenStage stage({.videos = 0});
  stage.simulatedHost().mediaLibrary.itemsByType.clear();
  stage.openList();
  stage.advance(1);
  EXPECT_EQ(names(stage), (Names{"OK", "Tutorial for add Movies"}));
}

TEST(Accessibility, TheTablesOfTheList) {
  ScreenStage stage;
  stage.openList();
  EXPECT_EQ(names(stage), (Names{"Close", "Videos for film 1", "Videos for film 2"}));
}

TEST(Accessibility, FilmsCanBeFocusedOnceATapMeansSomething) {
  ScreenStage stage;
  const auto isFocusable = [&] {
    return QAccessible::queryAccessibleInterface(stage.named("Film 1"))->state().focusable != 0;
  };
  EXPECT_FALSE(isFocusable());
  stage.load(1);
  EXPECT_TRUE(isFocusable());
}

namespace {

QAccessibleInterface* interfaceOf(ScreenStage& stage, const QString& name) {
  auto* const item = stage.named(name);
  return item != nullptr ? QAccessible::queryAccessibleInterface(item) : nullptr;
}

QString description(ScreenStage& stage, const QString& name) {
  auto* const interface = interfaceOf(stage, name);
  return interface != nullptr ? interface->text(QAccessible::Description) : QStringLiteral("is not there");
}

}  // namespace

TEST(Accessibility, TheWindowIsNamed) {
  ScreenStage stage;
  EXPECT_EQ(QAccessible::queryAccessibleInterface(&stage.window())->text(QAccessible::Name), "Quillop");
}

TEST(Accessibility, SlidersTellTheirValuesInWordsAndAsNumbers) {
  ScreenStage stage;
  stage.load(1);
  EXPECT_EQ(description(stage, "Position in film 1"), "0 seconds of 1 minute");
  EXPECT_EQ(description(stage, "Volume of film 1"), "100 percent");
  stage.event([&] {
    stage.screen().progressSlider1->setMaximumValue(3600);
    stage.screen().progressSlider1->setValue(125.97F);
    stage.screen().volumeSlider1->setValue(0.5F);
  });
  // 125.97 is what the app finds when it asks for second 126.
  EXPECT_EQ(description(stage, "Position in film 1"), "2 minutes 6 seconds of 1 hour");
  EXPECT_EQ(description(stage, "Volume of film 1"), "50 percent");
  auto* const value = interfaceOf(stage, "Position in film 1")->valueInterface();
  ASSERT_NE(value, nullptr);
  EXPECT_NEAR(value->currentValue().toDouble(), 125.97, 0.01);
  EXPECT_EQ(value->maximumValue().toDouble(), 3600);
}

TEST(Accessibility, AValueThatAssistiveTechnologySetsIsSoughtLikeAnyOther) {
  ScreenStage stage;
  stage.load(1);
  stage.takeLines();
  interfaceOf(stage, "Position in film 1")->valueInterface()->setCurrentValue(30.0);
  stage.settle();
  EXPECT_EQ(stage.screen().progressSlider1->value(), 30);
  EXPECT_EQ(stage.takeLines(), std::vector<std::string>{"muovitiDentroIlFilm"});
}

TEST(Accessibility, ControlsThatHideAreOutOfReachUntilTheFilmIsPressed) {
  ScreenStage stage;
  stage.load(1);
  stage.load(2);
  stage.toggleOverlay(1);
  for (const auto* const name : {"Pause film 1", "Close film 1", "Position in film 1", "Volume of film 1"}) {
    EXPECT_EQ(stage.named(name), nullptr) << name;
  }
  interfaceOf(stage, "Film 1")->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  stage.settle();
  for (const auto* const name : {"Pause film 1", "Close film 1", "Position in film 1", "Volume of film 1"}) {
    EXPECT_NE(stage.named(name), nullptr) << name;
  }
}

TEST(Accessibility, NothingBeneathASheetIsInReach) {
  ScreenStage stage({.isFirstRun = true});
  ASSERT_NE(stage.named("Click on this and select your videos"), nullptr);
  stage.openInfo();
  for (const auto* const name : {"Choose videos", "Film 1", "Film 2", "Click on this and select your videos"}) {
    EXPECT_EQ(stage.named(name), nullptr) << name;
  }
}

TEST(Accessibility, SheetsAreDialogsWithTheirTitles) {
  ScreenStage stage;
  stage.openList();
  auto* const dialog = interfaceOf(stage, "Choose a video");
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(dialog->role(), QAccessible::Dialog);
  EXPECT_EQ(interfaceOf(stage, "Videos for film 1")->parent(), dialog);
}

TEST(Accessibility, TheHintIsANoticeAsLargeAsItsBalloon) {
  ScreenStage stage({.isFirstRun = true});
  auto* const hint = interfaceOf(stage, "Click on this and select your videos");
  ASSERT_NE(hint, nullptr);
  EXPECT_EQ(hint->role(), QAccessible::Notification);
  EXPECT_LT(hint->rect().width(), 300);
  EXPECT_LT(hint->rect().height(), 200);
}

TEST(Accessibility, RowsTellTheirPlaceAndWhetherTheyAreCurrent) {
  ScreenStage stage({.videos = 2000});
  stage.openList();
  stage.window().requestActivate();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&stage.window()));
  EXPECT_EQ(description(stage, "Videos for film 1"), "2,000 items");
  const auto row = [&](int number) { return interfaceOf(stage, QStringLiteral("Video %1, 00:01:00").arg(number)); };
  EXPECT_EQ(row(1)->role(), QAccessible::ListItem);
  EXPECT_EQ(row(1)->text(QAccessible::Description), "2 of 2000");
  EXPECT_TRUE(row(1)->state().selectable);
  EXPECT_FALSE(row(1)->state().selected);
  QTest::keyClick(&stage.window(), Qt::Key_Down);
  EXPECT_TRUE(row(1)->state().selected);
  EXPECT_TRUE(row(1)->state().focused);
  EXPECT_FALSE(row(0)->state().selected);
}

TEST(Accessibility, NothingInAListIsWithoutAName) {
  ScreenStage stage;
  stage.openList();
  auto* const table = interfaceOf(stage, "Videos for film 1");
  for (int child = 0; child < table->childCount(); ++child) {
    EXPECT_NE(table->child(child)->text(QAccessible::Name), "") << child;
  }
}

TEST(Accessibility, TheFocusIsWhereAssistiveTechnologyPressed) {
  ScreenStage stage;
  stage.window().requestActivate();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&stage.window()));
  interfaceOf(stage, "Choose videos")->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  stage.advance(UIWindow::transitionDuration);
  ASSERT_NE(stage.named("Videos for film 1"), nullptr);
  interfaceOf(stage, "Close")->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  stage.advance(UIWindow::transitionDuration);
  EXPECT_TRUE(interfaceOf(stage, "Choose videos")->state().focused);
}
