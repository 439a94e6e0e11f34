#include "tests/support/Stage.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Both films loaded, nothing pending in the records.
void loadBoth(Stage& stage) {
  stage.load(1, "a.mp4");
  stage.load(2, "b.mp4");
  stage.takeLines();
  stage.takeCalls();
}

}  // namespace

TEST(Transport, OnlyTag1ActsOnFilm1) {
  Stage stage;
  loadBoth(stage);
  for (const long tag : {0L, 2L, 5L}) {
    stage.send(&ViewController::playPausaFilm, tag);
    EXPECT_TRUE(stage.fields().audio(1)->isPlaying());
    EXPECT_FALSE(stage.fields().audio(2)->isPlaying());
    stage.send(&ViewController::playPausaFilm, tag);
    EXPECT_TRUE(stage.fields().audio(2)->isPlaying());
  }
  stage.send(&ViewController::playPausaFilm, 1);
  EXPECT_FALSE(stage.fields().audio(1)->isPlaying());
  EXPECT_TRUE(stage.fields().audio(2)->isPlaying());
}

TEST(Transport, ToggleOnAnEmptyFilmDoesNothing) {
  Stage stage;
  stage.send(&ViewController::playPausaFilm, 1);
  stage.send(&ViewController::playPausaFilm, 2);
  EXPECT_THAT(stage.takeLines(), IsEmpty());
  EXPECT_THAT(stage.takeCalls(), IsEmpty());
  EXPECT_EQ(stage.fields().progressTimer(1), nullptr);
  EXPECT_EQ(stage.fields().progressTimer(2), nullptr);
}

TEST(Transport, ToggleTwiceOnAPausedFilmPlaysAndPausesSoundFirst) {
  for (const int film : {1, 2}) {
    Stage stage;
    stage.load(film, "a.mp4");
    stage.send(&ViewController::playPausaFilm, film);
    stage.takeCalls();
    stage.takeLines();

    stage.send(&ViewController::playPausaFilm, film);
    EXPECT_THAT(stage.takeCalls(), ElementsAre("a.mp4 audio play", "a.mp4 video play", "commit"));
    const auto timer = stage.fields().progressTimer(film);
    EXPECT_TRUE(timer->isValid());
    EXPECT_EQ(timer->timeInterval(), 1.0);
    EXPECT_TRUE(timer->repeats());
    const auto userInfo = std::dynamic_pointer_cast<NSDictionary>(timer->userInfo());
    ASSERT_EQ(userInfo->entries().size(), 1U);
    EXPECT_EQ(std::dynamic_pointer_cast<NSNumber>(userInfo->objectForKey("numeroVideo"))->integerValue(), film);
    EXPECT_EQ(Stage::imageOf(*stage.playPause(film)), "pause");

    stage.send(&ViewController::playPausaFilm, film);
    EXPECT_THAT(stage.takeCalls(), ElementsAre("a.mp4 audio pause", "a.mp4 video pause", "commit"));
    EXPECT_FALSE(timer->isValid());
    EXPECT_EQ(Stage::imageOf(*stage.playPause(film)), "play");
    EXPECT_THAT(stage.takeLines(), IsEmpty());
  }
}

TEST(Transport, ResumeDropsThePreviousTimerWithoutInvalidatingIt) {
  Stage stage;
  stage.load(1, "a.mp4");
  const auto first = stage.fields().progressTimer(1);
  stage.event([&] { stage.fields().audio(1)->pause(); });  // the sound stopped by itself; the timer still runs
  stage.send(&ViewController::playPausaFilm, 1);
  EXPECT_TRUE(first->isValid());
  EXPECT_NE(stage.fields().progressTimer(1), first);
}

TEST(Transport, StateOfAFilmIsThatOfItsSound) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.host.mainLoop.post(stage.host.mediaEngine.player("a.mp4 audio")->events.ended);
  stage.advance(0);
  stage.takeCalls();
  stage.send(&ViewController::playPausaFilm, 1);
  EXPECT_THAT(stage.takeCalls(), ElementsAre("a.mp4 audio play", "a.mp4 video play", "commit"));
}

