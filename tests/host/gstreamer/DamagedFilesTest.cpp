#include "tests/host/gstreamer/FaultyReads.h"
#include "tests/host/gstreamer/Stage.h"
#include "tests/support/OwnMounts.h"

#include <gtest/gtest.h>

#include <sys/mount.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numbers>

namespace gstreamer {

namespace {

namespace fs = std::filesystem;

constexpr double statedDuration = 60.0;

std::string longFilm() {
  return clips::film("engine-minute.mp4", 160, 90, statedDuration, 440, 2);
}

std::string longMatroska() {
  return clips::clip("engine-minute.mkv", {"-i", longFilm(), "-c", "copy"});
}

/// Two seconds' worth of a film of one minute.
long bytesOfTheBeginning(const std::string& path) {
  return static_cast<long>(fs::file_size(path) / 30);
}

/// A film that plays on the other ear all the while: a lossless tone, so that a single sample that is missing shows.
std::string tone() {
  return clips::clip("engine-long-tone.mkv",
                     {"-f", "lavfi", "-i", "aevalsrc=exprs=0.5*sin(2*PI*440*t):sample_rate=48000:duration=60", "-f",
                      "lavfi", "-i", "color=size=64x48:rate=10:duration=60", "-map", "1:v", "-map", "0:a", "-c:v",
                      "libx264", "-c:a", "flac", "-sample_fmt", "s16"});
}

/// Samples of a 440 Hz tone that do not follow from the two before them.
int breaksIn(const std::vector<float>& samples) {
  const double turn = 2.0 * std::cos(2.0 * std::numbers::pi * 440.0 / 48000.0);
  int breaks = 0;
  for (std::size_t i = 2; i < samples.size(); ++i) {
    const double expected = turn * static_cast<double>(samples[i - 1]) - static_cast<double>(samples[i - 2]);
    if (std::fabs(static_cast<double>(samples[i]) - expected) > 0.001) ++breaks;
  }
  return breaks;
}

void expectHeardWhereItIs(const Recording& recording, const host::SoundPlayer& sound) {
  EXPECT_LT(leastOf([&] { return std::fabs(recording.playingAt(now()) - sound.position()); }), 0.001);
}

/// Film 1 of one file, and film 2 on the right, which is not to be disturbed.
class DamagedFiles : public testing::Test {
 protected:
  DamagedFiles() : stage_(options()) {
    other_ = stage_.sound(tone());
    other_->setPan(1.0);
    otherPicture_ = stage_.picture(tone());
    other_->play();
    otherPicture_->play();
    stage_.engine().commit();
    EXPECT_TRUE(stage_.until([&] { return !stage_.recording().sound().right.empty(); }));
  }

  void load(const std::string& path, double from = 0.0) {
    path_ = path;
    sound_ = stage_.sound(path, soundHeard_);
    picture_ = stage_.picture(path, pictureHeard_);
    sound_->setPan(-1.0);
    sound_->play();
    picture_->play();
    if (from > 0.0) {
      sound_->seek(from);
      picture_->seek(from);
    }
    stage_.engine().commit();
  }

  bool playsPast(double position) {
    return stage_.until([&] { return picture_->position() > position && playing_->playingAt(now()) > position; });
  }
  bool ends() {
    return stage_.until([&] { return soundHeard_.ended > 0 && pictureHeard_.ended > 0; });
  }
  std::uint64_t shown() { return picture_->pictures()->counts().shown; }

  void expectTheOtherEarUndisturbed() {
    const auto heard = stage_.recording().sound();
    EXPECT_EQ(breaksIn(heard.right), 0);
    EXPECT_TRUE(isExactlyZero(heard.left));
    expectHeardWhereItIs(stage_.recording(), *other_);
    const auto before = otherPicture_->pictures()->counts().shown;
    EXPECT_TRUE(stage_.until([&] { return otherPicture_->pictures()->counts().shown > before; }));
  }

 private:
  /// The first sink is film 2's, and is the stage's own recording.
  Options options() {
    Options options;
    options.makeSoundSink = [this] { return sinks_++ == 0 ? stage_.recording().makeSink() : playing_->makeSink(); };
    return options;
  }

