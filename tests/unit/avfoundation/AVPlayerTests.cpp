#include "platform/avfoundation/AVPlayer.h"

#include "platform/foundation/Console.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "tests/unit/foundation/BarePlatform.h"

#include <gmock/gmock.h>

using testing::ElementsAre;

namespace {

class EndObserver final : public NSObject {
 public:
  void ended() { print("ended"); }
};

class AVPlayerTest : public BarePlatform {
 protected:
  static Strong<AVPlayer> playerFor(const std::string& name) {
    return AVPlayer::playerWithURL(NSURL::URLWithString("file:///videos/" + name));
  }
  void observe(const AVPlayer& player) {
    NSNotificationCenter::defaultCenter().addObserver_selector_name_object(
        observer, &EndObserver::ended, AVPlayerItemDidPlayToEndTimeNotification, player.currentItem());
  }
  simulated::Player& engine(const std::string& name) { return *host.mediaEngine.player(name); }
  /// The engine reports, in a turn of its own.
  void report(const std::function<void()>& fact) {
    host.mainLoop.post(fact);
    advance(0);
  }
  simulated::Lines calls() { return host.mediaEngine.takeCalls(); }

  const Strong<EndObserver> observer = make<EndObserver>();
};

TEST_F(AVPlayerTest, OpensItsItemPaused) {
  const auto player = playerFor("a.mp4");
  EXPECT_EQ(player->currentItem()->asset()->URL()->absoluteString(), "file:///videos/a.mp4");
  EXPECT_EQ(player->actionAtItemEnd(), AVPlayerActionAtItemEnd::Pause);
  EXPECT_THAT(calls(), ElementsAre("a.mp4 video open"));
}

TEST_F(AVPlayerTest, PassesCommandsOnInTheirOrder) {
  const auto player = playerFor("a.mp4");
  calls();
  player->play();
  player->seekToTime(CMTimeMakeWithSeconds(12.7, 1));
  player->pause();
  EXPECT_THAT(calls(), ElementsAre("a.mp4 video play", "a.mp4 video seek 12", "a.mp4 video pause"));
}

TEST_F(AVPlayerTest, AsksForItsTimeEachTime) {
  const auto player = playerFor("a.mp4");
  EXPECT_EQ(CMTimeGetSeconds(player->currentTime()), 0);
  engine("a.mp4 video").currentPosition = 3.25;
  EXPECT_EQ(CMTimeGetSeconds(player->currentTime()), 3.25);
  engine("a.mp4 video").currentPosition = 3.5;
  EXPECT_EQ(CMTimeGetSeconds(player->currentTime()), 3.5);
}

TEST_F(AVPlayerTest, AnswersTheTargetWhileASeekIsUnderWay) {
  const auto player = playerFor("a.mp4");
  player->seekToTime({30, 1});
  EXPECT_EQ(CMTimeGetSeconds(player->currentTime()), 30);
}

TEST_F(AVPlayerTest, PostsTheEndOfItsItem) {
  const auto player = playerFor("a.mp4");
  observe(*player);
  report(engine("a.mp4 video").events.ended);
  EXPECT_THAT(takeLines(), ElementsAre("ended"));
}

TEST_F(AVPlayerTest, AFailureCountsAsTheEnd) {
  const auto player = playerFor("a.mp4");
  observe(*player);
  report(engine("a.mp4 video").events.failed);
  EXPECT_THAT(takeLines(), ElementsAre("ended"));
}

TEST_F(AVPlayerTest, PausesAtTheEndWhereThatIsItsAction) {
  const auto player = playerFor("a.mp4");
  calls();
  report(engine("a.mp4 video").events.ended);
  EXPECT_THAT(calls(), ElementsAre("a.mp4 video pause", "commit"));
}

TEST_F(AVPlayerTest, DoesNothingAtTheEndWhereTheActionIsNone) {
  const auto player = playerFor("a.mp4");
  player->setActionAtItemEnd(AVPlayerActionAtItemEnd::None);
  EXPECT_EQ(player->actionAtItemEnd(), AVPlayerActionAtItemEnd::None);
  event([] {});
  calls();
  report(engine("a.mp4 video").events.ended);
  EXPECT_THAT(calls(), ElementsAre());
}

TEST_F(AVPlayerTest, AnEndOnItsWayIsDroppedWithItsPlayer) {
  auto player = playerFor("a.mp4");
  observe(*player);
  const auto itemKeptByTheObserver = player->currentItem();
  host.mainLoop.post(engine("a.mp4 video").events.ended);
  player = nullptr;
  advance(0);
  EXPECT_THAT(takeLines(), ElementsAre());
}

TEST_F(AVPlayerTest, AnEndOnItsWayIsDroppedWhenThePlayerWasReplaced) {
  auto player = playerFor("a.mp4");
  observe(*player);
  host.mainLoop.post(engine("a.mp4 video").events.ended);
  player = playerFor("a.mp4");
  observe(*player);
  advance(0);
  EXPECT_THAT(takeLines(), ElementsAre());
  report(engine("a.mp4 video").events.ended);
  EXPECT_THAT(takeLines(), ElementsAre("ended"));
}

TEST_F(AVPlayerTest, TheEndOfOneItemIsNotTheEndOfAnother) {
  const auto first = playerFor("a.mp4");
  const auto second = playerFor("b.mp4");
  observe(*first);
  report(engine("b.mp4 video").events.ended);
  EXPECT_THAT(takeLines(), ElementsAre());
}

TEST_F(AVPlayerTest, ReleasedItClosesAtOnce) {
  auto player = playerFor("a.mp4");
  player->play();
  calls();
  player = nullptr;
  EXPECT_THAT(calls(), ElementsAre("a.mp4 video closed"));
  EXPECT_EQ(host.mediaEngine.player("a.mp4 video"), nullptr);
}

TEST_F(AVPlayerTest, TheDisplayStaysLitFromPlayToPause) {
  const auto player = playerFor("a.mp4");
  player->pause();
  EXPECT_THAT(host.display.told, ElementsAre());
  player->play();
  player->play();
  EXPECT_THAT(host.display.told, ElementsAre(true));
  player->pause();
  player->pause();
  EXPECT_THAT(host.display.told, ElementsAre(true, false));
  player->play();
  EXPECT_THAT(host.display.told, ElementsAre(true, false, true));
}

TEST_F(AVPlayerTest, TheDisplayStaysLitForAsLongAsOneOfThemPlays) {
  const auto first = playerFor("a.mp4");
  const auto second = playerFor("b.mp4");
  first->play();
  second->play();
  first->pause();
  EXPECT_THAT(host.display.told, ElementsAre(true));
  second->pause();
  EXPECT_THAT(host.display.told, ElementsAre(true, false));
}

TEST_F(AVPlayerTest, TheDisplayMayGoDarkAtTheEndWhateverTheActionIs) {
  for (const auto action : {AVPlayerActionAtItemEnd::Pause, AVPlayerActionAtItemEnd::None}) {
    host.display.told.clear();
    const auto player = playerFor("a.mp4");
    player->setActionAtItemEnd(action);
    player->play();
    report(engine("a.mp4 video").events.ended);
    EXPECT_THAT(host.display.told, ElementsAre(true, false));
  }
}

TEST_F(AVPlayerTest, TheDisplayMayGoDarkAfterAFailure) {
  const auto player = playerFor("a.mp4");
  player->play();
  report(engine("a.mp4 video").events.failed);
  EXPECT_THAT(host.display.told, ElementsAre(true, false));
}

TEST_F(AVPlayerTest, TheDisplayMayGoDarkWhenThePlayerIsReleased) {
  auto player = playerFor("a.mp4");
  player->play();
  player = nullptr;
  EXPECT_THAT(host.display.told, ElementsAre(true, false));
}

TEST_F(AVPlayerTest, WhatTheEngineHoldsDoesNotKeepIt) {
  auto player = playerFor("a.mp4");
  const Weak<AVPlayer> weak = player;
  const auto ended = engine("a.mp4 video").events.ended;
  player = nullptr;
  EXPECT_TRUE(weak.expired());
}

class AudioMixTest : public AVPlayerTest {
 protected:
  static Strong<AVMutableAudioMix> mix(const std::vector<std::pair<int, float>>& volumes) {
    AVMutableAudioMix::Parameters parameters;
    for (const auto& [track, volume] : volumes) {
      parameters.push_back(
          AVMutableAudioMixInputParameters::audioMixInputParametersWithTrack(make<AVAssetTrack>(track)));
      parameters.back()->setVolume_atTime(volume, kCMTimeZero);
    }
    auto result = make<AVMutableAudioMix>();
    result->setInputParameters(parameters);
    return result;
  }
};

TEST_F(AudioMixTest, TracksOfVolumeZeroAreNotDecoded) {
  const auto player = playerFor("a.mp4");
  calls();
  const auto silent = mix({{2, 0}, {3, 0.5F}, {4, 0}});
  player->currentItem()->setAudioMix(silent);
  EXPECT_THAT(calls(), ElementsAre("a.mp4 video silence 2 4"));
  EXPECT_EQ(player->currentItem()->audioMix(), silent);
}

TEST_F(AudioMixTest, ATrackPlaysAsItIsUntilItsVolumeIsSet) {
  const auto parameters = AVMutableAudioMixInputParameters::audioMixInputParametersWithTrack(make<AVAssetTrack>(7));
  EXPECT_EQ(parameters->trackID(), 7);
  EXPECT_EQ(parameters->volume(), 1);
  parameters->setTrackID(8);
  EXPECT_EQ(parameters->trackID(), 8);
}

TEST_F(AudioMixTest, AMixThatIsTakenAwaySilencesNothing) {
  const auto player = playerFor("a.mp4");
  player->currentItem()->setAudioMix(mix({{2, 0}}));
  calls();
  player->currentItem()->setAudioMix(nullptr);
  EXPECT_THAT(calls(), ElementsAre("a.mp4 video silence"));
}

TEST_F(AudioMixTest, AnItemThatOutlivesItsPlayerTakesAMixAllTheSame) {
  auto player = playerFor("a.mp4");
  const auto item = player->currentItem();
  player = nullptr;
  calls();
  item->setAudioMix(mix({{2, 0}}));
  EXPECT_THAT(calls(), ElementsAre());
}

}  // namespace
