#include "hosts/gstreamer/BlueWeight.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace gstreamer {

namespace {

/// Laid out as libyuv's constants for ARM are: weights of blue, red, and twice green; luma's gain, and what is taken
/// from blue, given to green and taken from red.
struct ArmConstants {
  std::array<std::uint8_t, 16> kUVCoeff{};
  std::array<std::int16_t, 8> kRGBCoeffBias{};
};

/// As libyuv has them, for the weights of a matrix in 64ths.
ArmConstants armConstants(int blue, int greenOfBlue, int greenOfRed, int red) {
  constexpr int lumaGain = 18997, lumaBias = -1160;  // 1.164 times 64 times 256, and 16 of it with rounding
  ArmConstants constants;
  constants.kUVCoeff = {static_cast<std::uint8_t>(blue), static_cast<std::uint8_t>(red),
                        static_cast<std::uint8_t>(greenOfBlue), static_cast<std::uint8_t>(greenOfRed)};
  constants.kRGBCoeffBias = {lumaGain, static_cast<std::int16_t>(blue * 128 - lumaBias),
                             static_cast<std::int16_t>((greenOfBlue + greenOfRed) * 128 + lumaBias),
                             static_cast<std::int16_t>(red * 128 - lumaBias)};
  return constants;
}

/// What ARM's rows compute: fixed point with six digits behind the point.
int blueOf(const ArmConstants& constants, int luma, int blueDifference) {
  const int gained = (luma * 0x0101 * constants.kRGBCoeffBias[0]) >> 16;
  return std::clamp((gained + blueDifference * constants.kUVCoeff[0] - constants.kRGBCoeffBias[1]) >> 6, 0, 255);
}

/// A matrix of a standard, and what its saturated blue is written as.
struct Matrix {
  int weight, luma, blueDifference;
};

}  // namespace

TEST(BlueWeight, MakesTheBlueOfEachStandardWholeOnArm) {
  const ArmConstants own = armConstants(128, 14, 34, 115);
  for (const Matrix& matrix : {Matrix{129, 41, 240}, Matrix{135, 32, 240}, Matrix{137, 29, 240}}) {
    const ArmConstants mended = withBlue(matrix.weight, own);
    EXPECT_NEAR(blueOf(mended, matrix.luma, matrix.blueDifference), 255, 1) << matrix.weight;
  }
  EXPECT_LT(blueOf(own, 29, 240), 242);
}

TEST(BlueWeight, LeavesGreyGreyAndTheOtherColoursAlone) {
  const ArmConstants own = armConstants(128, 14, 34, 115);
  const ArmConstants mended = withBlue(135, own);
  for (int luma = 16; luma <= 235; ++luma) EXPECT_EQ(blueOf(mended, luma, 128), blueOf(own, luma, 128)) << luma;
  EXPECT_TRUE(std::equal(own.kUVCoeff.begin() + 1, own.kUVCoeff.end(), mended.kUVCoeff.begin() + 1));
  EXPECT_TRUE(std::equal(own.kRGBCoeffBias.begin() + 2, own.kRGBCoeffBias.end(), mended.kRGBCoeffBias.begin() + 2));
  EXPECT_EQ(own.kRGBCoeffBias[0], mended.kRGBCoeffBias[0]);
}

}  // namespace gstreamer