 protected:
  std::atomic<int> sinks_ = 0;
  std::shared_ptr<Recording> playing_ = std::make_shared<Recording>();
  Stage stage_;
  std::string path_;
  Heard soundHeard_, pictureHeard_;
  std::unique_ptr<host::SoundPlayer> other_, sound_;
  std::unique_ptr<host::PicturePlayer> otherPicture_, picture_;
};

/// A copy of `path` that the test may spoil.
std::string copyOf(const std::string& path, const std::string& name) {
  return clips::truncated(path, name, static_cast<long>(fs::file_size(path)));
}

void append(const std::string& path, const std::string& whole) {
  std::ifstream from(whole, std::ios::binary);
  from.seekg(static_cast<std::streamoff>(fs::file_size(path)));
  std::ofstream to(path, std::ios::binary | std::ios::app);
  to << from.rdbuf();
}

/// A file system of the test's own, in memory, which only threads see that are started from this one later.
class Volume {
 public:
  Volume() {
    std::string name = (fs::temp_directory_path() / "quillop-volume-XXXXXX").string();
    folder_ = mkdtemp(name.data());
    isMounted_ = keepMountsToOneself() && mount("volume", folder_.c_str(), "tmpfs", 0, nullptr) == 0;
  }
  ~Volume() {
    umount2(folder_.c_str(), MNT_DETACH);
    std::error_code ignored;
    fs::remove(folder_, ignored);
  }
  Volume(const Volume&) = delete;
  Volume& operator=(const Volume&) = delete;

  bool isMounted() const { return isMounted_; }
  const std::string& folder() const { return folder_; }
  /// From under whoever uses it.
  bool takeAway() const { return umount2(folder_.c_str(), MNT_DETACH) == 0; }

