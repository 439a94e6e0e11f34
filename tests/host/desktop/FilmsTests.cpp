#include "hosts/desktop/Films.h"
#include "tests/support/Stage.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace desktop {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FilmsTest : public testing::Test {
 protected:
  Film& film(int number) { return *films.all()[static_cast<std::size_t>(number - 1)]; }
  void load(int number) { stage.load(number, number == 1 ? "uno.mp4" : "due.mp4"); }
  void loadBoth() {
    load(1);
    load(2);
    stage.takeCalls();
  }
  bool plays(int number) { return stage.fields().audio(number)->isPlaying(); }
  void expectPlaying(bool first, bool second) {
    EXPECT_EQ(plays(1), first);
    EXPECT_EQ(plays(2), second);
    EXPECT_EQ(film(1).isPlaying(), first);
    EXPECT_EQ(film(2).isPlaying(), second);
  }

  Stage stage;
  Films films{stage.screen().films()};
};

TEST_F(FilmsTest, BothArePausedByTheirOwnControls) {
  loadBoth();
  expectPlaying(true, true);
  stage.event([&] { films.pause(); });
  expectPlaying(false, false);
  EXPECT_EQ(stage.playPause(1)->imageForState(UIControlState::Normal)->name(), "play");
}

TEST_F(FilmsTest, AFilmThatStandsIsLeftAlone) {
  loadBoth();
  stage.press(stage.playPause(1));
  expectPlaying(false, true);
  stage.event([&] { films.pause(); });
  expectPlaying(false, false);
}

TEST_F(FilmsTest, ControlsOutOfSightAreNoObstacle) {
  loadBoth();
  stage.advance(20.0);
  ASSERT_TRUE(stage.overlay(1)->isHidden());
  stage.event([&] { films.pause(); });
  expectPlaying(false, false);
  stage.event([&] { film(1).play(); });
  expectPlaying(true, false);
  EXPECT_TRUE(stage.overlay(1)->isHidden());
}

TEST_F(FilmsTest, NothingIsDoneToAPlaceWithoutAFilm) {
  stage.volume(1)->setValue(0.5F);
  stage.takeLines();
  stage.event([&] {
    films.pause();
    film(1).play();
    film(1).playOrPause();
    film(1).close();
    film(1).moveTo(10);
    film(1).moveBy(10);
    film(1).setVolume(1);
  });
  EXPECT_THAT(stage.takeCalls(), IsEmpty());
  EXPECT_THAT(stage.takeLines(), IsEmpty());
  EXPECT_EQ(stage.volume(1)->value(), 0.5F);
  EXPECT_FALSE(film(1).state());
  EXPECT_EQ(films.lastUsed(), nullptr);
}

TEST_F(FilmsTest, PlayAndPauseDoNothingToAFilmThatDoesSoAlready) {
  loadBoth();
  stage.event([&] { film(1).play(); });
  expectPlaying(true, true);
  stage.event([&] { film(1).pause(); });
  stage.event([&] { film(1).pause(); });
  expectPlaying(false, true);
  stage.event([&] { film(1).playOrPause(); });
  expectPlaying(true, true);
}

TEST_F(FilmsTest, SoundAndPictureMoveToTheWholeSecond) {
  loadBoth();
  stage.event([&] { film(2).moveTo(12.6); });
  EXPECT_THAT(stage.takeCalls(), ElementsAre("due.mp4 video seek 13", "due.mp4 audio seek 13", "commit"));
  EXPECT_EQ(stage.position(2)->value(), 13.0F);
}

TEST_F(FilmsTest, AFilmMovesFromWhereItIsNotFromWhereItsControlStands) {
  loadBoth();
  stage.setPosition("uno.mp4", 20.4);
  stage.event([&] { film(1).moveBy(5); });
  EXPECT_THAT(stage.takeCalls(), ElementsAre("uno.mp4 video seek 25", "uno.mp4 audio seek 25", "commit"));
  stage.setPosition("uno.mp4", 25.9);
  stage.event([&] { film(1).moveTo(25); });
  EXPECT_THAT(stage.takeCalls(), ElementsAre("uno.mp4 video seek 25", "uno.mp4 audio seek 25", "commit"));
}

