#include "tests/host/gstreamer/Stage.h"

#include <gtest/gtest.h>

#include <ostream>
#include <stdexcept>

namespace gstreamer {

namespace {

/// Of 255: eight bits of luma and of each colour difference do not hold more.
constexpr int tolerance = 3;

/// A film without losses in encoding, and what ffmpeg is told to write it.
struct Colouring {
  std::string name;
  int width, height;
  std::string matrix, range, pixels;
  std::vector<std::string> marks;
  std::vector<std::string> encoder = {"-c:v", "libx264", "-preset", "ultrafast", "-qp", "0"};
};

void PrintTo(const Colouring& colouring, std::ostream* where) {
  *where << colouring.matrix << ", " << colouring.range << " range, " << colouring.pixels;
}

const std::vector<Colouring> colourings = {
    {"Bt601", 160, 120, "bt601", "limited", "yuv420p", {"-colorspace", "smpte170m"}},
    {"Bt709", 160, 120, "bt709", "limited", "yuv420p", {"-colorspace", "bt709"}},
    {"Bt601Full", 160, 120, "bt601", "full", "yuvj420p", {"-colorspace", "smpte170m", "-color_range", "pc"}},
    {"Bt709Full", 160, 120, "bt709", "full", "yuvj420p", {"-colorspace", "bt709", "-color_range", "pc"}},
    {"Bt2020", 160, 120, "bt2020", "limited", "yuv420p", {"-colorspace", "bt2020nc"}},
    {"SmallUnmarked", 160, 120, "bt601", "limited", "yuv420p", {}},
    {"LargeUnmarked", 1280, 720, "bt709", "limited", "yuv420p", {}},
    {"HugeUnmarked", 3840, 2160, "bt709", "limited", "yuv420p", {}},
    {"Of422", 160, 120, "bt709", "limited", "yuv422p", {"-colorspace", "bt709"}},
    {"Of444", 160, 120, "bt709", "limited", "yuv444p", {"-colorspace", "bt709"}},
    {"TenBits", 160, 120, "bt709", "limited", "yuv420p10le", {"-colorspace", "bt709"}},
    {"TenBits422", 160, 120, "bt709", "limited", "yuv422p10le", {"-colorspace", "bt709"}},
    {"TenBits444", 160, 120, "bt709", "limited", "yuv444p10le", {"-colorspace", "bt709"}},
    {"Rgb", 160, 120, "gbr", "full", "gbrp", {}, {"-c:v", "libx264rgb", "-qp", "0", "-pix_fmt", "rgb24"}},
    {"RgbOfAv1",
     160,
     120,
     "gbr",
     "full",
     "gbrp",
     {},
     {"-c:v", "libaom-av1", "-usage", "realtime", "-cpu-used", "8", "-crf", "1"}},
};

std::string pathOf(const Colouring& colouring) {
  const std::string size = std::to_string(colouring.width) + "x" + std::to_string(colouring.height);
  const std::string quarter = ",drawbox=w=iw/2:h=ih/2:t=fill";
  std::string filters = "color=red:size=" + size + ":rate=10:duration=0.5,format=gbrp" + quarter +
                        ":x=iw/2:y=0:color=lime" + quarter + ":x=0:y=ih/2:color=blue" + quarter +
                        ":x=iw/2:y=ih/2:color=0x808080";
  if (colouring.matrix != "gbr")
    filters += ",scale=out_color_matrix=" + colouring.matrix + ":out_range=" + colouring.range +
               ",format=" + colouring.pixels;
  std::vector<std::string> arguments = {"-f", "lavfi", "-i", filters, "-pix_fmt", colouring.pixels};
  arguments.insert(arguments.end(), colouring.encoder.begin(), colouring.encoder.end());
  arguments.insert(arguments.end(), colouring.marks.begin(), colouring.marks.end());
  return clips::clip("colours-" + colouring.name + ".mkv", arguments);
}

std::shared_ptr<const host::Picture> pictureOf(const std::string& path) {
  Stage stage;
  Heard heard;
  auto player = stage.picture(path, heard, 160, 120);
  stage.engine().commit();
  const auto stream = player->pictures();
  if (!stage.until([&] { return stream->newest() != nullptr; })) throw std::runtime_error("no picture came");
  return stream->newest();
}

void expectColour(const Colour& seen, int red, int green, int blue) {
  EXPECT_NEAR(seen.red, red, tolerance);
  EXPECT_NEAR(seen.green, green, tolerance);
  EXPECT_NEAR(seen.blue, blue, tolerance);
}

class FormatColours : public testing::TestWithParam<Colouring> {};

}  // namespace

TEST_P(FormatColours, AreTheOnesThatWereMeant) {
  const auto picture = pictureOf(pathOf(GetParam()));
  const int left = picture->width / 4, right = 3 * left, above = picture->height / 4, below = 3 * above;
  expectColour(colourAt(*picture, left, above), 255, 0, 0);
  expectColour(colourAt(*picture, right, above), 0, 255, 0);
  expectColour(colourAt(*picture, left, below), 0, 0, 255);
  expectColour(colourAt(*picture, right, below), 128, 128, 128);
}

INSTANTIATE_TEST_SUITE_P(Film, FormatColours, testing::ValuesIn(colourings),
                         [](const auto& film) { return film.param.name; });

}  // namespace gstreamer
