#include "tests/host/gstreamer/Stage.h"

#include <gtest/gtest.h>

#include <cmath>

namespace gstreamer {

namespace {

/// A sound file of lossless samples: `expressions`, one for each channel, as ffmpeg's aevalsrc takes them.
std::string wave(const std::string& name, const std::string& expressions, const std::string& layout) {
  return clips::clip(
      name, {"-f", "lavfi", "-i",
             "aevalsrc=exprs=" + expressions + ":sample_rate=48000:duration=20:channel_layout=" + layout, "-f",
             "lavfi", "-i", "color=size=64x48:rate=10:duration=20", "-map", "1:v", "-map", "0:a", "-c:v", "libx264",
             "-c:a", "flac", "-sample_fmt", "s16"});
}

std::string monoTone() {
  return wave("tone-mono.mkv", "0.5*sin(2*PI*440*t)", "mono");
}
std::string stereoTones() {
  return wave("tone-stereo.mkv", "0.8*sin(2*PI*440*t)|0.2*sin(2*PI*1000*t)", "stereo");
}
std::string fiveOneTones() {
  return wave("tone-5.1.mkv",
              "0.5*sin(2*PI*300*t)|0.5*sin(2*PI*400*t)|0.5*sin(2*PI*500*t)|0.9*sin(2*PI*60*t)|"
              "0.5*sin(2*PI*700*t)|0.5*sin(2*PI*800*t)",
              "5.1");
}
std::string fullScale() {
  return wave("full-scale.mkv", "0.99997|0.99997", "stereo");
}
std::string quietEffects() {
  return wave("effects-only.mkv", "0|0|0|0.9*sin(2*PI*60*t)|0|0", "5.1");
}

/// Half a second of `path` as it is heard at `pan` and `volume`.
Recording::Sound heard(const std::string& path, double pan, double volume = 1.0) {
  Stage stage;
  auto player = stage.sound(path);
  player->prepare();
  player->setPan(pan);
  player->setVolume(volume);
  player->play();
  stage.engine().commit();
  EXPECT_TRUE(stage.until([&] { return stage.recording().sound().left.size() >= 24000; }));
  return stage.recording().sound();
}

}  // namespace

TEST(SoundChannels, ThePanLeavesExactZerosOnTheOtherChannel) {
  for (const std::string& path : {monoTone(), stereoTones(), fiveOneTones()}) {
    const auto left = heard(path, -1.0);
    EXPECT_GT(peak(left.left), 0.1F) << path;
    EXPECT_TRUE(isExactlyZero(left.right)) << path;
    const auto right = heard(path, 1.0);
    EXPECT_TRUE(isExactlyZero(right.left)) << path;
    EXPECT_GT(peak(right.right), 0.1F) << path;
  }
}

TEST(SoundChannels, BothChannelsOfAStereoSourceAreHeardOnTheOneSide) {
  const auto sound = heard(stereoTones(), -1.0);
  // Half of 0.8 and half of 0.2, at some moment at their largest together.
  EXPECT_NEAR(peak(sound.left), 0.5F, 0.01F);
}

TEST(SoundChannels, FullScaleStereoDoesNotClip) {
  const auto sound = heard(fullScale(), -1.0);
  EXPECT_LE(peak(sound.left), 1.0F);
  EXPECT_GT(peak(sound.left), 0.99F);
}

TEST(SoundChannels, MonoKeepsItsLoudness) {
  EXPECT_NEAR(peak(heard(monoTone(), 1.0).right), 0.5F, 0.001F);
}

TEST(SoundChannels, TheMiddleKeepsTheSourcesOwnChannels) {
  const auto sound = heard(stereoTones(), 0.0);
  EXPECT_NEAR(peak(sound.left), 0.8F, 0.001F);
  EXPECT_NEAR(peak(sound.right), 0.2F, 0.001F);
}

TEST(SoundChannels, EffectsBelowHearingAreLeftOutOfFiveOne) {
  EXPECT_TRUE(isExactlyZero(heard(quietEffects(), -1.0).left));
  EXPECT_GT(peak(heard(fiveOneTones(), -1.0).left), 0.2F);
}

TEST(SoundChannels, TheVolumeIsALinearGain) {
  EXPECT_NEAR(peak(heard(monoTone(), -1.0, 0.25).left), 0.125F, 0.001F);
  EXPECT_TRUE(isExactlyZero(heard(monoTone(), -1.0, 0.0).left));
}

TEST(SoundChannels, TheVolumeCanBeChangedWhileItPlays) {
  Stage stage;
  auto player = stage.sound(monoTone());
  player->setPan(-1.0);
  player->play();
  stage.engine().commit();
  ASSERT_TRUE(stage.until([&] { return peak(stage.recording().sound().left) > 0.4F; }));
  player->setVolume(0.5);
  stage.engine().commit();
  EXPECT_TRUE(stage.until([&] {
    stage.recording().clear();
    stage.loop().runFor(0.1);
    const float now = peak(stage.recording().sound().left);
    return now > 0.2F && now < 0.26F;
  }));
}

TEST(SoundChannels, SoundComesBackAfterTheVolumeWasZero) {
  Stage stage;
  auto player = stage.sound(monoTone());
  player->setPan(-1.0);
  player->play();
  stage.engine().commit();
  const auto peakOfAMoment = [&stage] {
    stage.recording().clear();
    stage.loop().runFor(0.1);
    return peak(stage.recording().sound().left);
  };
  ASSERT_TRUE(stage.until([&] { return peakOfAMoment() > 0.4F; }));
  player->setVolume(0.0);
  stage.engine().commit();
  ASSERT_TRUE(stage.until([&] { return peakOfAMoment() == 0.0F; }));
  EXPECT_EQ(stage.recording().gaps(), 0);
  player->setVolume(1.0);
  stage.engine().commit();
  EXPECT_TRUE(stage.until([&] { return peakOfAMoment() > 0.4F; }));
}

TEST(SoundChannels, ThePanCanBeChangedWhileItPlays) {
  Stage stage;
  auto player = stage.sound(monoTone());
  player->setPan(-1.0);
  player->play();
  stage.engine().commit();
  ASSERT_TRUE(stage.until([&] { return peak(stage.recording().sound().left) > 0.4F; }));
  player->setPan(1.0);
  stage.engine().commit();
  EXPECT_TRUE(stage.until([&] { return peak(stage.recording().sound().right) > 0.4F; }));
  stage.recording().clear();
  ASSERT_TRUE(stage.until([&] { return stage.recording().sound().left.size() > 4800; }));
  EXPECT_TRUE(isExactlyZero(stage.recording().sound().left));
}

}  // namespace gstreamer
