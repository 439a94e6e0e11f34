#include "tests/host/gstreamer/Stage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ostream>

namespace gstreamer {

namespace {

constexpr double rate = 25.0;
constexpr double sampleRate = 48000.0;
constexpr double oneFrame = 1.0 / rate;
constexpr double burstAt = 0.3;  ///< seconds after each full one
constexpr float audible = 0.15F;
/// Seconds. Not every container tells how many samples the encoder put before the first one.
constexpr double soundTolerance = 0.025;

/// How the clock film is written.
struct Writing {
  std::string name, ending;
  std::vector<std::string> encoding;
  /// Frames that a picture may be off. A program stream tells the time of a picture now and then only.
  int inaccuracy = 1;
};

void PrintTo(const Writing& writing, std::ostream* where) {
  *where << writing.name;
}

const std::vector<Writing> writings = {
    {"Mp4", "mp4", {"-c:v", "libx264", "-g", "100", "-c:a", "aac"}},
    {"Matroska", "mkv", {"-c:v", "libx264", "-g", "100", "-c:a", "libopus"}},
    {"TransportStream", "ts", {"-c:v", "libx264", "-g", "50", "-c:a", "aac"}},
    {"ProgramStream", "mpg", {"-c:v", "mpeg2video", "-q:v", "2", "-g", "12", "-bf", "2", "-c:a", "mp2"}, 3},
    {"ProgramStreamOfFewKeyFrames", "mpg", {"-c:v", "mpeg2video", "-q:v", "2", "-g", "100", "-c:a", "mp2"}, 3},
    {"Avi", "avi", {"-c:v", "mpeg4", "-q:v", "2", "-g", "50", "-c:a", "pcm_s16le"}},
    {"Flv", "flv", {"-c:v", "libx264", "-g", "50", "-bf", "0", "-c:a", "aac"}},
    {"Ogg", "ogv", {"-c:v", "libtheora", "-q:v", "10", "-g", "50", "-c:a", "libvorbis"}},
    {"WebM", "webm", {"-c:v", "libvpx", "-b:v", "1M", "-deadline", "realtime", "-g", "50", "-c:a", "libvorbis"}}};

/// A film of ten seconds whose left half tells the second and whose right half the frame in it, by their brightness;
/// in every second there is a short tone that tells the second by its height.
std::string clock(const Writing& writing) {
  const std::string brightness = "if(lt(X\\,W/2)\\,30+18*floor(N/25)\\,30+8*mod(N\\,25))";
  const std::string tone =
      "if(between(mod(t\\,1)\\,0.3\\,0.34)\\,0.6*sin(2*PI*(1000+300*floor(t))*(mod(t\\,1)-0.3))\\,0)";
  std::vector<std::string> arguments = {
      "-f", "lavfi", "-i", "color=black:size=128x64:rate=25:duration=10,geq=lum='" + brightness + "':cb=128:cr=128",
      "-f", "lavfi", "-i", "aevalsrc=exprs=" + tone + "|" + tone + ":sample_rate=48000:duration=10"};
  arguments.insert(arguments.end(), {"-pix_fmt", "yuv420p", "-b:a", "192k"});
  arguments.insert(arguments.end(), writing.encoding.begin(), writing.encoding.end());
  return clips::clip("engine-clock-" + writing.name + "." + writing.ending, arguments);
}

/// Seconds of the film that a picture belongs to.
double timeOf(const host::Picture& picture) {
  const auto brightness = [&picture](int eighths) {
    return colourAt(picture, picture.width * eighths / 8, picture.height / 2).green * 219.0 / 255.0 + 16.0;
  };
  return std::round((brightness(2) - 30.0) / 18.0) + std::round((brightness(6) - 30.0) / 8.0) * oneFrame;
}

/// Seconds of the film that the first of these samples belong to, as their first tone tells; negative without one.
double timeOfFirst(const std::vector<float>& samples) {
  const auto loud = [](float sample) { return std::fabs(sample) > audible; };
  const auto begin = std::find_if(samples.begin(), samples.end(), loud);
  constexpr std::ptrdiff_t whole = 2400;
  if (samples.end() - begin < whole) return -1.0;
  int crossings = 0;
  for (auto sample = begin; sample + 1 != begin + static_cast<std::ptrdiff_t>(0.03 * sampleRate); ++sample)
    crossings += (*sample < 0.0F) != (*(sample + 1) < 0.0F) ? 1 : 0;
  const double second = std::round((crossings / 0.06 - 1000.0) / 300.0);
  return second + burstAt - static_cast<double>(begin - samples.begin()) / sampleRate;
}

class SeekByHand : public testing::TestWithParam<Writing> {
 protected:
  SeekByHand() : sound_(stage_.sound(clock(GetParam()))), picture_(stage_.picture(clock(GetParam()))) {
    sound_->setPan(-1.0);
    sound_->prepare();
    stage_.engine().commit();
  }

  /// As a hand does it: the film stands still, and goes on from the place.
  void seek(double target) {
    picture_->pause(), sound_->pause();
    stage_.engine().commit();
    ASSERT_TRUE(stage_.until([&] { return stage_.recording().standsStill(); }));
    picture_->seek(target), sound_->seek(target);
    stage_.engine().commit();
    ASSERT_TRUE(stage_.until([&] { return shows(target); })) << "shows " << shown() << " instead of " << target;
    stage_.recording().clear();
    picture_->play(), sound_->play();
    stage_.engine().commit();
  }

