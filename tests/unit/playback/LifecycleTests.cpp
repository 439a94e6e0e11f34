#include "platform/uikit/UIApplication.h"
#include "tests/support/Stage.h"
#include "tutorial/NFXIntroViewController.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr auto leaveLine = "viewWillDisappear metto in pausa i due player";

void leave(Stage& stage) {
  stage.event([&] { stage.screen().viewWillDisappear(true); });
}

}  // namespace

TEST(Lifecycle, OverlaysAreHiddenOnceTheViewHasLoaded) {
  const Stage stage;
  EXPECT_TRUE(stage.overlay(1)->isHidden());
  EXPECT_TRUE(stage.overlay(2)->isHidden());
}

TEST(Lifecycle, AuthorisationIsRequestedOnEveryLoadOfTheView) {
  Stage stage;
  EXPECT_EQ(stage.host.mediaLibrary.requests.size(), 1U);
  stage.event([&] { stage.screen().viewDidLoad(); });
  EXPECT_EQ(stage.host.mediaLibrary.requests.size(), 2U);
}

TEST(Lifecycle, FirstRunShowsTheHintBelowTheChooseButton) {
  Stage stage(Stage::FirstRun);
  const auto& hint = *stage.fields().popTip();
  EXPECT_TRUE(hint.isVisible());
  EXPECT_EQ(hint.superview(), stage.screen().view());
  EXPECT_EQ(hint.text(), "Click on this and select your videos");
  EXPECT_EQ(hint.direction(), PopTipDirection::Down);
  EXPECT_EQ(hint.maxWidth(), 200.0);
  EXPECT_EQ(hint.sourceRect(), stage.screen().view()->viewWithTag(5)->frame());
  EXPECT_EQ(stage.host.defaults.values.at("primoAvvio2"), host::Defaults::Value(std::string("2")));
}

TEST(Lifecycle, HintStaysUntilTheChooseButtonIsPressed) {
  Stage stage(Stage::NotLaunched);
  stage.host.defaults.values = {{"primoAvvio", std::string("2")}};  // no tutorial in the way
  stage.launch();
  stage.advance(3600);
  EXPECT_TRUE(stage.fields().popTip()->isVisible());
  stage.pressChoose();
  EXPECT_FALSE(stage.fields().popTip()->isVisible());
}

TEST(Lifecycle, AnyObjectUnderTheHintsKeySuppressesIt) {
  for (const host::Defaults::Value& value : {host::Defaults::Value(std::string()), host::Defaults::Value(0.0),
                                             host::Defaults::Value(std::string("altro"))}) {
    Stage stage(Stage::NotLaunched);
    stage.host.defaults.values["primoAvvio2"] = value;
    stage.launch();
    EXPECT_FALSE(stage.fields().popTip()->isVisible());
    EXPECT_EQ(stage.host.defaults.values.at("primoAvvio2"), value);
  }
}

TEST(Lifecycle, ChooseButtonIsADirectChildOfTheRootView) {
  const Stage stage;
  const auto button = stage.screen().view()->viewWithTag(5);
  ASSERT_TRUE(std::dynamic_pointer_cast<UIButton>(button));
  EXPECT_EQ(button->superview(), stage.screen().view());
}

TEST(Lifecycle, AppearingLogs) {
  Stage stage;
  stage.screen().viewDidAppear(true);
  EXPECT_THAT(stage.takeLines(), ElementsAre("viewDidAppear"));
}

TEST(Lifecycle, LeavingStopsTheSoundPausesThePictureAndShowsPlay) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.load(2, "b.mp4");
  stage.takeLines();
  stage.takeCalls();
  leave(stage);
  EXPECT_THAT(stage.takeLines(), ElementsAre(leaveLine));
  EXPECT_THAT(stage.takeCalls(), ElementsAre("a.mp4 audio stop", "a.mp4 video pause", "b.mp4 audio stop",
                                             "b.mp4 video pause", "commit"));
  for (const int film : {1, 2}) {
    EXPECT_FALSE(stage.fields().audio(film)->isPlaying());
    EXPECT_FALSE(stage.fields().progressTimer(film)->isValid());
    EXPECT_EQ(Stage::imageOf(*stage.playPause(film)), "play");
    EXPECT_NE(stage.fields().video(film), nullptr);
  }
}

TEST(Lifecycle, LeavingWithFilm1EmptyAndFilm2PlayingStopsOnlyFilm2) {
  Stage stage;
  stage.load(2, "b.mp4");
  stage.takeCalls();
  leave(stage);
  EXPECT_THAT(stage.takeCalls(), ElementsAre("b.mp4 audio stop", "b.mp4 video pause", "commit"));
}

TEST(Lifecycle, LeavingWithFilm1PlayingAndFilm2PausedStopsOnlyFilm1) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.load(2, "b.mp4");
  stage.send(&ViewController::playPausaFilm, 2);
  stage.takeCalls();
  leave(stage);
  EXPECT_THAT(stage.takeCalls(), ElementsAre("a.mp4 audio stop", "a.mp4 video pause", "commit"));
}

TEST(Lifecycle, LeavingWithFilm2LoadedButPausedChangesNothingForIt) {
  Stage stage;
  stage.load(2, "b.mp4");
  stage.send(&ViewController::playPausaFilm, 2);
  const auto timer = stage.fields().progressTimer(2);
  stage.takeCalls();
  leave(stage);
  EXPECT_THAT(stage.takeCalls(), IsEmpty());
  EXPECT_EQ(stage.fields().progressTimer(2), timer);
}

