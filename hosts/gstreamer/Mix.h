#pragma once

#include <gst/audio/audio.h>

#include <array>
#include <vector>

namespace gstreamer {

/// For each of the two channels that are heard, the weight of each channel of the source.
using Mix = std::array<std::vector<float>, 2>;

/// The mix of `channels` for `pan` between -1 and 1. The weights of one heard channel never add up to more than 1, so
/// that nothing clips; a channel that is to be silent has no weight at all, which gives zeros to the bit.
/// Low frequency effects are left out, as is usual when channels are mixed down (ITU-R BS.775).
Mix mixFor(const std::vector<GstAudioChannelPosition>& channels, double pan);

/// The positions that audio caps tell, one for each channel; none for what is not raw audio.
std::vector<GstAudioChannelPosition> channelsOf(const GstCaps& caps);

}  // namespace gstreamer
