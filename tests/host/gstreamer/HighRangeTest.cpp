#include "tests/host/gstreamer/Stage.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace gstreamer {

namespace {

/// One band of a picture: luma and colour differences with 10 bits, limited range, of BT.2020.
struct Code {
  int luma, blue, red;
};
using Codes = std::vector<Code>;

// The codes of what an ordinary screen shows as 60, 117 and 180, 40, 40, where its white is 203 cd/m2 and its gamma
// 2.2; then of white light of 203, 400 and 1000 cd/m2, and of 4000 where that can be written.
const Codes quantized = {{315, 512, 512}, {424, 512, 512}, {359, 469, 586}, {573, 512, 512},
                         {636, 512, 512}, {723, 512, 512}, {855, 512, 512}};
const Codes logGamma = {{271, 512, 512}, {446, 512, 512}, {344, 439, 666},
                        {721, 512, 512}, {816, 512, 512}, {940, 512, 512}};

/// The colour differences hold ten bits, of which the conversion takes eight; they weigh double in blue.
constexpr int tolerance = 6;

std::string bands(const Codes& codes, int Code::*component) {
  std::string expression = std::to_string(codes.back().*component);
  for (std::size_t i = codes.size() - 1; i-- > 0;) {
    expression = "if(lt(X,W*" + std::to_string(i + 1) + "/" + std::to_string(codes.size()) + ")," +
                 std::to_string(codes[i].*component) + "," + expression + ")";
  }
  return "'" + expression + "'";
}

std::string film(const std::string& name, const std::string& transfer, const Codes& codes) {
  const std::string size = std::to_string(32 * codes.size()) + "x64";
  return clips::clip(name, {"-f",
                            "lavfi",
                            "-i",
                            "color=black:size=" + size +
                                ":rate=10:duration=0.5,format=yuv420p10le,geq=lum=" + bands(codes, &Code::luma) +
                                ":cb=" + bands(codes, &Code::blue) + ":cr=" + bands(codes, &Code::red),
                            "-c:v",
                            "libx265",
                            "-preset",
                            "ultrafast",
                            "-pix_fmt",
                            "yuv420p10le",
                            "-x265-params",
                            "log-level=error:crf=4:colorprim=bt2020:colormatrix=bt2020nc:transfer=" + transfer,
                            "-colorspace",
                            "bt2020nc",
                            "-color_primaries",
                            "bt2020",
                            "-color_trc",
                            transfer,
                            "-color_range",
                            "tv"});
}

std::vector<Colour> shown(const std::string& path, std::size_t bands) {
  Stage stage;
  Heard heard;
  const int width = 32 * static_cast<int>(bands);
  auto player = stage.picture(path, heard, width, 64);
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
  expectOnTheScreen(shown(film("range-quantized.mp4", "smpte2084", quantized), quantized.size()));
}

TEST(HighRange, OfHybridLogGammaIsBroughtToTheScreen) {
  expectOnTheScreen(shown(film("range-log.mp4", "arib-std-b67", logGamma), logGamma.size()));
}

}  // namespace gstreamer
