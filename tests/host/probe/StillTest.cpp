#include "hosts/probe/MediaProbe.h"
#include "tests/host/probe/TemporaryFolder.h"
#include "tests/support/Clips.h"
#include "tests/support/HighRangeClips.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

constexpr double patience = 20.0;

struct Colour {
  int red = 0;
  int green = 0;
  int blue = 0;
};

Colour colourAt(const probe::Still& still, double across, double down) {
  const auto column = static_cast<std::size_t>(across * still.width);
  const auto row = static_cast<std::size_t>(down * still.height);
  const std::size_t pixel = (row * static_cast<std::size_t>(still.width) + column) * 4;
  return {still.bgrx[pixel + 2], still.bgrx[pixel + 1], still.bgrx[pixel]};
}

bool isRed(const Colour& colour) {
  return colour.red > 200 && colour.green < 60 && colour.blue < 60;
}

bool isBlue(const Colour& colour) {
  return colour.blue > 200 && colour.green < 60 && colour.red < 60;
}

/// Red on the left, blue on the right.
std::string twoColours() {
  return clips::clip(
      "probe-two-colours.mp4",
      {"-f", "lavfi", "-i", "color=red:size=160x120:rate=10:duration=2,drawbox=x=80:w=80:color=blue:t=fill",
       "-pix_fmt", "yuv420p"});
}

/// `twoColours` with another matrix in its track header (ISO/IEC 14496-12, 8.3.2), of which these are the four
/// numbers that turn: (across, down) is shown at (a * across + c * down, b * across + d * down).
std::string turned(const TemporaryFolder& folder, int a, int b, int c, int d) {
  std::string bytes = contentsOf(twoColours());
  const auto matrix = bytes.find("tkhd") + 44;
  const auto put = [&](std::size_t index, int factor) {
    const auto fixedPoint = static_cast<std::uint32_t>(factor) << 16U;
    for (unsigned i = 0; i < 4; ++i)
      bytes[matrix + index * 4 + i] = static_cast<char>(fixedPoint >> (24U - 8U * i) & 0xFFU);
  };
  put(0, a);
  put(1, b);
  put(3, c);
  put(4, d);
  return folder.write("turned.mp4", bytes);
}

/// A moving picture for ten seconds, covered by `colour` while `time`.
std::string covered(const std::string& name, const std::string& colour, const std::string& time) {
  return clips::clip(
      name, {"-f", "lavfi", "-i",
             "testsrc2=size=160x120:rate=10:duration=10,drawbox=color=" + colour + ":t=fill:enable='" + time + "'",
             "-g", "10", "-pix_fmt", "yuv420p"});
}

std::optional<probe::Still> stillOf(const std::string& path, int largestSide) {
  return probe::representativeStill(path, largestSide, patience);
}

bool isOneColour(const probe::Still& still) {
  const Colour first = colourAt(still, 0, 0);
  for (double down = 0.05; down < 1; down += 0.1) {
    for (double across = 0.05; across < 1; across += 0.1) {
      const Colour other = colourAt(still, across, down);
      const int difference =
          std::abs(other.red - first.red) + std::abs(other.green - first.green) + std::abs(other.blue - first.blue);
      if (difference > 24) return false;
    }
  }
  return true;
}

TEST(Still, HasTheFilmsColours) {
  const auto still = stillOf(twoColours(), 80);
  ASSERT_TRUE(still);
  EXPECT_EQ(still->width, 80);
  EXPECT_EQ(still->height, 60);
  EXPECT_TRUE(isRed(colourAt(*still, 0.25, 0.5)));
  EXPECT_TRUE(isBlue(colourAt(*still, 0.75, 0.5)));
  ASSERT_EQ(still->bgrx.size(), 80U * 60U * 4U);
  EXPECT_EQ(still->bgrx[3], 255);
}

