#include "hosts/probe/ToneMapping.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace probe {

namespace {

constexpr double referenceWhite = 203.0;         // cd/m2
constexpr double brightestQuantized = 10'000.0;  // cd/m2
constexpr double brightestScreen = 1'000.0;      // cd/m2, which hybrid log gamma counts on
constexpr float mostLight = static_cast<float>(brightestQuantized / referenceWhite);
constexpr double screenGamma = 2.2;
constexpr int shades = 4096;
constexpr int levels = 1024;

/// Of 1, cd/m2 divided by 10000.
double dequantized(double code) {
  constexpr double m1 = 2610.0 / 16384.0, m2 = 2523.0 / 4096.0 * 128.0;
  constexpr double c1 = 3424.0 / 4096.0, c2 = 2413.0 / 4096.0 * 32.0, c3 = 2392.0 / 4096.0 * 32.0;
  const double power = std::pow(code, 1.0 / m2);
  return std::pow(std::max(power - c1, 0.0) / (c2 - c3 * power), 1.0 / m1);
}

/// Light of the scene, of 1.
double withoutLogGamma(double code) {
  constexpr double a = 0.17883277, b = 0.28466892, c = 0.55991073;
  return code <= 0.5 ? code * code / 3.0 : (std::exp((code - c) / a) + b) / 12.0;
}

/// Begins with the slope of what lies below the knee, and reaches 1 never.
double rolledOff(double light) {
  constexpr double knee = 0.6, room = 1.0 - knee;
  if (light <= knee) return light;
  const double over = (light - knee) / room;
  return knee + room * over / (1.0 + over);
}

}  // namespace

ToneMapping::ToneMapping(HighRange range) : range_(range), shades_(shades) {
  constexpr double systemGamma = 1.2;
  for (std::size_t i = 0; i < levels; ++i) {
    const double level = static_cast<double>(i) / (levels - 1);
    light_[i] = static_cast<float>(range == HighRange::HybridLogGamma ? withoutLogGamma(level)
                                                                      : dequantized(level) * mostLight);
    gains_[i] = static_cast<float>(std::pow(level * level, systemGamma - 1.0) * brightestScreen / referenceWhite);
  }
  for (std::size_t i = 0; i < shades; ++i) {
    const double root = static_cast<double>(i) / (shades - 1);
    const double shown = std::pow(rolledOff(root * root * mostLight), 1.0 / screenGamma);
    shades_[i] = static_cast<std::uint8_t>(std::lround(255.0 * shown));
  }
}

float ToneMapping::gainFor(float luminance) const {
  if (range_ == HighRange::PerceptualQuantizer) return 1.0F;
  return gains_[static_cast<std::size_t>(std::sqrt(std::min(luminance, 1.0F)) * (levels - 1))];
}

std::uint8_t ToneMapping::shadeOf(float light) const {
  // Colours that the screen does not have come out as less than nothing in one component.
  const float root = std::sqrt(std::clamp(light / mostLight, 0.0F, 1.0F));
  return shades_[static_cast<std::size_t>(root * (shades - 1) + 0.5F)];
}

void ToneMapping::mapRow(const std::uint32_t* from, std::uint8_t* to, int width) const {
  constexpr std::uint32_t code = levels - 1;
  for (int i = 0; i < width; ++i, to += 4) {
    const std::uint32_t pixel = from[i];
    float red = light_[pixel >> 20U & code], green = light_[pixel >> 10U & code], blue = light_[pixel & code];
    const float gain = gainFor(0.2627F * red + 0.6780F * green + 0.0593F * blue);
    red *= gain, green *= gain, blue *= gain;
    // From the primaries of BT.2020 to those of BT.709 (Rec. ITU-R BT.2087).
    to[0] = shadeOf(-0.0182F * red - 0.1006F * green + 1.1187F * blue);
    to[1] = shadeOf(-0.1246F * red + 1.1329F * green - 0.0083F * blue);
    to[2] = shadeOf(1.6605F * red - 0.5876F * green - 0.0728F * blue);
    to[3] = 255;
  }
}

}  // namespace probe
