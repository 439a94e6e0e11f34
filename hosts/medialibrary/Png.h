#pragma once

#include "hosts/probe/MediaProbe.h"

#include <map>
#include <optional>
#include <string>

namespace medialibrary {

// PNG files (ISO/IEC 15948) in memory, as far as thumbnails need them. Any thread.

/// Texts by their keywords, Latin-1 or UTF-8 as they are stored.
using PngTexts = std::map<std::string, std::string>;

/// The texts of the file `png`, compressed ones included; what is damaged is left out.
PngTexts textsOfPng(const std::string& png);

/// The picture of the file `png`, transparent places black; none when it is damaged, or wider or higher than
/// `largestSide` pixels.
std::optional<probe::Still> pictureOfPng(const std::string& png, int largestSide);

/// A PNG file of `still` with `texts`, whose values are Latin-1; empty when that fails.
std::string pngOf(const probe::Still& still, const PngTexts& texts);

}  // namespace medialibrary
