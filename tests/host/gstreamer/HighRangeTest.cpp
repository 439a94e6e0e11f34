#include "tests/host/gstreamer/Stage.h"
#include "tests/support/HighRangeClips.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace gstreamer {

namespace {

/// The colour differences hold ten bits, of which the conversion takes eight; they weigh double in blue.
constexpr int tolerance = 6;

std::vector<Colour> shown(clips::Light light) {
  const auto bands = clips::bandsOf(light);
  Stage stage;
  Heard heard;
  const int width = 32 * static_cast<int>(bands);
  auto player = stage.picture(clips::highRangeFilm(light), heard, width, 64);
  stage.engine().commit();
  const auto stream = player->pictures();
  if (!stage.until([&] { return stream->newest() != nullptr; })) throw std::runtime_error("no picture came");
  std::vector<Colour> colours;
  for (int band = 0; band < static_cast<int>(bands); ++band)
    colours.push_back(colourAt(*stream->newest(), 32 * band + 16, 32));
  return colours;
}

void expectColour(const Colour& seen, int red, int green, int blue) {
  EXPECT_NEAR(seen.red, red, tolerance);
  EXPECT_NEAR(seen.green, green, tolerance);
  EXPECT_NEAR(seen.blue, blue, tolerance);
}

void expectOnTheScreen(const std::vector<Colour>& seen) {
  expectColour(seen[0], 60, 60, 60);
  expectColour(seen[1], 117, 117, 117);
  expectColour(seen[2], 180, 40, 40);
  EXPECT_GT(seen[3].green, 215);
  for (std::size_t brighter = 4; brighter < seen.size(); ++brighter) {
    EXPECT_GT(seen[brighter].green, seen[brighter - 1].green);
    EXPECT_NEAR(seen[brighter].red, seen[brighter].blue, tolerance);
  }
}

}  // namespace

TEST(HighRange, OfThePerceptualQuantizerIsBroughtToTheScreen) {
  expectOnTheScreen(shown(clips::Light::Quantized));
}

TEST(HighRange, OfHybridLogGammaIsBroughtToTheScreen) {
  expectOnTheScreen(shown(clips::Light::LogGamma));
}

}  // namespace gstreamer