TEST(Still, OfHighRangeIsBroughtToTheScreen) {
  constexpr int tolerance = 6;
  const auto expectNear = [](const Colour& seen, const Colour& meant) {
    EXPECT_NEAR(seen.red, meant.red, tolerance);
    EXPECT_NEAR(seen.green, meant.green, tolerance);
    EXPECT_NEAR(seen.blue, meant.blue, tolerance);
  };
  for (const auto light : {clips::Light::Quantized, clips::Light::LogGamma}) {
    const auto still = stillOf(clips::highRangeFilm(light), 1024);
    ASSERT_TRUE(still);
    const auto bands = static_cast<double>(clips::bandsOf(light));
    const auto band = [&](int number) { return colourAt(*still, (number + 0.5) / bands, 0.5); };
    expectNear(band(0), {60, 60, 60});
    expectNear(band(1), {117, 117, 117});
    expectNear(band(2), {180, 40, 40});
    EXPECT_GT(band(3).green, 215);
    EXPECT_GT(band(5).green, band(3).green);
    EXPECT_EQ(still->bgrx[3], 255);
  }
}

TEST(Still, FitsIntoItsBoxAlsoWhereItIsHigh) {
  const TemporaryFolder folder;
  const auto still = stillOf(turned(folder, 0, 1, -1, 0), 80);
  ASSERT_TRUE(still);
  EXPECT_EQ(still->width, 60);
  EXPECT_EQ(still->height, 80);
}

TEST(Still, IsNotEnlarged) {
  const auto still = stillOf(twoColours(), 1024);
  ASSERT_TRUE(still);
  EXPECT_EQ(still->width, 160);
  EXPECT_EQ(still->height, 120);
}

TEST(Still, OfAPhoneHeldUprightStandsUpright) {
  const TemporaryFolder folder;
  const auto still = stillOf(turned(folder, 0, 1, -1, 0), 160);
  ASSERT_TRUE(still);
  EXPECT_EQ(still->width, 120);
  EXPECT_TRUE(isRed(colourAt(*still, 0.5, 0.25)));
  EXPECT_TRUE(isBlue(colourAt(*still, 0.5, 0.75)));
}

TEST(Still, OfAPhoneHeldTheOtherWayStandsUpright) {
  const TemporaryFolder folder;
  const auto still = stillOf(turned(folder, 0, -1, 1, 0), 160);
  ASSERT_TRUE(still);
  EXPECT_EQ(still->width, 120);
  EXPECT_TRUE(isBlue(colourAt(*still, 0.5, 0.25)));
  EXPECT_TRUE(isRed(colourAt(*still, 0.5, 0.75)));
}

TEST(Still, OfAPhoneHeldUpsideDownStandsUpright) {
  const TemporaryFolder folder;
  const auto still = stillOf(turned(folder, -1, 0, 0, -1), 160);
  ASSERT_TRUE(still);
  EXPECT_EQ(still->width, 160);
  EXPECT_TRUE(isBlue(colourAt(*still, 0.25, 0.5)));
  EXPECT_TRUE(isRed(colourAt(*still, 0.75, 0.5)));
}

TEST(Still, OfAFrontCameraIsMirroredAsTheFilmIs) {
  const TemporaryFolder folder;
  const auto upsideDown = stillOf(turned(folder, 1, 0, 0, -1), 160);
  ASSERT_TRUE(upsideDown);
  EXPECT_TRUE(isRed(colourAt(*upsideDown, 0.25, 0.5)));
  const auto sidewaysDown = stillOf(turned(folder, -1, 0, 0, 1), 160);
  ASSERT_TRUE(sidewaysDown);
  EXPECT_TRUE(isBlue(colourAt(*sidewaysDown, 0.25, 0.5)));
}

TEST(Still, OfAFrontCameraHeldUprightIsMirroredAsTheFilmIs) {
  const TemporaryFolder folder;
  const auto falling = stillOf(turned(folder, 0, 1, 1, 0), 160);
  ASSERT_TRUE(falling);
  EXPECT_EQ(falling->width, 120);
  EXPECT_TRUE(isRed(colourAt(*falling, 0.5, 0.25)));
  EXPECT_TRUE(isBlue(colourAt(*falling, 0.5, 0.75)));
  const auto rising = stillOf(turned(folder, 0, -1, -1, 0), 160);
  ASSERT_TRUE(rising);
  EXPECT_EQ(rising->width, 120);
  EXPECT_TRUE(isBlue(colourAt(*rising, 0.5, 0.25)));
  EXPECT_TRUE(isRed(colourAt(*rising, 0.5, 0.75)));
}

