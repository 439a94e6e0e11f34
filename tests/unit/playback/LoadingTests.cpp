#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UIGestureRecognizer.h"
#include "tests/support/Stage.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

host::MediaFacts protectedFacts() {
  auto facts = simulated::filmFacts(60);
  facts.hasProtectedContent = true;
  facts.soundOpens = false;
  return facts;
}

std::size_t playerLayersOf(const UIView& view) {
  std::size_t count = 0;
  for (const auto& layer : view.layer()->sublayers().value_or(std::vector<Strong<CALayer>>{})) {
    if (std::dynamic_pointer_cast<AVPlayerLayer>(layer)) ++count;
  }
  return count;
}

}  // namespace

TEST(Loading, ConsoleOfAFirstLoadIntoFilm1) {
  Stage stage;
  stage.openList();
  stage.takeLines();
  stage.choose(1, 0);
  stage.advance(UIWindow::transitionDuration);
  EXPECT_THAT(stage.takeLines(),
              ElementsAre("You tapped cell number 0.", "tabella 1", "finito", "passoVideo video1 : true",
                          "posso far partire il video", "faccio partire video 1", "----- ChiudiFilm1",
                          Stage::closeLine, "setSlider", "toccatoFilm1", "1     la vista non è stata rimossa"));
  stage.advance(6.9);
  EXPECT_THAT(stage.takeLines(), IsEmpty());
  stage.advance(0.2);
  EXPECT_THAT(stage.takeLines(), ElementsAre("------------------------ Done"));
}

TEST(Loading, ConsoleOfAFirstLoadIntoFilm2) {
  Stage stage;
  stage.openList();
  stage.takeLines();
  stage.choose(2, 0);
  stage.advance(UIWindow::transitionDuration);
  EXPECT_THAT(stage.takeLines(),
              ElementsAre("You tapped cell number 0.", "tabella 2", "finito", "passoVideo video1 : false",
                          "posso far partire il video", "faccio partire video 2", "ChiudiFilm2", Stage::closeLine,
                          "setSlider", "toccatoFilm2", "2     la vista non è stata rimossa"));
  stage.advance(7.0);
  EXPECT_THAT(stage.takeLines(), ElementsAre("------------------------ Done"));
}

TEST(Loading, ConsoleOfALoadIntoAClosedFilm1) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.send(&ViewController::chiudiFilm, 1);
  stage.takeLines();
  stage.load(1, "b.mp4");
  EXPECT_THAT(stage.takeLines(),
              ElementsAre("passoVideo video1 : true", "posso far partire il video", "faccio partire video 1",
                          "----- ChiudiFilm1", Stage::closeLine, "blocco timer", "setSlider", "toccatoFilm1",
                          "1     la vista non è stata rimossa"));
}

TEST(Loading, ConsoleOfALoadIntoAClosedFilm2) {
  Stage stage;
  stage.load(2, "a.mp4");
  stage.send(&ViewController::chiudiFilm, 2);
  stage.takeLines();
  stage.load(2, "b.mp4");
  EXPECT_THAT(stage.takeLines(),
              ElementsAre("passoVideo video1 : false", "posso far partire il video", "faccio partire video 2",
                          "ChiudiFilm2", Stage::closeLine, "blocco timer", "setSlider", "toccatoFilm2",
                          "2     la vista non è stata rimossa"));
}

TEST(Loading, ConsoleOfALoadIntoALoadedFilm1) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.takeLines();
  stage.load(1, "b.mp4");
  EXPECT_THAT(stage.takeLines(),
              ElementsAre("passoVideo video1 : true", "posso far partire il video", "faccio partire video 1",
                          "----- ChiudiFilm1", Stage::closeLine, "blocco timer", "blocco tutto", "rimuovo il video 1",
                          "setSlider", "toccatoFilm1", "1     la vista non è stata rimossa"));
}

TEST(Loading, ConsoleOfALoadIntoALoadedFilm2) {
  Stage stage;
  stage.load(2, "a.mp4");
  stage.takeLines();
  stage.load(2, "b.mp4");
  EXPECT_THAT(stage.takeLines(),
              ElementsAre("passoVideo video1 : false", "posso far partire il video", "faccio partire video 2",
                          "ChiudiFilm2", Stage::closeLine, "blocco timer", "blocco tutto", "rimuovo il video 1",
                          "setSlider", "toccatoFilm2", "2     la vista non è stata rimossa"));
}

TEST(Loading, SoundIsPreparedPannedLeftAndStartedBeforeThePictureExists) {
  Stage stage;
  stage.load(1, "a.mp4");
  EXPECT_THAT(stage.takeCalls(),
              ElementsAre("a.mp4 audio open", "a.mp4 audio prepare", "a.mp4 audio pan -1", "a.mp4 audio play",
                          "a.mp4 video open", "a.mp4 video silence 2", "a.mp4 video play", "commit"));
}

