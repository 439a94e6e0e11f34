#include "tests/support/Stage.h"

#include <gmock/gmock.h>

using testing::ElementsAre;

namespace {

Strong<NSTimer> timerWith(Strong<NSObject> userInfo) {
  return make<NSTimer>(1.0, true, std::move(userInfo), [](const Strong<NSTimer>&) {});
}

Strong<NSDictionary> filmNumber(std::int64_t number) {
  return make<NSDictionary>(NSDictionary::Entries{{"numeroVideo", NSNumber::numberWithInteger(number)}});
}

}  // namespace

TEST(Progress, SliderShowsZeroForASecondAfterALoadAndThenTheCurrentTime) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.setPosition("a.mp4", 0.97);
  EXPECT_EQ(stage.position(1)->value(), 0.0F);
  stage.advance(0.99);
  EXPECT_EQ(stage.position(1)->value(), 0.0F);
  stage.advance(0.02);
  EXPECT_FLOAT_EQ(stage.position(1)->value(), 0.97F);
}

TEST(Progress, TimerOfFilm2UpdatesFilm2EvenIfFilm1WasLoadedLast) {
  Stage stage;
  stage.load(2, "b.mp4");
  stage.load(1, "a.mp4");
  stage.setPosition("b.mp4", 7);
  stage.setPosition("a.mp4", 3);
  stage.screen().updateSliderWithSender(timerWith(filmNumber(2)));
  EXPECT_EQ(stage.position(2)->value(), 7.0F);
  EXPECT_EQ(stage.position(1)->value(), 0.0F);
}

TEST(Progress, TickReadsTheVideoPlayersClockOnly) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.host.mediaEngine.player("a.mp4 audio")->currentPosition = 30;
  stage.host.mediaEngine.player("a.mp4 video")->currentPosition = 20;
  stage.advance(1.0);
  EXPECT_EQ(stage.position(1)->value(), 20.0F);
}

TEST(Progress, TickSetsTheMaximumAgain) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.position(1)->setMaximumValue(5);
  stage.advance(1.0);
  EXPECT_EQ(stage.position(1)->maximumValue(), 60.0F);
}

TEST(Progress, SetSliderWithAnyValueButOneActsOnFilm2) {
  for (const long number : {0L, 3L, -1L, 2L}) {
    Stage stage;
    stage.load(2, "b.mp4");
    const auto before = stage.fields().progressTimer(2);
    stage.takeLines();
    stage.event([&] { stage.screen().setSlider(number); });
    EXPECT_NE(stage.fields().progressTimer(2), before);
    EXPECT_EQ(stage.fields().progressTimer(1), nullptr);
    EXPECT_THAT(stage.takeLines(), ElementsAre("setSlider"));
    const auto userInfo = std::dynamic_pointer_cast<NSDictionary>(stage.fields().progressTimer(2)->userInfo());
    ASSERT_EQ(userInfo->entries().size(), 1U);
    EXPECT_EQ(std::dynamic_pointer_cast<NSNumber>(userInfo->objectForKey("numeroVideo"))->integerValue(), 2);
  }
}

TEST(Progress, SetSliderDoesNotInvalidateTheTimerThatItReplaces) {
  Stage stage;
  stage.load(1, "a.mp4");
  const auto before = stage.fields().progressTimer(1);
  stage.event([&] { stage.screen().setSlider(1); });
  EXPECT_TRUE(before->isValid());
}

TEST(Progress, SetSliderLeavesTheValueAlone) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.position(1)->setValue(12);
  stage.event([&] { stage.screen().setSlider(1); });
  EXPECT_EQ(stage.position(1)->value(), 12.0F);
}

TEST(Progress, NoTickAfterTheEndOfTheVideoClosedTheFilm) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.reportEnd("a.mp4 video");
  stage.advance(5.0);
  EXPECT_EQ(stage.position(1)->value(), 0.0F);
}

TEST(Progress, UserInfoThatIsAbsentOrOfAnotherTypeIsIgnored) {
  Stage stage;  // no film is loaded: a tick that did anything would stop the app
  stage.screen().updateSliderWithSender(timerWith(nullptr));
  stage.screen().updateSliderWithSender(timerWith(make<NSString>("1")));
  stage.screen().updateSliderWithSender(
      timerWith(make<NSDictionary>(NSDictionary::Entries{{"numeroVideo", make<NSString>("1")}})));
  EXPECT_EQ(stage.position(1)->value(), 0.0F);
  EXPECT_EQ(stage.position(2)->value(), 0.0F);
}

TEST(Progress, AnyNumberButOneIsFilm2) {
  Stage stage;
  stage.load(2, "b.mp4");
  stage.setPosition("b.mp4", 9);
  stage.screen().updateSliderWithSender(timerWith(filmNumber(5)));
  EXPECT_EQ(stage.position(2)->value(), 9.0F);
}

TEST(ProgressDeathTest, DictionaryWithoutTheNumberStopsTheApp) {
  Stage stage;
  EXPECT_DEATH(stage.screen().updateSliderWithSender(timerWith(make<NSDictionary>(NSDictionary::Entries{}))),
               "numeroVideo");
  EXPECT_DEATH(stage.screen().updateSliderWithSender(
                   timerWith(make<NSDictionary>(NSDictionary::Entries{{"altro", NSNumber::numberWithInteger(1)}}))),
               "numeroVideo");
}

TEST(ProgressDeathTest, TickForAFilmWithoutVideoPlayerStopsTheApp) {
  Stage stage;
  EXPECT_DEATH(stage.screen().updateSliderWithSender(timerWith(filmNumber(1))), "a video player");
}
