#include "tests/support/Stage.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A film that has been loaded for so long that its overlay has hidden itself.
void loadAndWait(Stage& stage, int film, const std::string& name) {
  stage.load(film, name);
  stage.advance(7.5);
  stage.takeLines();
}

}  // namespace

TEST(Overlay, SecondTapCancelsTheAutoHide) {
  Stage stage;
  loadAndWait(stage, 1, "a.mp4");
  stage.tapFilm(1);
  EXPECT_FALSE(stage.overlay(1)->isHidden());
  stage.tapFilm(1);
  stage.advance(8.0);
  EXPECT_TRUE(stage.overlay(1)->isHidden());
  EXPECT_THAT(stage.takeLines(), ElementsAre("toccatoFilm1", "1     la vista non è stata rimossa", "toccatoFilm1"));
}

TEST(Overlay, ShownOverlayHidesItselfAfterSevenSeconds) {
  for (const int film : {1, 2}) {
    Stage stage;
    loadAndWait(stage, film, "a.mp4");
    stage.tapFilm(film);
    stage.takeLines();
    stage.advance(6.99);
    EXPECT_FALSE(stage.overlay(film)->isHidden());
    stage.advance(0.02);
    EXPECT_TRUE(stage.overlay(film)->isHidden());
    EXPECT_THAT(stage.takeLines(), ElementsAre("------------------------ Done"));
  }
}

TEST(Overlay, TapOnFilm1NeverChangesFilm2) {
  Stage stage;
  loadAndWait(stage, 1, "a.mp4");
  loadAndWait(stage, 2, "b.mp4");
  const auto timer2 = stage.fields().overlayTimer(2);
  stage.tapFilm(1);
  EXPECT_FALSE(stage.overlay(1)->isHidden());
  EXPECT_TRUE(stage.overlay(2)->isHidden());
  EXPECT_EQ(stage.fields().overlayTimer(2), timer2);
  EXPECT_THAT(stage.takeLines(), ElementsAre("toccatoFilm1", "1     la vista non è stata rimossa"));
}

TEST(Overlay, TapOnFilm2NeverChangesFilm1) {
  Stage stage;
  loadAndWait(stage, 1, "a.mp4");
  loadAndWait(stage, 2, "b.mp4");
  const auto timer1 = stage.fields().overlayTimer(1);
  stage.tapFilm(2);
  EXPECT_TRUE(stage.overlay(1)->isHidden());
  EXPECT_FALSE(stage.overlay(2)->isHidden());
  EXPECT_EQ(stage.fields().overlayTimer(1), timer1);
  EXPECT_THAT(stage.takeLines(), ElementsAre("toccatoFilm2", "2     la vista non è stata rimossa"));
}

TEST(Overlay, EndOfTheVideoLogsTheCloseAndLeavesTheOverlayHidden) {
  Stage stage;
  loadAndWait(stage, 1, "a.mp4");
  loadAndWait(stage, 2, "b.mp4");
  stage.tapFilm(1);
  stage.takeLines();
  stage.reportEnd("a.mp4 video");
  EXPECT_THAT(stage.takeLines(), ElementsAre("----- ChiudiFilm1", "-------------- chiudiFilm chiudo il film ",
                                             "blocco timer", "blocco tutto", "rimuovo il video 1"));
  EXPECT_TRUE(stage.overlay(1)->isHidden());
  stage.tapFilm(2);
  stage.takeLines();
  stage.reportEnd("b.mp4 video");
  EXPECT_THAT(stage.takeLines(), ElementsAre("ChiudiFilm2", "-------------- chiudiFilm chiudo il film ",
                                             "blocco timer", "blocco tutto", "rimuovo il video 1"));
  EXPECT_TRUE(stage.overlay(2)->isHidden());
}

TEST(Overlay, LoadIntoALoadedFilmWithVisibleOverlayShowsItAgainWithAFreshTimer) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.advance(5.0);
  stage.load(1, "b.mp4");
  EXPECT_FALSE(stage.overlay(1)->isHidden());
  stage.takeLines();
  stage.advance(6.9);
  EXPECT_FALSE(stage.overlay(1)->isHidden());
  EXPECT_THAT(stage.takeLines(), IsEmpty());
  stage.advance(0.2);
  EXPECT_TRUE(stage.overlay(1)->isHidden());
}

TEST(Overlay, TapBeforeTheFirstLoadDoesNothing) {
  Stage stage;
  stage.tapFilm(1);
  stage.tapFilm(2);
  EXPECT_TRUE(stage.overlay(1)->isHidden());
  EXPECT_TRUE(stage.overlay(2)->isHidden());
  EXPECT_THAT(stage.takeLines(), IsEmpty());
}

TEST(Overlay, TapOnAnEmptiedFilmStillTogglesIt) {
  Stage stage;
  loadAndWait(stage, 1, "a.mp4");
  stage.send(&ViewController::chiudiFilm, 1);
  stage.takeLines();
  stage.tapFilm(1);
  EXPECT_FALSE(stage.overlay(1)->isHidden());
  stage.advance(7.0);
  EXPECT_TRUE(stage.overlay(1)->isHidden());
  EXPECT_THAT(stage.takeLines(),
              ElementsAre("toccatoFilm1", "1     la vista non è stata rimossa", "------------------------ Done"));
}

TEST(Overlay, LoadIntoAnEmptyFilmWhoseOverlayWasShownStartsWithHiddenControls) {
  Stage stage;
  loadAndWait(stage, 1, "a.mp4");
  stage.send(&ViewController::chiudiFilm, 1);
  stage.tapFilm(1);
  ASSERT_FALSE(stage.overlay(1)->isHidden());
  stage.load(1, "b.mp4");
  EXPECT_TRUE(stage.overlay(1)->isHidden());
  EXPECT_TRUE(stage.fields().audio(1)->isPlaying());
}

TEST(Overlay, CloseHidesTheOverlayAndLeavesItsTimerPending) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.advance(3.0);
  stage.send(&ViewController::chiudiFilm, 1);
  EXPECT_TRUE(stage.overlay(1)->isHidden());
  EXPECT_TRUE(stage.fields().overlayTimer(1)->isValid());
  stage.takeLines();
  stage.advance(4.0);
  EXPECT_THAT(stage.takeLines(), ElementsAre("------------------------ Done"));
  EXPECT_TRUE(stage.overlay(1)->isHidden());
}

TEST(Overlay, TapOnAHiddenOverlayWithAPendingTimerStartsANewSevenSeconds) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.advance(3.0);
  stage.send(&ViewController::chiudiFilm, 1);
  stage.tapFilm(1);
  stage.takeLines();
  stage.advance(6.9);
  EXPECT_FALSE(stage.overlay(1)->isHidden());
  EXPECT_THAT(stage.takeLines(), IsEmpty());
  stage.advance(0.2);
  EXPECT_TRUE(stage.overlay(1)->isHidden());
}

TEST(Overlay, UsingTheControlsDoesNotExtendTheSevenSeconds) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.advance(6.0);
  stage.press(stage.playPause(1));
  stage.advance(1.0);
  EXPECT_TRUE(stage.overlay(1)->isHidden());
}

TEST(Overlay, OnlyOneOfSeveralRecognisersTakesATap) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.load(1, "b.mp4");
  stage.load(1, "c.mp4");
  stage.advance(8.0);
  stage.takeLines();
  stage.tapFilm(1);
  EXPECT_THAT(stage.takeLines(), ElementsAre("toccatoFilm1", "1     la vista non è stata rimossa"));
}
