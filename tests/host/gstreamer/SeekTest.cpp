#include "tests/host/gstreamer/NumberedPictures.h"
#include "tests/host/gstreamer/Stage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <mutex>
#include <vector>

namespace gstreamer {

namespace {

constexpr double rate = 30.0;

/// Half of its pictures are referred to by no other, and the last of them are far from the key frame before them.
std::string rareKeys() {
  return NumberedPictures{.count = 105}.clip("engine-rare-keys.mp4",
                                             {"-g", "70", "-c:v", "libx264", "-crf", "1", "-bf", "3"});
}

/// The frames that were put up, one after the other.
class Frames {
 public:
  explicit Frames(std::shared_ptr<host::PictureStream> stream) : stream_(std::move(stream)) {
    stream_->setListener([this] {
      const auto newest = stream_->newest();
      const std::lock_guard lock(mutex_);
      if (newest) numbers_.push_back(numberOf(*newest));
    });
  }
  ~Frames() { stream_->setListener({}); }
  Frames(const Frames&) = delete;
  Frames& operator=(const Frames&) = delete;

  std::vector<int> numbers() const {
    const std::lock_guard lock(mutex_);
    return numbers_;
  }
  int last() const {
    const auto all = numbers();
    return all.empty() ? -1 : all.back();
  }
  bool had(int number) const {
    const auto all = numbers();
    return std::find(all.begin(), all.end(), number) != all.end();
  }

 private:
  std::shared_ptr<host::PictureStream> stream_;
  mutable std::mutex mutex_;
  std::vector<int> numbers_;
};

/// A film that stands still, whose pictures are counted.
class Film {
 public:
  explicit Film(const std::string& path)
      : player_(stage_.picture(path, heard_, 64, 64)), frames_(player_->pictures()) {
    stage_.engine().commit();
  }

  void seek(double seconds) {
    player_->seek(seconds);
    stage_.engine().commit();
  }
  bool shows(int frame) {
    return stage_.until([&] { return frames_.last() == frame; });
  }
  void play() {
    player_->play();
    stage_.engine().commit();
  }
  Stage& stage() { return stage_; }
  const Frames& frames() const { return frames_; }

 private:
  Stage stage_;
  Heard heard_;
  std::unique_ptr<host::PicturePlayer> player_;
  Frames frames_;
};

/// Whether it goes like that at least once: on a machine that halts between two commands it goes otherwise.
bool happensOnce(const std::function<bool()>& attempt) {
  constexpr int attempts = 5;
  for (int i = 0; i < attempts; ++i) {
    if (attempt()) return true;
  }
  return false;
}

void expectEveryFrameFound(const std::string& path, int first, int last) {
  Film film(path);
  ASSERT_TRUE(film.shows(0));
  for (int frame = first; frame <= last; ++frame) {
    film.seek(frame / rate);
    EXPECT_TRUE(film.shows(frame)) << frame << ", but shows " << film.frames().last();
    if (testing::Test::HasFailure()) return;
  }
}

}  // namespace

TEST(Seek, EveryFrameFarBehindAKeyFrameIsFoundExactly) {
  expectEveryFrameFound(rareKeys(), 40, 69);
}

TEST(Seek, EveryFrameOfHevcFarBehindAKeyFrameIsFoundExactly) {
  const auto path = NumberedPictures{.count = 100}.clip(
      "engine-rare-keys-hevc.mp4",
      {"-g", "100", "-c:v", "libx265", "-x265-params", "log-level=error:bframes=3", "-tag:v", "hvc1"});
  expectEveryFrameFound(path, 60, 80);
}

TEST(Seek, AfterALongWayTheFilmPlaysOnOverTheNextKeyFrame) {
  Film film(rareKeys());
  ASSERT_TRUE(film.shows(0));
  film.seek(50 / rate);
  ASSERT_TRUE(film.shows(50));
  film.play();
  ASSERT_TRUE(film.stage().until([&] { return film.frames().last() > 85; }));
  auto played = film.frames().numbers();
  played.erase(played.begin(), std::find(played.begin(), played.end(), 50));
  EXPECT_TRUE(std::is_sorted(played.begin(), played.end()));
  // A busy machine leaves frames out; a decoder that began anew in the wrong place would leave all of them out.
  EXPECT_TRUE(std::any_of(played.begin(), played.end(), [](int frame) { return frame >= 55 && frame < 75; }));
}

TEST(Seek, UnderAMovingFingerAKeyFrameComesFirstAndThenTheVeryFrame) {
  Film film(rareKeys());
  EXPECT_TRUE(happensOnce([&] {
    film.seek(0.0);
    EXPECT_TRUE(film.shows(0));
    film.seek(1.0 / rate);
    film.stage().loop().runFor(0.02);
    film.seek(100 / rate);
    EXPECT_TRUE(film.shows(100));
    const auto numbers = film.frames().numbers();
    return numbers.size() > 1 && numbers[numbers.size() - 2] == 70;
  }));
}

TEST(Seek, AKeyFrameDoesNotReplaceAPictureThatIsNearer) {
  Film film(rareKeys());
  ASSERT_TRUE(film.shows(0));
  film.seek(60 / rate);
  ASSERT_TRUE(film.shows(60));
  for (const int frame : {61, 62, 63}) {
    film.seek(frame / rate);
    ASSERT_TRUE(film.shows(frame));
  }
  EXPECT_FALSE(film.frames().had(70));
}

TEST(Seek, APlaceThatIsNotWantedAnyMoreIsNotDecodedUpTo) {
  // Large enough that nobody decodes two hundred of its frames at once.
  const auto path = clips::clip("engine-one-key-of-eight-seconds.mp4",
                                {"-f", "lavfi", "-i", "testsrc2=size=640x360:rate=30:duration=8", "-c:v", "libx264",
                                 "-preset", "ultrafast", "-g", "300", "-pix_fmt", "yuv420p"});
  Stage stage;
  Heard heard;
  auto player = stage.picture(path, heard, 64, 64);
  stage.engine().commit();
  ASSERT_TRUE(stage.until([&] { return player->pictures()->newest() != nullptr; }));
  const auto shown = [&] { return player->pictures()->counts().shown; };
  EXPECT_TRUE(happensOnce([&] {
    const auto before = shown();
    player->seek(7.8);
    stage.engine().commit();
    stage.loop().runFor(0.01);
    player->seek(0.1);
    stage.engine().commit();
    EXPECT_TRUE(stage.until([&] { return shown() > before; }));
    stage.loop().runFor(1.0);
    // The key frame at 0 is no news, being as near as what is shown; so there is the wanted picture, and at most
    // that.
    return shown() - before <= 2U;
  }));
}

}  // namespace gstreamer