TEST(Loading, SoundOfFilm2IsPannedRight) {
  Stage stage;
  stage.load(2, "a.mp4");
  EXPECT_THAT(stage.takeCalls(),
              ElementsAre("a.mp4 audio open", "a.mp4 audio prepare", "a.mp4 audio pan 1", "a.mp4 audio play",
                          "a.mp4 video open", "a.mp4 video silence 2", "a.mp4 video play", "commit"));
}

TEST(Loading, EveryAudioTrackIsSilencedInFileOrder) {
  Stage stage;
  auto facts = simulated::filmFacts(60);
  facts.tracks = {{1, host::TrackKind::Video},
                  {5, host::TrackKind::Audio},
                  {2, host::TrackKind::Other},
                  {3, host::TrackKind::Audio}};
  stage.host.mediaEngine.factsByUrl[Stage::url("a.mp4")] = facts;
  stage.load(1, "a.mp4");
  const auto& parameters = stage.fields().video(1)->currentItem()->audioMix()->inputParameters();
  ASSERT_EQ(parameters.size(), 2U);
  EXPECT_EQ(parameters[0]->trackID(), 5);
  EXPECT_EQ(parameters[1]->trackID(), 3);
  EXPECT_EQ(parameters[0]->volume(), 0.0F);
  EXPECT_EQ(parameters[1]->volume(), 0.0F);
}

TEST(Loading, FilmWithoutAudioTrackGetsAnEmptyMix) {
  Stage stage;
  auto facts = simulated::filmFacts(60);
  facts.tracks = {{1, host::TrackKind::Video}};
  stage.host.mediaEngine.factsByUrl[Stage::url("a.mp4")] = facts;
  stage.load(1, "a.mp4");
  ASSERT_TRUE(stage.fields().video(1)->currentItem()->audioMix());
  EXPECT_THAT(stage.fields().video(1)->currentItem()->audioMix()->inputParameters(), IsEmpty());
}

TEST(Loading, LoadingFilm2WhileFilm1PlaysLeavesFilm1Untouched) {
  Stage stage;
  stage.load(1, "a.mp4");
  const auto fields = stage.fields();
  const auto audio = fields.audio(1);
  const auto video = fields.video(1);
  const auto layer = fields.layer(1);
  const auto timer = fields.progressTimer(1);
  const auto overlayTimer = fields.overlayTimer(1);
  stage.takeCalls();
  stage.load(2, "b.mp4");
  EXPECT_EQ(fields.audio(1), audio);
  EXPECT_EQ(fields.video(1), video);
  EXPECT_EQ(fields.layer(1), layer);
  EXPECT_EQ(fields.progressTimer(1), timer);
  EXPECT_EQ(fields.overlayTimer(1), overlayTimer);
  EXPECT_TRUE(timer->isValid());
  EXPECT_TRUE(audio->isPlaying());
  EXPECT_FALSE(stage.overlay(1)->isHidden());
  for (const auto& call : stage.takeCalls()) EXPECT_THAT(call, testing::Not(testing::StartsWith("a.mp4")));
}

TEST(Loading, LoadingFilm1TwiceClosesTheFirstAndLeavesTwoRecognisersAndTwoLayers) {
  Stage stage;
  stage.load(1, "a.mp4");
  const auto first = stage.fields().layer(1);
  stage.takeCalls();
  stage.load(1, "b.mp4");
  EXPECT_THAT(stage.takeCalls(),
              ElementsAre("a.mp4 audio stop", "a.mp4 video pause", "a.mp4 audio closed", "a.mp4 video closed",
                          "b.mp4 audio open", "b.mp4 audio prepare", "b.mp4 audio pan -1", "b.mp4 audio play",
                          "b.mp4 video open", "b.mp4 video silence 2", "b.mp4 video play", "commit"));
  EXPECT_EQ(stage.filmView(1)->gestureRecognizers().size(), 2U);
  EXPECT_EQ(playerLayersOf(*stage.filmView(1)), 2U);
  EXPECT_THAT(*first->sublayers(), IsEmpty());
}

TEST(Loading, EveryLoadRegistersOneMoreEndOfItemObservation) {
  Stage stage;
  const auto before = NSNotificationCenter::defaultCenter().registrationsOf(stage.screen());
  stage.load(1, "a.mp4");
  stage.load(2, "b.mp4");
  stage.load(1, "c.mp4");
  EXPECT_EQ(NSNotificationCenter::defaultCenter().registrationsOf(stage.screen()), before + 3);
}