TEST(Transport, PausedFilmKeepsItsFields) {
  Stage stage;
  stage.load(1, "a.mp4");
  const auto audio = stage.fields().audio(1);
  stage.send(&ViewController::playPausaFilm, 1);
  EXPECT_EQ(stage.fields().audio(1), audio);
  EXPECT_NE(stage.fields().video(1), nullptr);
}

TEST(Transport, CloseWithoutAudioPlayerInvalidatesALeftoverTimerAndNothingElse) {
  for (const int film : {1, 2}) {
    Stage stage;
    stage.load(film, "a.mp4");
    stage.event([&] { stage.fields().clearAudio(film); });
    stage.takeLines();
    stage.takeCalls();
    stage.send(&ViewController::chiudiFilm, film);
    EXPECT_THAT(stage.takeLines(), ElementsAre(Stage::closeLine, "blocco timer"));
    EXPECT_FALSE(stage.fields().progressTimer(film)->isValid());
    EXPECT_FALSE(stage.overlay(film)->isHidden());
    EXPECT_EQ(Stage::imageOf(*stage.playPause(film)), "pause");
    EXPECT_NE(stage.fields().video(film), nullptr);
    EXPECT_THAT(stage.takeCalls(), IsEmpty());
  }
}

TEST(Transport, CloseStopsTheSoundPausesThePictureAndClearsVideoThenAudio) {
  for (const int film : {1, 2}) {
    Stage stage;
    stage.load(film, "a.mp4");
    // Without its layer's reference the video player goes with its field, which shows the order of the two.
    stage.fields().layer(film)->sublayers()->front()->removeFromSuperlayer();
    stage.takeLines();
    stage.takeCalls();
    stage.send(&ViewController::chiudiFilm, film);
    EXPECT_THAT(stage.takeCalls(), ElementsAre("a.mp4 audio stop", "a.mp4 video pause", "a.mp4 video closed",
                                               "a.mp4 audio closed", "commit"));
    EXPECT_THAT(stage.takeLines(), ElementsAre(Stage::closeLine, "blocco timer", "blocco tutto"));
  }
}

TEST(Transport, CloseOfALoadedFilm2WithThreeSublayersRemovesEach) {
  Stage stage;
  stage.load(2, "b.mp4");
  stage.advance(3.0);
  stage.fields().layer(2)->addSublayer(make<CALayer>());
  stage.fields().layer(2)->addSublayer(make<CALayer>());
  stage.takeLines();
  stage.send(&ViewController::chiudiFilm, 2);
  EXPECT_THAT(stage.takeLines(), ElementsAre(Stage::closeLine, "blocco timer", "blocco tutto", "rimuovo il video 1",
                                             "rimuovo il video 1", "rimuovo il video 1"));
  EXPECT_THAT(*stage.fields().layer(2)->sublayers(), IsEmpty());
  EXPECT_EQ(stage.position(2)->value(), 0.0F);
  EXPECT_EQ(Stage::imageOf(*stage.playPause(2)), "play");
  EXPECT_TRUE(stage.overlay(2)->isHidden());
}

TEST(Transport, CloseLeavesVolumeOverlayTimerViewAndLayerAlone) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.volume(1)->setValue(0.3F);
  const auto layer = stage.fields().layer(1);
  const auto timer = stage.fields().overlayTimer(1);
  stage.send(&ViewController::chiudiFilm, 1);
  EXPECT_EQ(stage.volume(1)->value(), 0.3F);
  EXPECT_EQ(stage.fields().layer(1), layer);
  EXPECT_EQ(layer->superlayer(), stage.filmView(1)->layer());
  EXPECT_EQ(stage.fields().overlayTimer(1), timer);
  EXPECT_TRUE(timer->isValid());
  EXPECT_FALSE(stage.filmView(1)->isHidden());
}