TEST(Still, OfAnamorphicPicturesHasSquarePixels) {
  const auto wide =
      stillOf(clips::clip("probe-wide-pixels.mp4", {"-f", "lavfi", "-i", "testsrc2=size=72x58:duration=1", "-vf",
                                                    "setsar=2/1", "-pix_fmt", "yuv420p"}),
              1024);
  ASSERT_TRUE(wide);
  EXPECT_EQ(wide->width, 144);
  EXPECT_EQ(wide->height, 58);
  const auto high =
      stillOf(clips::clip("probe-high-pixels.mp4", {"-f", "lavfi", "-i", "testsrc2=size=72x58:duration=1", "-vf",
                                                    "setsar=1/2", "-pix_fmt", "yuv420p"}),
              1024);
  ASSERT_TRUE(high);
  EXPECT_EQ(high->width, 72);
  EXPECT_EQ(high->height, 116);
}

TEST(Still, OfAFilmThatBeginsBlackIsALaterFrame) {
  const auto still = stillOf(covered("probe-black-start.mp4", "black", "lt(t,2)"), 160);
  ASSERT_TRUE(still);
  EXPECT_FALSE(isOneColour(*still));
}

TEST(Still, OfAFilmThatBeginsFlatIsALaterFrame) {
  const auto still = stillOf(covered("probe-flat-start.mp4", "orange", "lt(t,4)"), 160);
  ASSERT_TRUE(still);
  EXPECT_FALSE(isOneColour(*still));
}

TEST(Still, OfABlackFilmIsBlack) {
  const auto still = stillOf(covered("probe-black.mp4", "black", "gte(t,0)"), 160);
  ASSERT_TRUE(still);
  EXPECT_TRUE(isOneColour(*still));
}

class StillOf : public testing::TestWithParam<const char*> {};

TEST_P(StillOf, IsDecoded) {
  const std::string ending = GetParam();
  const auto still = stillOf(
      clips::clip("probe-still." + ending, {"-f", "lavfi", "-i", "testsrc2=size=352x288:rate=25:duration=3"}), 88);
  ASSERT_TRUE(still);
  EXPECT_EQ(still->width, 88);
  EXPECT_EQ(still->height, 72);
  EXPECT_FALSE(isOneColour(*still));
}

INSTANTIATE_TEST_SUITE_P(Containers, StillOf,
                         testing::Values("mp4", "mkv", "webm", "avi", "mpg", "ts", "wmv", "flv", "ogv", "h264"),
                         [](const auto& ending) { return std::string("_") + ending.param; });

TEST(Still, IsMissingWhereThereIsOnlySound) {
  EXPECT_EQ(stillOf(clips::clip("probe-tone.m4a", {"-f", "lavfi", "-i", "sine=duration=1"}), 160), std::nullopt);
}

TEST(Still, IsMissingForWhatIsNoFilm) {
  const TemporaryFolder folder;
  EXPECT_EQ(stillOf(folder.write("text.mp4", "no film"), 160), std::nullopt);
  EXPECT_EQ(stillOf(folder / "missing.mp4", 160), std::nullopt);
}

TEST(Still, IsMissingWhereTheSamplesAreCutOff) {
  const std::string whole =
      clips::clip("probe-still-header-first.mp4", {"-i", twoColours(), "-c", "copy", "-movflags", "+faststart"});
  const auto samples = static_cast<long>(contentsOf(whole).find("mdat"));
  EXPECT_EQ(stillOf(clips::truncated(whole, "probe-still-header-only.mp4", samples + 8), 160), std::nullopt);
}

TEST(Still, IsMissingAtItsDeadlineAndForNoSize) {
  EXPECT_EQ(probe::representativeStill(twoColours(), 160, 0.0), std::nullopt);
  EXPECT_EQ(stillOf(twoColours(), 0), std::nullopt);
}

/// The numbers of `turned`, and how far that turns.
struct Turn {
  int a, b, c, d;
  int degrees;
};

TEST(Rotation, IsClockwise) {
  const TemporaryFolder folder;
  for (const Turn& turn :
       {Turn{1, 0, 0, 1, 0}, Turn{0, 1, -1, 0, 90}, Turn{-1, 0, 0, -1, 180}, Turn{0, -1, 1, 0, 270}}) {
    const auto facts = probe::look(turned(folder, turn.a, turn.b, turn.c, turn.d), patience);
    EXPECT_EQ(facts.rotation, turn.degrees);
  }
}