TEST(Loading, ProtectedFileForAPlayingFilmShowsTheAlertAndTheFilmGoesOn) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.host.mediaEngine.factsByUrl[Stage::url("locked.mp4")] = protectedFacts();
  stage.takeLines();
  stage.takeCalls();
  stage.load(1, "locked.mp4");
  EXPECT_THAT(stage.takeLines(), ElementsAre("passoVideo video1 : true"));
  EXPECT_THAT(stage.takeCalls(), IsEmpty());
  EXPECT_TRUE(stage.fields().audio(1)->isPlaying());
  const auto alert = std::dynamic_pointer_cast<UIAlertController>(stage.window()->topmostViewController());
  ASSERT_TRUE(alert);
  EXPECT_EQ(alert->title(), "Attenction");
  EXPECT_EQ(alert->message(), "The file is protected.Please try another video.");
  EXPECT_EQ(alert->preferredStyle(), UIAlertControllerStyle::Alert);
  ASSERT_EQ(alert->actions().size(), 1U);
  EXPECT_EQ(alert->actions()[0]->title(), "OK");
  EXPECT_EQ(alert->actions()[0]->style(), UIAlertActionStyle::Default);
}

TEST(Loading, ProtectedFileLeavesTheScreenWithoutItsCallbacks) {
  Stage stage;
  stage.host.mediaEngine.factsByUrl[Stage::url("locked.mp4")] = protectedFacts();
  stage.load(2, "locked.mp4");
  stage.advance(1.0);
  const auto alert = std::dynamic_pointer_cast<UIAlertController>(stage.window()->topmostViewController());
  ASSERT_TRUE(alert);
  stage.event([&] { alert->pressAction(0); });
  stage.advance(1.0);
  EXPECT_THAT(stage.takeLines(), ElementsAre("passoVideo video1 : false"));
  EXPECT_EQ(stage.window()->topmostViewController().get(), &stage.screen());
}

TEST(Loading, FailedAudioPlayerLeavesTheClosedFilmEmptyAndTheOtherPlaying) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.load(2, "b.mp4");
  stage.host.mediaEngine.factsByUrl[Stage::url("broken.mp4")] = {};
  stage.takeLines();
  stage.takeCalls();
  stage.load(1, "broken.mp4");
  EXPECT_THAT(stage.takeLines(),
              ElementsAre("passoVideo video1 : true", "posso far partire il video", "faccio partire video 1",
                          "----- ChiudiFilm1", Stage::closeLine, "blocco timer", "blocco tutto", "rimuovo il video 1",
                          "Error getting the audio file"));
  EXPECT_THAT(stage.takeCalls(), ElementsAre("a.mp4 audio stop", "a.mp4 video pause", "a.mp4 audio closed",
                                             "a.mp4 video closed", "commit"));
  EXPECT_EQ(stage.fields().audio(1), nullptr);
  EXPECT_EQ(stage.fields().video(1), nullptr);
  EXPECT_TRUE(stage.fields().audio(2)->isPlaying());
  EXPECT_EQ(stage.window()->topmostViewController().get(), &stage.screen());
}

TEST(Loading, EndOfTheVideoClosesTheFilm) {
  for (const int film : {1, 2}) {
    Stage stage;
    stage.load(film, "a.mp4");
    stage.setPosition("a.mp4", 59);
    stage.advance(1.0);
    EXPECT_EQ(stage.position(film)->value(), 59.0F);
    stage.takeLines();
    stage.reportEnd("a.mp4 video");
    EXPECT_EQ(stage.takeLines().front(), film == 1 ? "----- ChiudiFilm1" : "ChiudiFilm2");
    EXPECT_EQ(stage.fields().audio(film), nullptr);
    EXPECT_EQ(stage.fields().video(film), nullptr);
    EXPECT_TRUE(stage.overlay(film)->isHidden());
    EXPECT_EQ(stage.position(film)->value(), 0.0F);
  }
}

TEST(Loading, EndOfAnItemThatWasReplacedMeanwhileIsNotHeard) {
  Stage stage;
  stage.load(1, "a.mp4");
  auto late = stage.host.mediaEngine.player("a.mp4 video")->events.ended;
  stage.load(1, "b.mp4");
  stage.takeLines();
  stage.host.mainLoop.post(late);
  stage.advance(0);
  EXPECT_THAT(stage.takeLines(), IsEmpty());
  EXPECT_TRUE(stage.fields().audio(1)->isPlaying());
}

TEST(Loading, LayerTakesTheSizeOfTheFilmViewOfThatMoment) {
  Stage stage;
  stage.event([&] { stage.window()->setSize({800, 600}); });
  stage.load(2, "a.mp4");
  EXPECT_EQ(stage.fields().layer(2)->frame(),
            CGRectMake(0, 0, stage.filmView(2)->frame().size.width, stage.filmView(2)->frame().size.height));
}

TEST(LoadingDeathTest, MissingFilmViewStopsTheApp) {
  Stage stage;
  stage.screen().vistaFilm1 = nullptr;
  EXPECT_DEATH(stage.load(1, "a.mp4"), "a film's view");
}
