#include "tests/host/qtquick/ScreenStage.h"

#include <gtest/gtest.h>

#include <QTest>

#include <thread>

namespace {

const QColor blue(0, 60, 120);
const QColor orange(120, 60, 0);
const QColor green(0, 120, 0);

/// The colour in the middle of a film's view, where no control is.
QColor middleOfFilm(ScreenStage& stage, int film) {
  const QQuickItem* const item = stage.named(QStringLiteral("Film %1").arg(film));
  return stage.grab().pixelColor(middleOf(*item));
}

std::size_t itemsIn(const QQuickItem& item) {
  std::size_t items = 0;
  for (const QQuickItem* const child : item.childItems()) items += 1 + itemsIn(*child);
  return items;
}

}  // namespace

TEST(Film, TheBoxIsTheViewInPixels) {
  ScreenStage stage;
  stage.load(1);
  EXPECT_EQ(stage.stream(0)->box(), QSize(512, 584));
}

TEST(Film, ThePictureLiesInTheMiddleOfTheViewOnBlack) {
  ScreenStage stage;
  stage.load(1);
  stage.toggleOverlay(1);
  const QImage window = stage.grab();
  const int top = 56 + (584 - 288) / 2;                     // 512 x 288 in 512 x 584
  EXPECT_EQ(window.pixelColor(0, top), QColor(Qt::white));  // the picture's own upper left corner
  EXPECT_EQ(window.pixelColor(0, top - 1), QColor(Qt::black));
  EXPECT_EQ(window.pixelColor(256, top + 100), blue);
  EXPECT_EQ(window.pixelColor(511, top + 287), blue);
  EXPECT_EQ(window.pixelColor(511, top + 288), QColor(Qt::black));
}

TEST(Film, EachFilmShowsItsOwnPictures) {
  ScreenStage stage;
  stage.load(1);
  stage.load(2);
  EXPECT_EQ(middleOfFilm(stage, 1), blue);
  EXPECT_EQ(middleOfFilm(stage, 2), orange);
}

TEST(Film, ANewPictureFromAnyThreadIsShown) {
  ScreenStage stage;
  stage.load(1);
  std::thread([&] { stage.stream(0)->paint(green); }).join();
  stage.settle();
  EXPECT_EQ(middleOfFilm(stage, 1), green);
}

TEST(Film, PicturesAreDrawnFromTheirOwnMemory) {
  ScreenStage stage({.size = {844, 390}});
  stage.load(1);
  stage.settle();
  // Changed behind everybody's back, it is drawn again where controls were over it.
  const auto picture = stage.stream(0)->newest();
  auto* const pixels = const_cast<std::uint8_t*>(picture->pixels);  // the test owns what it painted
  std::fill(pixels, pixels + static_cast<std::ptrdiff_t>(picture->stride) * picture->height, std::uint8_t{0x40});
  stage.toggleOverlay(1);
  EXPECT_EQ(stage.grab().pixelColor(200, 300), QColor(0x40, 0x40, 0x40));
}

TEST(Film, APictureOfOneFilmDoesNotDrawTheOtherAgain) {
  ScreenStage stage;
  stage.load(1);
  stage.load(2);
  const auto other = stage.stream(1)->newest();
  auto* const pixels = const_cast<std::uint8_t*>(other->pixels);  // the test owns what it painted
  std::fill(pixels, pixels + static_cast<std::ptrdiff_t>(other->stride) * other->height, std::uint8_t{0x40});
  stage.stream(0)->paint(green);
  stage.settle();
  EXPECT_EQ(middleOfFilm(stage, 1), green);
  EXPECT_EQ(middleOfFilm(stage, 2), orange);
}

TEST(Film, MinimisedItAsksForNoPictures) {
  ScreenStage stage;
  stage.load(1);
  stage.window().setWindowState(Qt::WindowMinimized);
  QCoreApplication::processEvents();
  EXPECT_EQ(stage.stream(0)->box(), QSize(0, 0));
  stage.window().setWindowState(Qt::WindowNoState);
  QCoreApplication::processEvents();
  EXPECT_EQ(stage.stream(0)->box(), QSize(512, 584));
}

TEST(Film, OldPicturesAreLetGo) {
  ScreenStage stage;
  stage.load(1);
  for (int step = 0; step < 20; ++step) {
    stage.stream(0)->paintNext();
    stage.settle();
  }
  // The one on the screen, held by the item and by what the scene graph draws.
  EXPECT_LE(stage.stream(0)->picturesHeld(), 2);
}

TEST(Film, FollowsTheWindow) {
  ScreenStage stage;
  stage.load(1);
  stage.resize({390, 844});
  stage.settle();
  EXPECT_EQ(stage.stream(0)->box(), QSize(390, 394));
  EXPECT_EQ(middleOfFilm(stage, 1), blue);
}

TEST(Film, NothingIsHeldOnceItIsClosed) {
  ScreenStage stage;
  stage.load(1);
  const auto stream = stage.stream(0);
  stage.event([&] { stage.screen().chiudiFilm1(); });
  EXPECT_FALSE(stream->hasListener());
  EXPECT_EQ(stream->box(), QSize(0, 0));
  EXPECT_EQ(stream->picturesHeld(), 0);
  EXPECT_NE(middleOfFilm(stage, 1), blue);
}

TEST(Film, TheNextOneShowsThroughTheEmptyLayersAboveIt) {
  ScreenStage stage;
  stage.load(1);
  stage.load(1);
  EXPECT_EQ(stage.engine().streams().size(), 2U);
  EXPECT_EQ(middleOfFilm(stage, 1), orange);
}

TEST(Film, WhatWasShownBeforeLeavesNoItems) {
  ScreenStage stage;
  const QQuickItem& view = *stage.named(QStringLiteral("Film 1"));
  const auto before = itemsIn(view);
  stage.load(1);
  const auto loaded = itemsIn(view);
  EXPECT_GT(loaded, before);
  for (int load = 0; load < 10; ++load) stage.load(1);
  EXPECT_EQ(itemsIn(view), loaded);
  stage.event([&] { stage.screen().chiudiFilm1(); });
  EXPECT_EQ(itemsIn(view), before);
}

TEST(Film, UnderAScreenThatHidesItItAsksForNoPictures) {
  ScreenStage stage;
  stage.load(1);
  const auto full = make<UIViewController>();
  full->setModalPresentationStyle(UIModalPresentationStyle::FullScreen);
  stage.event([&] { stage.screen().presentViewController_animated_completion(full, false); });
  EXPECT_EQ(stage.stream(0)->box(), QSize(0, 0));
  stage.event([&] { full->dismissViewControllerAnimated_completion(false); });
  EXPECT_EQ(stage.stream(0)->box(), QSize(512, 584));
}
