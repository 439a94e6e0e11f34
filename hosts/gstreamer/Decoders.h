#pragma once

#include "hosts/gstreamer/Handles.h"

#include <string>
#include <vector>

namespace gstreamer {

enum class Hardware { Preferred, Avoided };

/// The factories of decoders that take `caps`, the best first, which puts hardware decoders before software where
/// there are any.
std::vector<std::string> decodersFor(const GstCaps& caps, Hardware hardware);

/// Whether decoding is done by a chip of its own (or another program that stands for one), and may therefore fail for
/// reasons that do not lie in the media.
bool isHardwareDecoder(GstElement& element);

/// Gives a software decoder as many threads as it needs for `caps`: each further one costs time on all of them. False
/// where that changes nothing. One that has begun already goes on as it did until it is told other caps.
bool limitThreads(GstElement& decoder, const GstCaps& caps);

/// Gives a software decoder all the threads that help on this machine, for pictures that are wanted sooner than at
/// their time. False and so on likewise.
bool unlimitThreads(GstElement& decoder);

}  // namespace gstreamer
