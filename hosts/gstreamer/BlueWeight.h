#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>

namespace gstreamer {

/// `own`, constants of libyuv's for a matrix and the limited range, with the weight of blue that its standard asks
/// for, in 64ths: libyuv cuts it off at 2, which takes up to 16 of 255 from a saturated blue. `Constants` is
/// `libyuv::YuvConstants`, which is laid out in one way for ARM's processors and in another for all others.
template <typename Constants>
Constants withBlue(int weight, Constants own) {
  if constexpr (requires { own.kUVCoeff; }) {
    // First of the weights: blue's. Second of the biases: what is taken from blue, in which the blue difference's
    // zero, 128, is weighed.
    const int more = weight - own.kUVCoeff[0];
    own.kUVCoeff[0] = static_cast<std::uint8_t>(weight);
    own.kRGBCoeffBias[1] = static_cast<std::int16_t>(own.kRGBCoeffBias[1] + 128 * more);
  } else {
    // Red takes no part in blue: every other weight is 0.
    for (std::size_t i = 0; i < std::size(own.kUVToB); i += 2) own.kUVToB[i] = static_cast<std::uint8_t>(weight);
  }
  return own;
}

}  // namespace gstreamer