TEST_F(FilmsTest, AFilmMovesNoFurtherThanItsEnds) {
  loadBoth();
  stage.event([&] { film(1).moveBy(-1e12); });
  EXPECT_EQ(stage.position(1)->value(), 0.0F);
  stage.event([&] { film(1).moveBy(1e12); });
  EXPECT_EQ(stage.position(1)->value(), 60.0F);
  stage.takeCalls();
  for (const double nowhere : {std::nan(""), std::numeric_limits<double>::infinity()}) {
    stage.event([&] { film(1).moveTo(nowhere); });
  }
  EXPECT_THAT(stage.takeCalls(), IsEmpty());
}

TEST_F(FilmsTest, TheVolumeStaysInsideItsRangeAndIgnoresWhatIsNoNumber) {
  loadBoth();
  for (const double volume : {0.25, -3.0, 7.0, std::nan("")}) stage.event([&] { film(1).setVolume(volume); });
  EXPECT_THAT(stage.takeCalls(), ElementsAre("uno.mp4 audio volume 0.25", "commit", "uno.mp4 audio volume 0",
                                             "commit", "uno.mp4 audio volume 1", "commit"));
  EXPECT_EQ(stage.volume(1)->value(), 1.0F);
}

TEST_F(FilmsTest, ClosingIsWhatTheCloseControlDoes) {
  loadBoth();
  stage.takeLines();
  stage.event([&] { film(1).close(); });
  EXPECT_THAT(stage.takeLines(), ElementsAre("-------------- chiudiFilm chiudo il film ", "blocco timer",
                                             "blocco tutto", "rimuovo il video 1"));
  EXPECT_FALSE(film(1).state());
  EXPECT_TRUE(film(2).state());
}

TEST_F(FilmsTest, AStateTellsAllAboutAFilm) {
  stage.host.mediaEngine.factsByUrl[Stage::url("uno.mp4")] = simulated::filmFacts(90.5);
  load(1);
  stage.setPosition("uno.mp4", 12.5);
  stage.event([&] { stage.playPause(1)->press(); });
  const auto state = film(1).state();
  ASSERT_TRUE(state);
  EXPECT_EQ(state->url, "file:///videos/uno.mp4");
  EXPECT_EQ(state->length, 90.5);
  EXPECT_EQ(state->volume, 1.0);
  EXPECT_FALSE(state->isPlaying);
  EXPECT_EQ(state->position, 12.5);
  EXPECT_EQ(film(1).name(), "Film 1");
}

TEST_F(FilmsTest, APlayingFilmIsExpectedToGoOnAsFarAsItsEnd) {
  FilmState state;
  state.length = 60;
  state.position = 20;
  state.at = FilmState::Clock::now();
  EXPECT_EQ(state.positionAt(state.at + std::chrono::seconds(5)), 20.0);
  state.isPlaying = true;
  EXPECT_EQ(state.positionAt(state.at + std::chrono::seconds(5)), 25.0);
  EXPECT_EQ(state.positionAt(state.at + std::chrono::seconds(500)), 60.0);
  EXPECT_EQ(state.positionAt(state.at - std::chrono::seconds(5)), 20.0);
}

TEST_F(FilmsTest, AChangeIsToldOnce) {
  loadBoth();
  int changes = 0;
  QObject::connect(&film(1), &Film::changed, &films, [&] { ++changes; });
  stage.event([&] { film(1).pause(); });
  EXPECT_EQ(changes, 1);
  stage.event([] {});
  EXPECT_EQ(changes, 1);
  stage.event([&] { film(1).setVolume(0.5); });
  EXPECT_EQ(changes, 2);
  stage.event([&] { film(2).pause(); });
  EXPECT_EQ(changes, 2);
  stage.event([&] { film(1).close(); });
  EXPECT_EQ(changes, 3);
  EXPECT_FALSE(film(1).state());
}

