#include "tests/host/gstreamer/Stage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <thread>

namespace gstreamer {

namespace {

std::string film() {
  return clips::film("engine-film.mp4", 320, 180, 6.0, 440, 2);
}

std::string silentFilm() {
  return clips::clip("engine-silent.mp4", {"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=30:duration=1", "-c:v",
                                           "libx264", "-pix_fmt", "yuv420p"});
}

std::string soundEndsEarly() {
  return clips::clip("engine-short-sound.mp4", {"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=30:duration=2", "-f",
                                                "lavfi", "-i", "sine=frequency=440:sample_rate=48000:duration=0.5",
                                                "-c:v", "libx264", "-pix_fmt", "yuv420p", "-c:a", "aac"});
}

std::string soundBeginsLate() {
  return clips::clip("engine-late-sound.mkv",
                     {"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=30:duration=3", "-itsoffset", "1", "-f",
                      "lavfi", "-i", "aevalsrc=exprs=0.5:sample_rate=48000:duration=1.5", "-c:v", "libx264",
                      "-pix_fmt", "yuv420p", "-c:a", "flac"});
}

bool plays(Stage& stage, host::SoundPlayer& player) {
  const double before = player.position();
  return stage.until([&] { return player.position() > before + 0.1; });
}

}  // namespace

TEST(SoundPlayer, IsCreatedStoppedAtTheBeginning) {
  Stage stage;
  auto player = stage.sound(film());
  stage.engine().commit();
  stage.loop().runFor(0.2);
  EXPECT_EQ(player->position(), 0.0);
  EXPECT_EQ(stage.recording().openDevices(), 0);
}

TEST(SoundPlayer, PrepareTakesTheDeviceWithoutASound) {
  Stage stage;
  auto player = stage.sound(film());
  player->prepare();
  stage.engine().commit();
  EXPECT_TRUE(stage.until([&] { return stage.recording().openDevices() == 1; }));
  EXPECT_EQ(player->position(), 0.0);
  EXPECT_TRUE(stage.recording().sound().left.empty());
}

TEST(SoundPlayer, NothingHappensBeforeTheCommit) {
  Stage stage;
  auto player = stage.sound(film());
  player->play();
  stage.loop().runFor(0.3);
  EXPECT_EQ(player->position(), 0.0);
  stage.engine().commit();
  EXPECT_TRUE(plays(stage, *player));
}

TEST(SoundPlayer, PauseKeepsTheDeviceAndThePosition) {
  Stage stage;
  auto player = stage.sound(film());
  player->play();
  stage.engine().commit();
  ASSERT_TRUE(plays(stage, *player));
  player->pause();
  const double position = player->position();
  stage.engine().commit();
  stage.loop().runFor(0.3);
  EXPECT_EQ(player->position(), position);
  EXPECT_EQ(stage.recording().openDevices(), 1);
}

TEST(SoundPlayer, StopGivesTheDeviceBackAndKeepsThePosition) {
  Stage stage;
  auto player = stage.sound(film());
  player->play();
  stage.engine().commit();
  ASSERT_TRUE(plays(stage, *player));
  ASSERT_EQ(stage.recording().openDevices(), 1);
  player->stop();
  const double position = player->position();
  stage.engine().commit();
  EXPECT_TRUE(stage.until([&] { return stage.recording().openDevices() == 0; }));
  EXPECT_EQ(player->position(), position);
  player->play();
  stage.engine().commit();
  EXPECT_TRUE(plays(stage, *player));
  EXPECT_TRUE(stage.until([&] { return stage.recording().openDevices() == 1; }));
}

TEST(SoundPlayer, APositionSoughtIsTheAnswerAtOnceAndTheSoundGoesOnFromThere) {
  Stage stage;
  auto player = stage.sound(film());
  player->play();
  stage.engine().commit();
  ASSERT_TRUE(plays(stage, *player));
  player->seek(4.0);
  EXPECT_EQ(player->position(), 4.0);
  stage.engine().commit();
  EXPECT_GE(player->position(), 4.0);
  EXPECT_TRUE(stage.until([&] { return stage.recording().playingAt(now()) > 4.1; }));
}

TEST(SoundPlayer, AFilmWithoutSoundPlaysSilenceAndEndsAtItsDuration) {
  Stage stage;
  Heard heard;
  auto player = stage.sound(silentFilm(), heard);
  player->play();
  stage.engine().commit();
  ASSERT_TRUE(plays(stage, *player));
  ASSERT_TRUE(stage.until([&] { return heard.ended > 0; }));
  EXPECT_NEAR(player->position(), 1.0, 0.05);
  EXPECT_EQ(heard.failed, 0);
  EXPECT_EQ(stage.recording().openDevices(), 0);
}

TEST(SoundPlayer, ASoundTrackThatEndsEarlyIsContinuedBySilence) {
  Stage stage;
  Heard heard;
  auto player = stage.sound(soundEndsEarly(), heard);
  player->play();
  stage.engine().commit();
  ASSERT_TRUE(stage.until([&] { return heard.ended > 0; }));
  EXPECT_NEAR(player->position(), 2.0, 0.05);
}

TEST(SoundPlayer, ASoundTrackThatBeginsLateIsPrecededBySilence) {
  Stage stage;
  auto player = stage.sound(soundBeginsLate());
  player->setPan(-1.0);
  player->play();
  stage.engine().commit();
  ASSERT_TRUE(stage.until([&] { return peak(stage.recording().sound().left) > 0.4F; }));
  const auto [left, right, begin] = stage.recording().sound();
  const auto first = std::find_if(left.begin(), left.end(), [](float sample) { return sample > 0.1F; });
  EXPECT_NEAR(begin + static_cast<double>(first - left.begin()) / 48000.0, 1.0, 0.03);
}

TEST(SoundPlayer, TheEndIsToldOnceAndPlayingAgainStartsOver) {
  Stage stage;
  Heard heard;
  auto player = stage.sound(clips::film("engine-brief.mp4", 320, 180, 1.0, 440, 2), heard);
  player->play();
  stage.engine().commit();
  ASSERT_TRUE(stage.until([&] { return heard.ended > 0; }));
  stage.loop().runFor(0.4);
  EXPECT_EQ(heard.ended, 1);
  stage.recording().clear();
  player->play();
  stage.engine().commit();
  ASSERT_TRUE(stage.until([&] { return heard.ended == 2; }));
  EXPECT_NEAR(stage.recording().sound().begin, 0.0, 0.03);
  EXPECT_GT(stage.recording().sound().left.size(), 40000U);
}

TEST(SoundPlayer, NoEventArrivesOnceThePlayerIsGone) {
  Stage stage;
  Heard heard;
  auto player = stage.sound(silentFilm(), heard);
  player->play();
  stage.engine().commit();
  // The end is posted while nobody runs the loop, and the player goes before it is delivered.
  const double length = 1.0;
  while (player->position() < length) std::this_thread::yield();
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  player.reset();
  stage.loop().runFor(0.3);
  EXPECT_EQ(heard.ended, 0);
}

TEST(SoundPlayer, WhatIsNoMediaFails) {
  Stage stage;
  Heard heard;
  auto player = stage.sound(__FILE__, heard);
  player->play();
  stage.engine().commit();
  EXPECT_TRUE(stage.until([&] { return heard.failed == 1; }));
  EXPECT_EQ(heard.ended, 0);
}

TEST(SoundPlayer, ASinkThatCannotBeOpenedLeavesTheFilmRunningInSilence) {
  Options options;
  options.makeSoundSink = [] {
    Element sink = makeElement("pulsesink");
    if (sink) g_object_set(sink.get(), "server", "unix:/nonexistent/sound-server", nullptr);
    return sink;
  };
  Stage stage(std::move(options));
  Heard heard;
  auto player = stage.sound(soundEndsEarly(), heard);
  player->play();
  stage.engine().commit();
  EXPECT_TRUE(plays(stage, *player));
  EXPECT_TRUE(stage.until([&] { return heard.ended == 1; }));
  EXPECT_EQ(heard.failed, 0);
}

TEST(SoundPlayer, ADeviceThatFailedIsAskedForAgainAlsoIfTheFilmHadNotStartedYet) {
  const auto recording = std::make_shared<Recording>();
  auto attempts = std::make_shared<std::atomic<int>>(0);
  Options options;
  options.soundRetry = 0.001;  // before the picture can be there
  options.makeSoundSink = [attempts, recording] { return ++*attempts < 3 ? Element() : recording->makeSink(); };
  Stage stage(std::move(options));
  auto sound = stage.sound(film());
  auto picture = stage.picture(film());
  sound->play(), picture->play();
  stage.engine().commit();
  EXPECT_TRUE(stage.until([&] { return recording->playingAt(now()) > 0.0; }));
}

TEST(SoundPlayer, ADeviceThatFailedIsAskedForAgain) {
  auto attempts = std::make_shared<std::atomic<int>>(0);
  const auto recording = std::make_shared<Recording>();
  Options options;
  options.soundRetry = 0.2;
  options.makeSoundSink = [attempts, recording] { return ++*attempts < 3 ? Element() : recording->makeSink(); };
  Stage stage(std::move(options));
  auto player = stage.sound(film());
  player->play();
  stage.engine().commit();
  EXPECT_TRUE(stage.until([&] { return recording->playingAt(now()) > 0.0; }));
  EXPECT_LT(leastOf([&] { return std::fabs(recording->playingAt(now()) - player->position()); }), 0.001);
  stage.closeEngine();
}

}  // namespace gstreamer