TEST(Lifecycle, FilmIsResumedByItsButtonAfterTheScreenWasLeft) {
  Stage stage;
  stage.load(1, "a.mp4");
  leave(stage);
  stage.takeCalls();
  stage.press(stage.playPause(1));
  EXPECT_THAT(stage.takeCalls(), ElementsAre("a.mp4 audio play", "a.mp4 video play", "commit"));
  EXPECT_TRUE(stage.fields().progressTimer(1)->isValid());
}

TEST(LifecycleDeathTest, UnconnectedOverlayStopsTheApp) {
  Stage stage;
  stage.screen().vistaControlliFilm2 = nullptr;
  EXPECT_DEATH(stage.screen().viewDidLoad(), "vistaControlliFilm2");
}

TEST(LifecycleDeathTest, NoButtonWithTag5OnAFirstRunStopsTheApp) {
  Stage stage;
  stage.host.defaults.values.clear();
  stage.screen().view()->viewWithTag(5)->setTag(6);
  EXPECT_DEATH(stage.screen().viewDidLoad(), "the button with tag 5");
}

TEST(LifecycleDeathTest, LeavingWithAVideoPlayerButNoAudioPlayerStopsTheApp) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.fields().clearAudio(1);
  EXPECT_DEATH(stage.screen().viewWillDisappear(true), "an audio player");
}

TEST(LifecycleDeathTest, LeavingWithAPlayingFilmButNoProgressTimerStopsTheApp) {
  Stage stage;
  stage.load(2, "b.mp4");
  stage.fields().clearProgressTimer(2);
  EXPECT_DEATH(stage.screen().viewWillDisappear(true), "a progress timer");
}

TEST(FirstRun, LogsTheTutorialAndHoldsBothKeysBeforeItIsShown) {
  Stage stage(Stage::NotLaunched);
  UIApplication::sharedApplication()->launch("AppDelegate");
  stage.advance(0);
  EXPECT_THAT(stage.takeLines(), ElementsAre("viewDidAppear", "tutorial"));
  const host::Defaults::Value two = std::string("2");
  EXPECT_EQ(stage.host.defaults.values.at("primoAvvio"), two);
  EXPECT_EQ(stage.host.defaults.values.at("primoAvvio2"), two);
  EXPECT_EQ(stage.window()->presentations().size(), 0U);
  stage.advance(0.99);
  EXPECT_EQ(stage.window()->presentations().size(), 0U);
  stage.advance(0.02);
  EXPECT_EQ(stage.window()->presentations().size(), 1U);
}

TEST(FirstRun, TutorialCoversTheScreenWithoutTheScreenAsItsDelegate) {
  Stage stage(Stage::FirstRun);
  stage.load(1, "a.mp4");
  stage.takeLines();
  stage.advance(1.5);
  const auto pager = std::dynamic_pointer_cast<NFXIntroViewController>(stage.window()->topmostViewController());
  ASSERT_TRUE(pager);
  EXPECT_EQ(pager->modalPresentationStyle(), UIModalPresentationStyle::FullScreen);
  EXPECT_EQ(pager->delegate2, nullptr);
  EXPECT_THAT(stage.takeLines(), ElementsAre("initWithViews : [<UIImage: 1tutorial.jpg>, <UIImage: 2tutorial.jpg>]",
                                             "_pgcontrol : 26.0", leaveLine));
  EXPECT_FALSE(stage.fields().audio(1)->isPlaying());
}

TEST(FirstRun, ClosingTheTutorialBringsTheScreensAppearanceAndNothingOfThePager) {
  Stage stage(Stage::FirstRun);
  stage.advance(1.5);
  const auto pager = std::dynamic_pointer_cast<NFXIntroViewController>(stage.window()->topmostViewController());
  ASSERT_TRUE(pager);
  stage.press(pager->_button);
  stage.advance(1.0);
  stage.takeLines();
  stage.press(pager->_button);
  stage.advance(1.0);
  EXPECT_THAT(stage.takeLines(), ElementsAre("ButtonPushed", "numero : 1   page : 1",
                                             "self.dismissViewControllerAnimated", "viewDidAppear"));
  EXPECT_TRUE(stage.fields().popTip()->isVisible());
}

TEST(FirstRun, KeysAreIndependent) {
  for (const bool hintSeen : {true, false}) {
    Stage stage(Stage::NotLaunched);
    stage.host.defaults.values[hintSeen ? "primoAvvio2" : "primoAvvio"] = std::string("2");
    stage.launch();
    stage.advance(1.5);
    EXPECT_EQ(stage.fields().popTip()->isVisible(), !hintSeen);
    EXPECT_EQ(stage.window()->presentations().size(), hintSeen ? 1U : 0U);
  }
}

TEST(FirstRun, AnyObjectUnderTheTutorialsKeySuppressesIt) {
  for (const host::Defaults::Value& value : {host::Defaults::Value(std::string()), host::Defaults::Value(0.0)}) {
    Stage stage(Stage::NotLaunched);
    stage.host.defaults.values["primoAvvio"] = value;
    stage.launch();
    stage.advance(5.0);
    EXPECT_EQ(stage.window()->presentations().size(), 0U);
  }
}

TEST(FirstRun, TutorialWaitsForTheListThatIsOpenAndIsNotLost) {
  Stage stage(Stage::FirstRun);
  stage.openList();
  const auto list = stage.list();
  ASSERT_TRUE(list);
  stage.advance(3.0);
  EXPECT_EQ(stage.list(), list);
  stage.event([&] { list->chiudi(nullptr); });
  stage.advance(1.0);
  EXPECT_TRUE(std::dynamic_pointer_cast<NFXIntroViewController>(stage.window()->topmostViewController()));
}