 private:
  std::string folder_;
  bool isMounted_ = false;
};

/// Writes noise over the bytes of `path` between two fractions of its length.
void spoil(const std::string& path, double from, double to) {
  const auto size = static_cast<double>(fs::file_size(path));
  std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
  file.seekp(static_cast<std::streamoff>(size * from));
  unsigned noise = 1;
  for (auto left = static_cast<long>(size * (to - from)); left > 0; --left) {
    noise = noise * 1664525U + 1013904223U;
    file.put(static_cast<char>(noise >> 24U));
  }
}

}  // namespace

TEST_F(DamagedFiles, AFilmWhoseDataEndsLongBeforeItsStatedDurationEndsThere) {
  load(clips::truncated(longFilm(), "engine-minute-cut.mp4", bytesOfTheBeginning(longFilm())));
  ASSERT_TRUE(ends());
  EXPECT_LT(picture_->position(), statedDuration / 2);
  EXPECT_GT(shown(), 10U);
  EXPECT_EQ(soundHeard_.failed + pictureHeard_.failed, 0);
  stage_.loop().runFor(0.3);
  EXPECT_EQ(soundHeard_.ended + pictureHeard_.ended, 2);
  expectTheOtherEarUndisturbed();
}

TEST_F(DamagedFiles, SoDoesAMatroskaFilm) {
  load(clips::truncated(longMatroska(), "engine-minute-cut.mkv", bytesOfTheBeginning(longMatroska())));
  ASSERT_TRUE(ends());
  EXPECT_LT(picture_->position(), statedDuration / 2);
  expectTheOtherEarUndisturbed();
}

TEST_F(DamagedFiles, AFilmSoughtBeyondItsDataEnds) {
  load(clips::truncated(longFilm(), "engine-minute-cut.mp4", bytesOfTheBeginning(longFilm())), 40.0);
  ASSERT_TRUE(stage_.until([&] { return pictureHeard_.ended + pictureHeard_.failed == 1; }));
  EXPECT_NEAR(picture_->position(), 40.0, 3.0);
  EXPECT_TRUE(picture_->pictures()->newest());
  expectTheOtherEarUndisturbed();
}

TEST_F(DamagedFiles, AShorterPictureTrackDoesNotEndTheFilm) {
  load(clips::clip("engine-long-sound.mp4", {"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=30:duration=0.5", "-f",
                                             "lavfi", "-i", "sine=frequency=440:sample_rate=48000:duration=1.5",
                                             "-c:v", "libx264", "-pix_fmt", "yuv420p", "-c:a", "aac"}));
  ASSERT_TRUE(ends());
  EXPECT_NEAR(picture_->position(), 1.5, 0.1);
}

TEST_F(DamagedFiles, AShorterSoundTrackDoesNotEndTheFilm) {
  load(clips::clip("engine-short-sound.mp4", {"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=30:duration=2", "-f",
                                              "lavfi", "-i", "sine=frequency=440:sample_rate=48000:duration=0.5",
                                              "-c:v", "libx264", "-pix_fmt", "yuv420p", "-c:a", "aac"}));
  ASSERT_TRUE(ends());
  EXPECT_NEAR(picture_->position(), 2.0, 0.1);
}

TEST_F(DamagedFiles, TheSameFileTwiceEndsEachFilmAtItsOwnTime) {
  load(clips::truncated(longFilm(), "engine-minute-cut.mp4", bytesOfTheBeginning(longFilm())));
  Heard lateSound, latePicture;
  auto sound = stage_.sound(path_, lateSound);
  auto picture = stage_.picture(path_, latePicture);
  sound->prepare();
  stage_.engine().commit();
  ASSERT_TRUE(stage_.until([&] { return picture->pictures()->newest() != nullptr; }));
  ASSERT_TRUE(ends());
  EXPECT_EQ(lateSound.ended + latePicture.ended, 0);
  sound->play();
  picture->play();
  stage_.engine().commit();
  ASSERT_TRUE(stage_.until([&] { return lateSound.ended == 1 && latePicture.ended == 1; }));
  EXPECT_NEAR(picture->position(), picture_->position(), 0.01);
}

TEST_F(DamagedFiles, AFilmThatGrowsWhileItPlaysGoesOn) {
  load(clips::truncated(longMatroska(), "engine-minute-growing.mkv", bytesOfTheBeginning(longMatroska())));
  ASSERT_TRUE(playsPast(0.5));
  append(path_, longMatroska());
  EXPECT_TRUE(playsPast(6.0));
  EXPECT_EQ(pictureHeard_.ended + soundHeard_.ended, 0);
  expectTheOtherEarUndisturbed();
}

TEST_F(DamagedFiles, AFilmThatGrowsOnceItsEndWasReachedByTheReaderGoesOn) {
  load(clips::truncated(longMatroska(), "engine-minute-grown.mkv", 2 * bytesOfTheBeginning(longMatroska())));
  ASSERT_TRUE(playsPast(0.3));
  // The readers are a second ahead of what is seen and heard.
  const ReadsToTheEnd reads(path_);
  ASSERT_TRUE(stage_.until([&] { return reads.readers() == 2; }));
  append(path_, longMatroska());
  EXPECT_TRUE(playsPast(6.0));
  EXPECT_EQ(pictureHeard_.ended + soundHeard_.ended, 0);
  const auto before = shown();
  EXPECT_TRUE(stage_.until([&] { return shown() > before + 10; }));
}

TEST_F(DamagedFiles, AFilmThatIsCutOffWhileItPlaysEnds) {
  load(copyOf(longFilm(), "engine-minute-shrinking.mp4"));
  ASSERT_TRUE(playsPast(0.3));
  fs::resize_file(path_, static_cast<std::uintmax_t>(bytesOfTheBeginning(path_)));
  ASSERT_TRUE(ends());
  EXPECT_LT(picture_->position(), statedDuration / 2);
  expectTheOtherEarUndisturbed();
}

TEST_F(DamagedFiles, ADeletedFilmGoesOn) {
  load(copyOf(longFilm(), "engine-minute-deleted.mp4"));
  ASSERT_TRUE(playsPast(0.3));
  fs::remove(path_);
  EXPECT_TRUE(playsPast(2.5));
  const auto before = shown();
  EXPECT_TRUE(stage_.until([&] { return shown() > before + 10; }));
  EXPECT_EQ(pictureHeard_.ended + pictureHeard_.failed, 0);
}

TEST_F(DamagedFiles, AFilmWhoseFileSystemIsTakenAwayGoesOnOrEnds) {
  const Volume volume;
  if (!volume.isMounted()) GTEST_SKIP() << "no file system may be mounted here";
  const std::string path = volume.folder() + "/film.mp4";
  fs::copy_file(longFilm(), path);
  load(path);
  ASSERT_TRUE(playsPast(0.3));
  ASSERT_TRUE(volume.takeAway());
  ASSERT_FALSE(fs::exists(path));
  EXPECT_TRUE(stage_.until([&] { return picture_->position() > 3.0 || pictureHeard_.ended > 0; }));
  sound_->seek(30.0);
  picture_->seek(30.0);
  stage_.engine().commit();
  EXPECT_TRUE(stage_.until([&] { return picture_->position() > 31.0 || pictureHeard_.ended > 0; }));
  expectTheOtherEarUndisturbed();
}

TEST_F(DamagedFiles, NoiseInTheMiddleIsPassed) {
  for (const std::string& whole : {longFilm(), longMatroska()}) {
    const std::string damaged = copyOf(whole, "engine-minute-noise" + fs::path(whole).extension().string());
    spoil(damaged, 0.03, 0.06);  // between about 2 and 4 seconds
    load(damaged);
    EXPECT_TRUE(playsPast(6.0)) << whole;
    const auto before = shown();
    EXPECT_TRUE(stage_.until([&] { return shown() > before + 10; })) << whole;
    expectHeardWhereItIs(*playing_, *sound_);
    EXPECT_EQ(pictureHeard_.ended + pictureHeard_.failed + soundHeard_.ended + soundHeard_.failed, 0) << whole;
    expectTheOtherEarUndisturbed();
    picture_.reset();
    sound_.reset();
    playing_->clear();
  }
}

TEST_F(DamagedFiles, AMediumThatCannotBeReadForAMomentIsReadAgain) {
  load(copyOf(longFilm(), "engine-minute-unreadable.mp4"));
  ASSERT_TRUE(playsPast(0.3));
  {
    const FaultyReads faulty(path_);
    ASSERT_TRUE(stage_.until([&] { return FaultyReads::refused() > 0; }));
  }
  EXPECT_TRUE(playsPast(picture_->position() + 3.0));
  const auto before = shown();
  EXPECT_TRUE(stage_.until([&] { return shown() > before + 10; }));
  EXPECT_EQ(pictureHeard_.ended + pictureHeard_.failed, 0);
  expectTheOtherEarUndisturbed();
}

TEST_F(DamagedFiles, AMediumThatIsPulledOutEndsTheFilm) {
  load(copyOf(longFilm(), "engine-minute-pulled.mp4"));
  ASSERT_TRUE(playsPast(0.3));
  const FaultyReads faulty(path_);
  ASSERT_TRUE(stage_.until([&] { return pictureHeard_.ended + pictureHeard_.failed > 0; }));
  EXPECT_LT(picture_->position(), statedDuration / 2);
  stage_.loop().runFor(0.3);
  EXPECT_EQ(pictureHeard_.ended + pictureHeard_.failed, 1);
  expectTheOtherEarUndisturbed();
}

TEST(DamagedFilesUnheard, AFilmEndsWhereItsPicturesEndIfItsSoundCannotBePlayed) {
  Options options;
  options.soundRetry = 0.2;
  options.makeSoundSink = [] { return Element(); };
  Stage stage(std::move(options));
  Heard heard;
  const std::string cut = clips::truncated(longFilm(), "engine-minute-cut.mp4", bytesOfTheBeginning(longFilm()));
  auto sound = stage.sound(cut);
  auto picture = stage.picture(cut, heard);
  sound->play();
  picture->play();
  stage.engine().commit();
  EXPECT_TRUE(stage.until([&] { return heard.ended == 1; }));
  EXPECT_LT(picture->position(), statedDuration / 2);
  EXPECT_EQ(heard.failed, 0);
}

}  // namespace gstreamer
