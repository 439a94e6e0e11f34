#include "tests/host/qtquick/ScreenStage.h"

#include <gtest/gtest.h>

#include <QAccessible>

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
