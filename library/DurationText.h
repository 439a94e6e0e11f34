#pragma once

#include <cstdint>
#include <string>

/// Hours, minutes and seconds of a whole number of seconds, each at least two digits; hours are not wrapped:
/// 3725 is "01:02:05", 360000 is "100:00:00".
std::string durationText(std::int64_t seconds);
