#include "platform/avfoundation/AVAudioPlayer.h"

#include "tests/unit/foundation/BarePlatform.h"

#include <gmock/gmock.h>

#include <limits>

using testing::ElementsAre;

namespace {

constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

class AVAudioPlayerTest : public BarePlatform {
 protected:
  AVAudioPlayerTest() { host.mediaEngine.takeCalls(); }

  static Strong<AVAudioPlayer> open(Strong<NSError>* error = nullptr) {
    return AVAudioPlayer::initWithContentsOfURL_error(NSURL::URLWithString("file:///videos/a.mp4"), error);
  }
  host::MediaFacts& facts() {
    return host.mediaEngine.factsByUrl.emplace("file:///videos/a.mp4", simulated::filmFacts(60)).first->second;
  }
  simulated::Player& engine() { return *host.mediaEngine.player("a.mp4 audio"); }
  void report(const std::function<void()>& fact) {
    host.mainLoop.post(fact);
    advance(0);
  }
  simulated::Lines calls() { return host.mediaEngine.takeCalls(); }
};

TEST_F(AVAudioPlayerTest, OpensStoppedAtFullVolumeInTheMiddle) {
  Strong<NSError> error;
  const auto player = open(&error);
  ASSERT_TRUE(player);
  EXPECT_FALSE(error);
  EXPECT_FALSE(player->isPlaying());
  EXPECT_EQ(player->volume(), 1);
  EXPECT_EQ(player->pan(), 0);
  EXPECT_EQ(player->currentTime(), 0);
  EXPECT_THAT(calls(), ElementsAre("a.mp4 audio open"));
}

TEST_F(AVAudioPlayerTest, DoesNotOpenWhatCannotBeRead) {
  facts().readable = false;
  Strong<NSError> error;
  EXPECT_FALSE(open(&error));
  ASSERT_TRUE(error);
  EXPECT_EQ(error->localizedDescription(), "no readable media");
  EXPECT_THAT(calls(), ElementsAre());
}

TEST_F(AVAudioPlayerTest, DoesNotOpenWhatCannotBeDecoded) {
  facts().soundOpens = false;
  Strong<NSError> error;
  EXPECT_FALSE(open(&error));
  ASSERT_TRUE(error);
  EXPECT_EQ(error->localizedDescription(), "the sound cannot be decoded");
  EXPECT_THAT(calls(), ElementsAre());
}

TEST_F(AVAudioPlayerTest, NobodyNeedsToAskForTheReason) {
  facts().readable = false;
  EXPECT_FALSE(open(nullptr));
}

TEST_F(AVAudioPlayerTest, AFilmWithoutASoundTrackOpens) {
  facts().tracks = {{1, host::TrackKind::Video}};
  EXPECT_TRUE(open());
}

TEST_F(AVAudioPlayerTest, PassesCommandsOnInTheirOrder) {
  const auto player = open();
  calls();
  player->prepareToPlay();
  player->setPan(-1);
  player->play();
  player->setCurrentTime(12.7);
  player->pause();
  player->stop();
  EXPECT_THAT(calls(), ElementsAre("a.mp4 audio prepare", "a.mp4 audio pan -1", "a.mp4 audio play",
                                   "a.mp4 audio seek 12.7", "a.mp4 audio pause", "a.mp4 audio stop"));
}

TEST_F(AVAudioPlayerTest, PlaysFromPlayAtOnceUntilPause) {
  const auto player = open();
  player->play();
  EXPECT_TRUE(player->isPlaying());
  player->pause();
  EXPECT_FALSE(player->isPlaying());
}

TEST_F(AVAudioPlayerTest, PlaysUntilStopAndKeepsItsPosition) {
  const auto player = open();
  player->play();
  engine().currentPosition = 7.5;
  player->stop();
  EXPECT_FALSE(player->isPlaying());
  EXPECT_EQ(player->currentTime(), 7.5);
}

TEST_F(AVAudioPlayerTest, PlaysUntilTheEndAndThenAgain) {
  const auto player = open();
  player->play();
  report(engine().events.ended);
  EXPECT_FALSE(player->isPlaying());
  player->play();
  EXPECT_TRUE(player->isPlaying());
}

TEST_F(AVAudioPlayerTest, AFailureCountsAsTheEnd) {
  const auto player = open();
  player->play();
  report(engine().events.failed);
  EXPECT_FALSE(player->isPlaying());
}

TEST_F(AVAudioPlayerTest, CountsAsPlayingForAsLongAsTheEngineReportsNoEnd) {
  const auto player = open();
  player->play();
  advance(59);
  EXPECT_TRUE(player->isPlaying());
}

TEST_F(AVAudioPlayerTest, SettingTheTimeDoesNotStartIt) {
  const auto player = open();
  player->setCurrentTime(20);
  EXPECT_FALSE(player->isPlaying());
  EXPECT_EQ(player->currentTime(), 20);
}

TEST_F(AVAudioPlayerTest, HoldsTheVolumeBetweenZeroAndOne) {
  const auto player = open();
  calls();
  player->setVolume(0.5F);
  EXPECT_EQ(player->volume(), 0.5F);
  player->setVolume(1.5F);
  EXPECT_EQ(player->volume(), 1);
  player->setVolume(-1);
  EXPECT_EQ(player->volume(), 0);
  player->setVolume(notANumber);
  EXPECT_EQ(player->volume(), 0);
  EXPECT_THAT(calls(), ElementsAre("a.mp4 audio volume 0.5", "a.mp4 audio volume 1", "a.mp4 audio volume 0",
                                   "a.mp4 audio volume 0"));
}

TEST_F(AVAudioPlayerTest, HoldsThePanBetweenLeftAndRight) {
  const auto player = open();
  calls();
  player->setPan(1);
  EXPECT_EQ(player->pan(), 1);
  player->setPan(-2);
  EXPECT_EQ(player->pan(), -1);
  player->setPan(2);
  EXPECT_EQ(player->pan(), 1);
  player->setPan(notANumber);
  EXPECT_EQ(player->pan(), 0);
  EXPECT_THAT(calls(),
              ElementsAre("a.mp4 audio pan 1", "a.mp4 audio pan -1", "a.mp4 audio pan 1", "a.mp4 audio pan 0"));
}

TEST_F(AVAudioPlayerTest, ReleasedItClosesAndWhatWasOnItsWayIsDropped) {
  auto player = open();
  const Weak<AVAudioPlayer> weak = player;
  player->play();
  host.mainLoop.post(engine().events.ended);
  calls();
  player = nullptr;
  EXPECT_TRUE(weak.expired());
  EXPECT_THAT(calls(), ElementsAre("a.mp4 audio closed"));
  const auto next = open();
  next->play();
  advance(0);
  EXPECT_TRUE(next->isPlaying());
}

}  // namespace
