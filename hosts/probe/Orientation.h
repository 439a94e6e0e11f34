#pragma once

#include "hosts/probe/Handles.h"
#include "hosts/probe/MediaProbe.h"

namespace probe {

using host::Orientation;

/// From the display matrix of the frame, or else of the track (ISO/IEC 14496-12, 8.3.2). A matrix that is no
/// quarter turn counts as the nearest one.
Orientation orientationOf(const AVStream& track, const AVFrame& frame);
/// From the display matrix of the track alone.
Orientation orientationOf(const AVStream& track);

/// The turn in it: 0, 90, 180 or 270. A mirror image counts by where the upper edge of the stored picture belongs.
int degreesClockwise(Orientation orientation);

/// `stored`, turned.
Still upright(const Still& stored, Orientation orientation);

}  // namespace probe