TEST(Rotation, OfMirrorImagesIsThatOfTheUpperEdge) {
  const TemporaryFolder folder;
  for (const Turn& turn :
       {Turn{-1, 0, 0, 1, 0}, Turn{0, -1, -1, 0, 90}, Turn{1, 0, 0, -1, 180}, Turn{0, 1, 1, 0, 270}}) {
    const auto facts = probe::look(turned(folder, turn.a, turn.b, turn.c, turn.d), patience);
    EXPECT_EQ(facts.rotation, turn.degrees);
  }
}

TEST(Rotation, IsNoneWithoutAPicture) {
  EXPECT_EQ(
      probe::look(clips::clip("probe-only-sound.m4a", {"-f", "lavfi", "-i", "sine=duration=1"}), patience).rotation,
      0);
}

std::string filmWithSound(const std::string& name, const std::vector<std::string>& options) {
  std::vector<std::string> arguments = {"-i", clips::film("probe-film-with-sound.mp4", 160, 120, 6.0, 440, 2)};
  arguments.insert(arguments.end(), options.begin(), options.end());
  return clips::clip(name, arguments);
}

/// Files in which one can seek and in which one cannot, with sound before the picture and without any.
std::vector<std::string> filmsOfManyKinds() {
  return {
      twoColours(),
      covered("probe-black-beginning.mp4", "black", "lt(t,2)"),
      filmWithSound("probe-both.mp4", {"-c", "copy"}),
      filmWithSound("probe-both.mkv", {"-c", "copy"}),
      filmWithSound("probe-both.avi", {"-c", "copy"}),
      filmWithSound("probe-both.ts", {"-c", "copy"}),
      filmWithSound("probe-both.mpg", {"-c:v", "mpeg2video", "-c:a", "mp2", "-r", "25"}),
      filmWithSound("probe-both.flv", {"-c", "copy", "-ar", "44100"}),
      filmWithSound("probe-both.h264", {"-c", "copy", "-an"}),
      filmWithSound("probe-fragments.mp4", {"-c", "copy", "-movflags", "frag_keyframe+empty_moov"}),
      filmWithSound("probe-sound-first.mkv", {"-map", "0:a", "-map", "0:v", "-c", "copy"}),
      filmWithSound("probe-sound-alone.mka", {"-vn", "-c", "copy"}),
  };
}

bool isSame(const probe::FileFacts& one, const probe::FileFacts& other) {
  const auto sameTracks = [](const host::TrackFacts& left, const host::TrackFacts& right) {
    return left.identifier == right.identifier && left.kind == right.kind;
  };
  return one.media.readable == other.media.readable && one.media.soundOpens == other.media.soundOpens &&
         one.media.duration == other.media.duration && one.reason == other.reason && one.title == other.title &&
         one.hasPicture == other.hasPicture && one.rotation == other.rotation &&
         std::equal(one.media.tracks.begin(), one.media.tracks.end(), other.media.tracks.begin(),
                    other.media.tracks.end(), sameTracks);
}

TEST(LookWithStill, TellsWhatBothTellAlone) {
  for (const auto& film : filmsOfManyKinds()) {
    const auto both = probe::lookWithStill(film, 128, patience);
    const auto still = stillOf(film, 128);
    EXPECT_TRUE(isSame(both.facts, probe::look(film, patience))) << film;
    ASSERT_EQ(both.still.has_value(), still.has_value()) << film;
    EXPECT_EQ(still.has_value(), both.facts.hasPicture) << film;
    EXPECT_TRUE(!still || both.still->bgrx == still->bgrx) << film;
  }
}

TEST(LookWithStill, HasNoStillOfWhatIsNoFilm) {
  const TemporaryFolder folder;
  const auto both = probe::lookWithStill(folder.write("text.mp4", "no film"), 128, patience);
  EXPECT_FALSE(both.facts.media.readable);
  EXPECT_NE(both.facts.reason, "");
  EXPECT_FALSE(both.still);
}

}  // namespace
