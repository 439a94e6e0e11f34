#include "hosts/desktop/PlayingFilms.h"
#include "tests/support/Stage.h"

#include <gtest/gtest.h>

namespace desktop {

namespace {

void loadBoth(Stage& stage) {
  stage.event([&] { stage.screen().passoVideo(NSURL::URLWithString(Stage::url("uno.mp4")), true); });
  stage.event([&] { stage.screen().passoVideo(NSURL::URLWithString(Stage::url("due.mp4")), false); });
}

bool plays(Stage& stage, int film) {
  return stage.fields().audio(film)->isPlaying();
}

}  // namespace

TEST(PlayingFilms, BothArePausedByTheirOwnControls) {
  Stage stage;
  loadBoth(stage);
  ASSERT_TRUE(plays(stage, 1) && plays(stage, 2));
  stage.event(pausePlayingFilms);
  EXPECT_FALSE(plays(stage, 1));
  EXPECT_FALSE(plays(stage, 2));
  EXPECT_EQ(stage.playPause(1)->imageForState(UIControlState::Normal)->name(), "play");
}

TEST(PlayingFilms, AFilmThatStandsIsLeftAlone) {
  Stage stage;
  loadBoth(stage);
  stage.event([&] { stage.playPause(1)->press(); });
  ASSERT_FALSE(plays(stage, 1));
  stage.event(pausePlayingFilms);
  EXPECT_FALSE(plays(stage, 1));
  EXPECT_FALSE(plays(stage, 2));
}

TEST(PlayingFilms, ControlsOutOfSightAreNoObstacle) {
  Stage stage;
  loadBoth(stage);
  stage.advance(20.0);
  ASSERT_TRUE(stage.overlay(1)->isHidden());
  stage.event(pausePlayingFilms);
  EXPECT_FALSE(plays(stage, 1));
}

TEST(PlayingFilms, WithoutFilmsNothingHappens) {
  Stage stage;
  stage.event(pausePlayingFilms);
  EXPECT_FALSE(stage.fields().audio(1));
}

}  // namespace desktop
