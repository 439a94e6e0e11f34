#pragma once

#include "hosts/gstreamer/Handles.h"

namespace gstreamer {

/// A sink whose device takes samples at the clock's pace and is heard `latency` seconds after it took them, as
/// earphones without a wire are. It keeps its own time, as that of the sound server does.
Element makeLateDevice(double latency);

}  // namespace gstreamer