TEST_F(FilmsTest, AFilmInThePlaceOfAnotherIsAnotherLoadEvenOfTheSameFile) {
  // As short as this, no film is ever far from where it is expected, whatever time has passed since.
  stage.host.mediaEngine.factsByUrl[Stage::url("uno.mp4")] = simulated::filmFacts(0.5);
  load(1);
  const auto first = film(1).state();
  load(1);
  const auto second = film(1).state();
  ASSERT_TRUE(first && second);
  EXPECT_NE(first->load, second->load);
  EXPECT_EQ(first->jumps, second->jumps);
}

TEST_F(FilmsTest, MovingAFilmIsAJumpWhoeverDoesIt) {
  load(1);
  stage.event([&] { film(1).pause(); });
  const auto jumps = [&] { return film(1).state()->jumps; };
  auto before = jumps();
  stage.event([&] { film(1).setVolume(0.5); });
  EXPECT_EQ(jumps(), before);
  stage.event([&] { film(1).moveTo(0); });
  EXPECT_EQ(jumps(), ++before) << "also to where it is";
  stage.event([&] { stage.position(1)->adjust(30); });
  EXPECT_EQ(jumps(), ++before);
}

TEST_F(FilmsTest, AFilmThatIsElsewhereThanExpectedHasJumped) {
  load(1);
  stage.event([&] { film(1).pause(); });  // so that what is expected does not move on with the clock
  const auto before = film(1).state()->jumps;
  stage.setPosition("uno.mp4", 0.2);
  stage.event([] {});
  EXPECT_EQ(film(1).state()->jumps, before) << "a moment late";
  stage.setPosition("uno.mp4", 30);
  stage.event([] {});
  EXPECT_EQ(film(1).state()->jumps, before + 1);
  EXPECT_EQ(film(1).state()->position, 30);
}

TEST_F(FilmsTest, TellWhetherAnyOfThemPlays) {
  std::vector<bool> told;
  QObject::connect(&films, &Films::playingChanged, &films, [&](bool isPlaying) { told.push_back(isPlaying); });
  loadBoth();
  EXPECT_THAT(told, ElementsAre(true));
  stage.event([&] { film(1).pause(); });
  EXPECT_THAT(told, ElementsAre(true));
  stage.reportEnd("due.mp4 video");
  EXPECT_THAT(told, ElementsAre(true, false));
  stage.event([&] { film(1).play(); });
  EXPECT_THAT(told, ElementsAre(true, false, true));
}

TEST_F(FilmsTest, TheOneUsedLastIsTheOneLoadedOrWorkedLast) {
  loadBoth();
  EXPECT_EQ(films.lastUsed(), &film(2));
  stage.press(stage.playPause(1));
  EXPECT_EQ(films.lastUsed(), &film(1));
  stage.event([&] { stage.volume(2)->adjust(0.5F); });
  EXPECT_EQ(films.lastUsed(), &film(2));
  stage.event([&] { stage.position(1)->adjust(30); });
  EXPECT_EQ(films.lastUsed(), &film(1));
  stage.event([&] { film(2).pause(); });
  EXPECT_EQ(films.lastUsed(), &film(2));
  stage.event([&] { film(2).close(); });
  EXPECT_EQ(films.lastUsed(), &film(1)) << "the other one is closed";
  load(2);
  EXPECT_EQ(films.lastUsed(), &film(2));
}

TEST_F(FilmsTest, BeingPausedByTheSystemIsNoUse) {
  loadBoth();
  stage.event([&] { film(1).setVolume(0.5); });
  stage.event([&] { films.pause(); });
  EXPECT_EQ(films.lastUsed(), &film(1));
}

TEST(Films, TheirEndLeavesTheAppAlone) {
  Stage stage;
  { const Films gone(stage.screen().films()); }
  stage.load(1, "uno.mp4");
  stage.press(stage.playPause(1));
  EXPECT_FALSE(stage.fields().audio(1)->isPlaying());
}

}  // namespace
}  // namespace desktop
