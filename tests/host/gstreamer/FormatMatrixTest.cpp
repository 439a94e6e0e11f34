#include "tests/host/gstreamer/FormatClips.h"
#include "tests/host/gstreamer/Stage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>

namespace gstreamer {

namespace {

/// Of 255: what the encoders make of the test picture's flat colours, and the conversion on top.
constexpr int colourTolerance = 10;
constexpr float audible = 0.1F;

/// The stored picture's corners: above and below, left and right.
constexpr Colour corners[2][2] = {{{0xC8, 0x32, 0x32}, {0x32, 0xC8, 0x32}}, {{0x32, 0x32, 0xC8}, {0xC8, 0xC8, 0x32}}};

/// The colour that belongs into the corner that lies at `across` and `down`, each -1 or 1, of the upright picture.
Colour cornerShownAt(int across, int down, const Turn& turn) {
  const int storedAcross = turn.a * across + turn.b * down;
  const int storedDown = turn.c * across + turn.d * down;
  return corners[storedDown > 0 ? 1 : 0][storedAcross > 0 ? 1 : 0];
}

bool isNear(const Colour& one, const Colour& other) {
  return std::max({std::abs(one.red - other.red), std::abs(one.green - other.green),
                   std::abs(one.blue - other.blue)}) <= colourTolerance;
}

void expectCorners(const host::Picture& picture, const Turn& turn) {
  for (const int down : {-1, 1}) {
    for (const int across : {-1, 1}) {
      const Colour seen =
          colourAt(picture, picture.width * (4 + 3 * across) / 8, picture.height * (4 + 3 * down) / 8);
      const Colour meant = cornerShownAt(across, down, turn);
      EXPECT_TRUE(isNear(seen, meant)) << "at " << across << ", " << down << " there is " << seen.red << " "
                                       << seen.green << " " << seen.blue << " instead of " << meant.red << " "
                                       << meant.green << " " << meant.blue;
    }
  }
}

int centreOf(const host::Picture& picture) {
  return colourAt(picture, picture.width / 2, picture.height / 2).green;
}

class FormatMatrix : public testing::TestWithParam<FormatClip> {};

}  // namespace

TEST_P(FormatMatrix, IsShownHeardSoughtAndPlayedToItsEnd) {
  const FormatClip& clip = GetParam();
  const std::string path = pathOf(clip);
  Stage stage;

  const auto facts = stage.engine().facts(clips::urlOf(path));
  ASSERT_TRUE(facts.readable);
  EXPECT_TRUE(facts.soundOpens);
  EXPECT_FALSE(facts.hasProtectedContent);
  const double length = facts.duration;
  EXPECT_NEAR(length, clip.length(), 0.25);

  gst_init(nullptr, nullptr);
  if (clip.container == "Windows Media" && !makeElement("asfdemux"))
    GTEST_SKIP() << "gstreamer1.0-plugins-ugly, which takes Windows Media apart, is not installed";

  Heard seen, heard;
  constexpr int box = 240;
  auto picture = stage.picture(path, seen, box, box);
  auto sound = stage.sound(path, heard);
  sound->setPan(-1.0);
  sound->prepare();
  stage.engine().commit();
  const auto stream = picture->pictures();
  ASSERT_TRUE(stage.until([&] { return stream->newest() || seen.failed; }));
  ASSERT_TRUE(stream->newest());
  double width = clip.width * clip.pixelShape, height = clip.height;
  if (clip.turn.lies()) std::swap(width, height);
  EXPECT_NEAR(stream->newest()->width, box * std::min(1.0, width / height), 3);
  EXPECT_NEAR(stream->newest()->height, box * std::min(1.0, height / width), 3);
  expectCorners(*stream->newest(), clip.turn);
  EXPECT_LT(centreOf(*stream->newest()), 60);

  picture->play();
  sound->play();
  stage.engine().commit();
  EXPECT_TRUE(stage.until([&] {
    return (clip.sound.empty() || peak(stage.recording().sound().left) > audible) && picture->position() > 0.3;
  }));

  const double target = 0.75 * length;
  picture->seek(target);
  sound->seek(target);
  stage.engine().commit();
  EXPECT_TRUE(stage.until([&] { return centreOf(*stream->newest()) > 195; }));
  expectCorners(*stream->newest(), clip.turn);
  EXPECT_TRUE(stage.until([&] { return seen.ended + seen.failed > 0 && heard.ended + heard.failed > 0; }));
  EXPECT_EQ(seen.ended, 1);
  EXPECT_EQ(heard.ended, 1);
  EXPECT_EQ(seen.failed + heard.failed, 0);
  EXPECT_NEAR(picture->position(), length, 1e-6);

  EXPECT_TRUE(isExactlyZero(stage.recording().sound().right));
  EXPECT_TRUE(!clip.sound.empty() || isExactlyZero(stage.recording().sound().left));
  picture.reset();
  sound.reset();
  EXPECT_FALSE(stream->newest());
  stage.closeEngine();
  EXPECT_EQ(stage.recording().openDevices(), 0);
}

INSTANTIATE_TEST_SUITE_P(Film, FormatMatrix, testing::ValuesIn(formatClips()),
                         [](const auto& film) { return film.param.name; });

TEST(FormatList, OfTheReadmeIsWhatTheMatrixTests) {
  std::ifstream file(QUILLOP_README);
  const std::string readme(std::istreambuf_iterator<char>(file), {});
  EXPECT_NE(readme.find(readmeTable()), std::string::npos) << "It should hold this:\n" << readmeTable();
}

}  // namespace gstreamer