TEST(Transport, AfterACloseToggleVolumeAndSeekDoNothing) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.send(&ViewController::chiudiFilm, 1);
  stage.takeLines();
  stage.takeCalls();
  stage.send(&ViewController::playPausaFilm, 1);
  stage.send(&ViewController::cambiaVolumeFilm, 1);
  stage.send(&ViewController::muovitiDentroIlFilm, 1);
  EXPECT_THAT(stage.takeLines(), ElementsAre("muovitiDentroIlFilm"));
  EXPECT_THAT(stage.takeCalls(), IsEmpty());
  EXPECT_FALSE(stage.fields().progressTimer(1)->isValid());
}

TEST(Transport, CloseOfAnEmptyFilmLogsItsFirstLineOnly) {
  Stage stage;
  stage.send(&ViewController::chiudiFilm, 1);
  EXPECT_THAT(stage.takeLines(), ElementsAre(Stage::closeLine));
}

TEST(Transport, CloseOfOneFilmLeavesTheOtherPlaying) {
  Stage stage;
  loadBoth(stage);
  stage.send(&ViewController::chiudiFilm, 1);
  EXPECT_TRUE(stage.fields().audio(2)->isPlaying());
  for (const auto& call : stage.takeCalls()) EXPECT_THAT(call, testing::Not(testing::StartsWith("b.mp4")));
}

TEST(Transport, SeekMovesThePictureToAWholeSecondAndThenTheSoundToTheVeryPlace) {
  for (const int film : {1, 2}) {
    Stage stage;
    stage.load(film, "a.mp4");
    stage.takeLines();
    stage.takeCalls();
    stage.position(film)->setValue(12.7F);
    stage.send(&ViewController::muovitiDentroIlFilm, film);
    const auto calls = stage.takeCalls();
    ASSERT_EQ(calls.size(), 3U);
    EXPECT_EQ(calls[0], "a.mp4 video seek 12");
    EXPECT_THAT(calls[1], testing::StartsWith("a.mp4 audio seek 12.69999"));  // 12.7 in single precision
    EXPECT_EQ(calls[2], "commit");
    EXPECT_EQ(stage.fields().audio(film)->currentTime(), static_cast<double>(12.7F));
    EXPECT_THAT(stage.takeLines(), ElementsAre("muovitiDentroIlFilm"));
  }
}

TEST(Transport, SeekNeitherStartsNorPausesAndLeavesTheTimer) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.send(&ViewController::playPausaFilm, 1);
  const auto timer = stage.fields().progressTimer(1);
  stage.takeCalls();
  stage.position(1)->setValue(20);
  stage.send(&ViewController::muovitiDentroIlFilm, 1);
  EXPECT_THAT(stage.takeCalls(), ElementsAre("a.mp4 video seek 20", "a.mp4 audio seek 20", "commit"));
  EXPECT_EQ(stage.fields().progressTimer(1), timer);
  EXPECT_FALSE(stage.fields().audio(1)->isPlaying());
}

TEST(Transport, SeekReadsTheFieldAndNotTheSender) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.position(1)->setValue(30);
  stage.takeCalls();
  const auto sender = make<UISlider>();
  sender->setTag(1);
  stage.event([&] { stage.screen().muovitiDentroIlFilm(sender); });
  EXPECT_THAT(stage.takeCalls(), ElementsAre("a.mp4 video seek 30", "a.mp4 audio seek 30", "commit"));
}

TEST(Transport, SeekOnAnEmptyFilmLogsAllTheSame) {
  Stage stage;
  stage.send(&ViewController::muovitiDentroIlFilm, 2);
  EXPECT_THAT(stage.takeLines(), ElementsAre("muovitiDentroIlFilm"));
}

