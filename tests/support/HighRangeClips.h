#pragma once

#include <cstddef>
#include <string>

namespace clips {

/// How a film of high dynamic range writes light.
enum class Light { Quantized, LogGamma };

/// A film of upright bands, each 32 x 64 pixels, with 10 bits and BT.2020's colours. An ordinary screen shows the
/// first three as 60, 117 and 180, 40, 40, where its white is 203 cd/m2 and its gamma 2.2; the rest is white light of
/// 203, 400 and 1000 cd/m2, and of 4000 where that can be written.
std::string highRangeFilm(Light light);
std::size_t bandsOf(Light light);

}  // namespace clips