  double shown() const {
    const auto picture = picture_->pictures()->newest();
    return picture ? timeOf(*picture) : -1.0;
  }
  bool shows(double time) const { return std::fabs(shown() - time) < inaccuracy() + 0.001; }
  static double inaccuracy() { return GetParam().inaccuracy * oneFrame; }

  /// How far the pictures are behind the position, at the best of many looks: a busy machine is late now and then.
  double lateness() {
    double least = 1.0;
    for (int look = 0; look < 40; ++look) {
      stage_.loop().runFor(0.01);
      const double before = picture_->position();
      least = std::min(least, before - shown());
    }
    return least;
  }

  void moveFingerTo(double target) {
    picture_->seek(target), sound_->seek(target);
    stage_.engine().commit();
  }

  /// Whether `expected` is to be seen at some time while the finger jumps between the two and never rests.
  bool showsUnderAMovingFinger(double one, double other, double expected) {
    double moved = -1.0;
    int jumps = 0;
    return stage_.until([&] {
      if (const double time = seconds(now()); time - moved > 0.07) {
        moved = time;
        moveFingerTo(jumps++ % 2 == 0 ? one : other);
      }
      return shows(expected);
    });
  }

  Stage stage_;
  std::unique_ptr<host::SoundPlayer> sound_;
  std::unique_ptr<host::PicturePlayer> picture_;
};

}  // namespace

TEST_P(SeekByHand, BringsPictureAndSoundToTheSecondTogether) {
  ASSERT_TRUE(stage_.until([&] { return shown() >= 0.0; }));
  for (const double target : {6.0, 2.0, 0.0}) {
    SCOPED_TRACE(target);
    ASSERT_NO_FATAL_FAILURE(seek(target));
    const double late = lateness();
    EXPECT_GE(late, -inaccuracy());
    EXPECT_LE(late, oneFrame + inaccuracy());

    ASSERT_TRUE(stage_.until([&] { return timeOfFirst(stage_.recording().sound().left) >= -0.5; }));
    const auto heard = stage_.recording().sound();
    const double first = timeOfFirst(heard.left);
    EXPECT_NEAR(first, target, soundTolerance);
    const double clockAtBegin = heard.begin - first;
    const auto heardApart = [&] {
      return std::fabs(stage_.recording().playingAt(now()) - clockAtBegin - sound_->position());
    };
    EXPECT_LT(leastOf(heardApart), soundTolerance);
    EXPECT_LT(leastOf([&] { return std::fabs(sound_->position() - picture_->position()); }), 0.001);
  }
}

/// With key frames every second, at places where the sound track has no packet that begins.
class Scrubbing : public SeekByHand {};

TEST_P(Scrubbing, ShowsTheKeyFrameOfEachSecondThatTheFingerComesTo) {
  ASSERT_TRUE(stage_.until([&] { return shown() >= 0.0; }));
  stage_.engine().setScrubbing(true);
  for (const double target : {7.0, 6.0, 5.0, 3.0, 8.0})
    EXPECT_TRUE(showsUnderAMovingFinger(target, target, target)) << "shows " << shown() << " instead of " << target;
}

TEST_P(Scrubbing, ShowsTheVeryPictureOnceTheFingerIsLifted) {
  ASSERT_TRUE(stage_.until([&] { return shown() >= 0.0; }));
  stage_.engine().setScrubbing(true);
  ASSERT_TRUE(showsUnderAMovingFinger(2.4, 6.4, 6.0)) << "shows " << shown();
  moveFingerTo(6.4);
  stage_.engine().setScrubbing(false);
  // What comes from elsewhere so often would count as a finger that does not rest.
  EXPECT_TRUE(showsUnderAMovingFinger(6.4, 6.4, 6.4)) << "shows " << shown();
}

TEST_P(Scrubbing, ShowsTheVeryPictureOnceTheFingerRests) {
  ASSERT_TRUE(stage_.until([&] { return shown() >= 0.0; }));
  stage_.engine().setScrubbing(true);
  ASSERT_TRUE(showsUnderAMovingFinger(2.4, 6.4, 6.0)) << "shows " << shown();
  moveFingerTo(6.4);
  EXPECT_TRUE(stage_.until([&] { return shows(6.4); })) << "shows " << shown();
}

const std::vector<Writing> ofShortGroups = {
    {"Mp4OfShortGroups", "mp4", {"-c:v", "libx264", "-g", "25", "-sc_threshold", "0", "-c:a", "aac", "-ar", "44100"}},
    {"MatroskaOfShortGroups", "mkv", {"-c:v", "libx264", "-g", "25", "-sc_threshold", "0", "-c:a", "flac"}}};

INSTANTIATE_TEST_SUITE_P(Film, Scrubbing, testing::ValuesIn(ofShortGroups),
                         [](const auto& film) { return film.param.name; });

INSTANTIATE_TEST_SUITE_P(Film, SeekByHand, testing::ValuesIn(writings),
                         [](const auto& film) { return film.param.name; });

}  // namespace gstreamer
