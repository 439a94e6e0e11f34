#include "tests/support/HighRangeClips.h"

#include "tests/support/Clips.h"

#include <vector>

namespace clips {

namespace {

/// One band of a picture: luma and colour differences with 10 bits, limited range, of BT.2020.
struct Code {
  int luma, blue, red;
};
using Codes = std::vector<Code>;

const Codes quantized = {{315, 512, 512}, {424, 512, 512}, {359, 469, 586}, {573, 512, 512},
                         {636, 512, 512}, {723, 512, 512}, {855, 512, 512}};
const Codes logGamma = {{271, 512, 512}, {446, 512, 512}, {344, 439, 666},
                        {721, 512, 512}, {816, 512, 512}, {940, 512, 512}};

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
  return clip(name, {"-f",
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

}  // namespace

std::string highRangeFilm(Light light) {
  return light == Light::Quantized ? film("range-quantized.mp4", "smpte2084", quantized)
                                   : film("range-log.mp4", "arib-std-b67", logGamma);
}

std::size_t bandsOf(Light light) {
  return light == Light::Quantized ? quantized.size() : logGamma.size();
}

}  // namespace clips
