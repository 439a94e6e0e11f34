#include "tests/host/gstreamer/NumberedPictures.h"

#include "tests/host/gstreamer/Stage.h"
#include "tests/support/Clips.h"

#include <cmath>

namespace gstreamer {

std::string NumberedPictures::clip(const std::string& name, const std::vector<std::string>& encoding) const {
  const std::string length = ":duration=" + std::to_string(static_cast<double>(count) / rate);
  std::vector<std::string> arguments = {
      "-f", "lavfi", "-i",
      "color=black:size=64x64:rate=" + std::to_string(rate) + length + ",geq=lum='16+2*N':cb=128:cr=128"};
  if (isHeard) arguments.insert(arguments.end(), {"-f", "lavfi", "-i", "sine=sample_rate=48000" + length});
  arguments.insert(arguments.end(), {"-pix_fmt", "yuv420p"});
  arguments.insert(arguments.end(), encoding.begin(), encoding.end());
  return clips::clip(name, arguments);
}

std::string numberedPictures() {
  return NumberedPictures{}.clip("engine-numbered.mp4", {"-c:v", "libx264", "-crf", "1", "-g", "45"});
}

double shadeNumber(const host::Picture& picture) {
  constexpr double shades = 255.0, lumaRange = 219.0;
  return colourAt(picture, picture.width / 2, picture.height / 2).green * lumaRange / shades / 2.0;
}

int numberOf(const host::Picture& picture) {
  return static_cast<int>(std::lround(shadeNumber(picture)));
}

}  // namespace gstreamer
