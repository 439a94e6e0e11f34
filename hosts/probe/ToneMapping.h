#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace probe {

/// How a film of high dynamic range writes light (Rec. ITU-R BT.2100).
enum class HighRange { PerceptualQuantizer, HybridLogGamma };

/// Brings colours of BT.2100 to an ordinary screen. Light up to six tenths of the reference white (203 cd/m2, as
/// BT.2408 has it) is shown as it was meant; above that ever more light makes ever less difference, so that
/// highlights keep their shape up to the brightest that can be written.
class ToneMapping {
 public:
  explicit ToneMapping(HighRange range);

  /// `width` pixels of 32 bits, of which the lower 30 hold red, green and blue with 10 bits each in this order, into
  /// as many of blue, green, red and 255. `from` and `to` may be the same.
  void mapRow(const std::uint32_t* from, std::uint8_t* to, int width) const;

 private:
  float gainFor(float luminance) const;
  std::uint8_t shadeOf(float light) const;

  HighRange range_;
  /// Of each code the light, where 1 is the reference white; with hybrid log gamma the light of the scene.
  std::array<float, 1024> light_{};
  /// What a screen of 1000 cd/m2 makes of the scene's light, by the square root of its luminance.
  std::array<float, 1024> gains_{};
  /// What goes to the screen, by the square root of the light.
  std::vector<std::uint8_t> shades_;
};

}  // namespace probe