TEST(Transport, VolumeGoesToTheSoundUnchanged) {
  for (const int film : {1, 2}) {
    Stage stage;
    stage.load(film, "a.mp4");
    stage.takeCalls();
    stage.takeLines();
    stage.volume(film)->setValue(0.25F);
    stage.send(&ViewController::cambiaVolumeFilm, film);
    EXPECT_THAT(stage.takeCalls(), ElementsAre("a.mp4 audio volume 0.25", "commit"));
    EXPECT_EQ(stage.fields().audio(film)->volume(), 0.25F);
    EXPECT_THAT(stage.takeLines(), IsEmpty());
  }
}

TEST(Transport, VolumeWithoutVideoPlayerDoesNothingEvenWithAnAudioPlayer) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.fields().clearVideo(1);
  stage.takeCalls();
  stage.volume(1)->setValue(0.1F);
  stage.send(&ViewController::cambiaVolumeFilm, 1);
  EXPECT_THAT(stage.takeCalls(), IsEmpty());
  EXPECT_EQ(stage.fields().audio(1)->volume(), 1.0F);
}

TEST(Transport, ControlsOfEachFilmSendTheirActions) {
  for (const int film : {1, 2}) {
    Stage stage;
    stage.load(film, "a.mp4");
    stage.takeCalls();
    stage.press(stage.playPause(film));
    EXPECT_FALSE(stage.fields().audio(film)->isPlaying());
    stage.event([&] { stage.volume(film)->adjust(0.5F); });
    EXPECT_EQ(stage.fields().audio(film)->volume(), 0.5F);
    stage.event([&] { stage.position(film)->adjust(17.0F); });
    EXPECT_EQ(stage.fields().audio(film)->currentTime(), 17.0);
    stage.press(stage.close(film));
    EXPECT_EQ(stage.fields().audio(film), nullptr);
  }
}

TEST(Transport, PersonMovesThePositionByWholeSeconds) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.takeCalls();
  stage.event([&] {
    stage.position(1)->beginTracking();
    stage.position(1)->track(12.7F);
    stage.position(1)->endTracking();
  });
  EXPECT_THAT(stage.takeCalls(), ElementsAre("a.mp4 video seek 13", "a.mp4 audio seek 13", "commit"));
}

TEST(TransportDeathTest, VideoPlayerWithoutAudioPlayerStopsTheApp) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.fields().clearAudio(1);
  EXPECT_DEATH(stage.send(&ViewController::playPausaFilm, 1), "an audio player");
  EXPECT_DEATH(stage.send(&ViewController::cambiaVolumeFilm, 1), "an audio player");
  EXPECT_DEATH(stage.send(&ViewController::muovitiDentroIlFilm, 1), "an audio player");
}

TEST(TransportDeathTest, PauseWithoutProgressTimerStopsTheApp) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.fields().clearProgressTimer(1);
  EXPECT_DEATH(stage.send(&ViewController::playPausaFilm, 1), "a progress timer");
}

TEST(TransportDeathTest, CloseWithoutAPlayerLayerStopsTheApp) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.fields().clearLayer(1);
  EXPECT_DEATH(stage.send(&ViewController::chiudiFilm, 1), "a player layer");
}

TEST(TransportDeathTest, PlayerLayerThatReportsNoListStopsTheApp) {
  class WithoutList final : public AVPlayerLayer {
   public:
    using AVPlayerLayer::AVPlayerLayer;
    std::optional<std::vector<Strong<CALayer>>> sublayers() const override { return std::nullopt; }
  };
  Stage stage;
  stage.load(1, "a.mp4");
  stage.fields().setLayer(1, make<WithoutList>(nullptr));
  EXPECT_DEATH(stage.send(&ViewController::chiudiFilm, 1), "without a list of sublayers");
}

TEST(TransportDeathTest, MissingOutletsStopTheApp) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.screen().volumeSlider1 = nullptr;
  EXPECT_DEATH(stage.send(&ViewController::cambiaVolumeFilm, 1), "a volume slider");
  stage.screen().progressSlider1 = nullptr;
  EXPECT_DEATH(stage.send(&ViewController::muovitiDentroIlFilm, 1), "a progress slider");
  EXPECT_DEATH(stage.send(&ViewController::chiudiFilm, 1), "a progress slider");
}
