#include "tests/host/gstreamer/FilmPlayers.h"
#include "tests/host/gstreamer/NumberedPictures.h"
#include "tests/host/gstreamer/Stage.h"
#include "tests/host/gstreamer/StandInDecoder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <ostream>

namespace gstreamer {

namespace {

using Fault = StandInDecoder::Fault;

/// A picture each tenth of a second, none of them white.
constexpr NumberedPictures slow{.count = 90, .rate = 10, .isHeard = true};

/// What the stand-in decodes.
std::string film() {
  return slow.clip("engine-hardware.mp4", {"-c:v", "libx264", "-crf", "1", "-bf", "0", "-g", "10", "-c:a", "aac"});
}

/// What it does not.
std::string otherFilm() {
  return slow.clip("engine-hardware-other.webm",
                   {"-c:v", "libvpx", "-b:v", "2M", "-deadline", "realtime", "-c:a", "libvorbis"});
}

/// One of these films, and whether it is where it should be.
struct Film : FilmPlayers {
  using FilmPlayers::FilmPlayers;

  bool isOfHardware() const {
    const auto newest = picture->pictures()->newest();
    return newest && colourAt(*newest, 32, 32).green > 250;
  }
  /// Seconds of the film that the newest picture is from.
  double shown() const {
    const auto newest = picture->pictures()->newest();
    return newest ? static_cast<double>(numberOf(*newest)) / slow.rate : 0.0;
  }
  /// A picture of the film's own is shown, from where the film is.
  bool isSeen() const {
    return picture->pictures()->newest() && !isOfHardware() && std::fabs(shown() - picture->position()) < 0.4;
  }
};

Options impatient() {
  Options options;
  options.decoderPatience = 0.5;
  return options;
}

std::size_t softwareDecodersIn(const Stage& stage) {
  const auto elements = stage.elements();
  return elements.count("avdec_h264") + elements.count("openh264dec");
}

}  // namespace

TEST(Hardware, IsUsedWhereItIs) {
  const StandInDecoder decoder(Fault::None);
  Stage stage;
  Film film(stage, gstreamer::film());
  film.play();
  stage.engine().commit();
  EXPECT_TRUE(stage.until([&] { return film.picture->position() > 0.5 && film.isOfHardware(); }));
  EXPECT_EQ(softwareDecodersIn(stage), 0U);
}

TEST(Hardware, ThatWaitsForTheFilmIsNotTakenForStuck) {
  const StandInDecoder decoder(Fault::None);
  // Not an impatient one: a busy machine holds good decoders up, too.
  const Options options;
  const double longerThanPatience = options.decoderPatience + 0.5;
  Stage stage(options);
  Film film(stage, gstreamer::film());
  stage.engine().commit();
  ASSERT_TRUE(stage.until([&] { return film.isOfHardware(); }));
  stage.loop().runFor(longerThanPatience);
  film.play();
  stage.engine().commit();
  ASSERT_TRUE(stage.until([&] { return film.picture->position() > 1.2; }));
  film.pause();
  stage.engine().commit();
  stage.loop().runFor(longerThanPatience);
  film.seek(8.5);
  film.play();
  stage.engine().commit();
  ASSERT_TRUE(stage.until([&] { return film.heard.ended > 0; }));
  EXPECT_TRUE(film.isOfHardware());
  EXPECT_EQ(softwareDecodersIn(stage), 0U);
}

struct FaultyDecoder {
  const char* name;
  Fault fault;
  int goodPictures;
};

void PrintTo(const FaultyDecoder& decoder, std::ostream* where) {
  *where << decoder.name;
}

class HardwareThat : public testing::TestWithParam<FaultyDecoder> {};

TEST_P(HardwareThat, IsReplacedBySoftwareInTheSameLoad) {
  {
    const StandInDecoder decoder(GetParam().fault, GetParam().goodPictures);
    Stage stage(impatient());
    Film film(stage, gstreamer::film());
    film.play();
    stage.engine().commit();
    EXPECT_TRUE(stage.until([&] { return film.picture->position() > 0.2 && film.isSeen(); }));
    const double seen = film.picture->position();
    EXPECT_TRUE(stage.until([&] { return film.picture->position() > seen + 0.5 && film.isSeen(); }));
    EXPECT_LT(film.apart(), 0.001);
    EXPECT_EQ(stage.elements().count(StandInDecoder::name), 1U);
    EXPECT_EQ(softwareDecodersIn(stage), 1U);
    EXPECT_EQ(film.heard.failed + film.heard.ended, 0);
  }
}

TEST_P(HardwareThat, DoesNotLoseThePlaceThatWasSought) {
  const StandInDecoder decoder(GetParam().fault, GetParam().goodPictures);
  Stage stage(impatient());
  Film film(stage, gstreamer::film());
  film.play();
  stage.engine().commit();
  stage.loop().runFor(0.1);
  film.pause();
  film.seek(6.0);
  stage.engine().commit();
  stage.loop().runFor(0.1);
  film.seek(4.0);
  stage.engine().commit();
  EXPECT_TRUE(stage.until([&] {
    // With enough good pictures, it goes wrong only later.
    return film.isOfHardware() || film.shown() == 4.0;
  }));
  film.play();
  stage.engine().commit();
  EXPECT_TRUE(stage.until([&] { return film.picture->position() > 4.5 && film.isSeen(); }));
  EXPECT_EQ(film.heard.failed + film.heard.ended, 0);
}

TEST_P(HardwareThat, IsNotNoticedByTheOtherFilm) {
  const StandInDecoder decoder(GetParam().fault, GetParam().goodPictures);
  Stage stage(impatient());
  Film other(stage, otherFilm());
  other.play();
  stage.engine().commit();
  ASSERT_TRUE(stage.until([&] { return other.picture->position() > 0.3 && other.isSeen(); }));
  const auto beginning = [&other] { return leastOf([&] { return seconds(now()) - other.picture->position(); }); };
  const double begun = beginning();
  Film film(stage, gstreamer::film());
  film.play();
  stage.engine().commit();
  EXPECT_TRUE(stage.until([&] { return film.picture->position() > 0.2 && film.isSeen(); }));
  EXPECT_NEAR(beginning(), begun, 0.05);
  EXPECT_TRUE(stage.until([&] { return other.isSeen(); }));
  const auto elements = stage.elements();
  EXPECT_EQ(elements.count("vp8dec") + elements.count("avdec_vp8"), 1U);
  EXPECT_EQ(elements.count("vorbisdec") + elements.count("avdec_vorbis"), 1U);
  EXPECT_EQ(other.heard.failed + other.heard.ended, 0);
}

INSTANTIATE_TEST_SUITE_P(Faults, HardwareThat,
                         testing::Values(FaultyDecoder{"DoesNotOpen", Fault::DoesNotOpen, 0},
                                         FaultyDecoder{"RefusesTheFormat", Fault::RefusesTheFormat, 0},
                                         FaultyDecoder{"GivesNothing", Fault::GivesNothing, 0},
                                         FaultyDecoder{"FailsAtOnce", Fault::Fails, 0},
                                         FaultyDecoder{"FailsLater", Fault::Fails, 12},
                                         FaultyDecoder{"HangsAtOnce", Fault::Hangs, 0},
                                         FaultyDecoder{"HangsLater", Fault::Hangs, 12}),
                         [](const auto& tested) { return std::string(tested.param.name); });

/// A seek has to get past the thread that is stuck.
TEST(Hardware, ThatHangsDoesNotKeepASeekWaiting) {
  const StandInDecoder decoder(Fault::Hangs, 8);
  Stage stage(impatient());
  Film film(stage, gstreamer::film());
  film.play();
  stage.engine().commit();
  ASSERT_TRUE(stage.until([&] { return film.picture->position() > 0.6; }));
  film.pause();
  film.seek(5.0);
  stage.engine().commit();
  EXPECT_TRUE(stage.until([&] { return film.shown() == 5.0; }));
  EXPECT_EQ(film.picture->position(), 5.0);
}

TEST(Hardware, ThatHangsDoesNotKeepTheEngineFromEnding) {
  const StandInDecoder decoder(Fault::Hangs, 0);
  for (const double after : {0.2, 1.0}) {
    Options options = impatient();
    options.closingPatience = 0.5;
    Stage stage(std::move(options));
    Film film(stage, gstreamer::film());
    film.play();
    stage.engine().commit();
    stage.loop().runFor(after);
    stage.closeEngine();
    EXPECT_TRUE(stage.until([&] { return stage.recording().openDevices() == 0; }));
  }
}

}  // namespace gstreamer
