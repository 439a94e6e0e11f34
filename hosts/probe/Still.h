#pragma once

#include "hosts/probe/MediaProbe.h"
#include "hosts/probe/OpenMedia.h"

namespace probe {

/// Where the reading of a file stands when the search for its still begins.
enum class ReadingPosition { Start, Elsewhere };

/// The picture track to show: the best one that is no cover image; none where there is none.
AVStream* pictureTrack(AVFormatContext& format);

/// The still of an open file that is not protected, as `representativeStill` describes it; its reading position is
/// elsewhere then. From elsewhere, a file in which one cannot seek has none.
std::optional<Still> findStill(OpenMedia& media, int largestSide, ReadingPosition position);

}  // namespace probe
