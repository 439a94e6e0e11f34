#include "hosts/gstreamer/Mix.h"

#include <cmath>
#include <numeric>

namespace gstreamer {

namespace {

constexpr float full = 1.0F;
/// 3 dB less, as BS.775 weighs the centre and the surround channels against the front ones.
constexpr float less = 0.70710678F;

enum class Side { Left, Right, Both, Neither };

struct Place {
  Side side = Side::Both;
  float weight = full;
};

Place placeOf(GstAudioChannelPosition position) {
  switch (position) {
    case GST_AUDIO_CHANNEL_POSITION_FRONT_LEFT:
    case GST_AUDIO_CHANNEL_POSITION_FRONT_LEFT_OF_CENTER:
      return {Side::Left, full};
    case GST_AUDIO_CHANNEL_POSITION_FRONT_RIGHT:
    case GST_AUDIO_CHANNEL_POSITION_FRONT_RIGHT_OF_CENTER:
      return {Side::Right, full};
    case GST_AUDIO_CHANNEL_POSITION_REAR_LEFT:
    case GST_AUDIO_CHANNEL_POSITION_SIDE_LEFT:
    case GST_AUDIO_CHANNEL_POSITION_TOP_FRONT_LEFT:
    case GST_AUDIO_CHANNEL_POSITION_TOP_REAR_LEFT:
    case GST_AUDIO_CHANNEL_POSITION_TOP_SIDE_LEFT:
    case GST_AUDIO_CHANNEL_POSITION_WIDE_LEFT:
    case GST_AUDIO_CHANNEL_POSITION_SURROUND_LEFT:
      return {Side::Left, less};
    case GST_AUDIO_CHANNEL_POSITION_REAR_RIGHT:
    case GST_AUDIO_CHANNEL_POSITION_SIDE_RIGHT:
    case GST_AUDIO_CHANNEL_POSITION_TOP_FRONT_RIGHT:
    case GST_AUDIO_CHANNEL_POSITION_TOP_REAR_RIGHT:
    case GST_AUDIO_CHANNEL_POSITION_TOP_SIDE_RIGHT:
    case GST_AUDIO_CHANNEL_POSITION_WIDE_RIGHT:
    case GST_AUDIO_CHANNEL_POSITION_SURROUND_RIGHT:
      return {Side::Right, less};
    case GST_AUDIO_CHANNEL_POSITION_LFE1:
    case GST_AUDIO_CHANNEL_POSITION_LFE2:
      return {Side::Neither, 0.0F};
    case GST_AUDIO_CHANNEL_POSITION_MONO:
    case GST_AUDIO_CHANNEL_POSITION_NONE:
      return {Side::Both, full};
    default:
      return {Side::Both, less};
  }
}

using Weights = std::vector<float>;

/// The weights brought down to a sum of 1. They are rounded towards zero, lest the sum of the rounded ones be more.
Weights withoutClipping(Weights weights) {
  const double sum = std::accumulate(weights.begin(), weights.end(), 0.0);
  if (sum <= 1.0) return weights;
  for (float& weight : weights) {
    const double exact = weight / sum;
    weight = static_cast<float>(exact);
    if (weight > exact) weight = std::nextafter(weight, 0.0F);
  }
  return weights;
}

/// The weights of the channels that are heard on `side`.
Weights heardOn(Side side, const std::vector<GstAudioChannelPosition>& channels) {
  Weights weights;
  for (const auto channel : channels) {
    const Place place = placeOf(channel);
    const bool heard = place.side == side || place.side == Side::Both;
    weights.push_back(heard ? place.weight : 0.0F);
  }
  return withoutClipping(std::move(weights));
}

/// All channels in one. A channel in the middle is heard from both sides, and so counts twice against a side's.
Weights allOf(const std::vector<GstAudioChannelPosition>& channels) {
  Weights weights;
  for (const auto channel : channels) {
    const Place place = placeOf(channel);
    weights.push_back(place.side == Side::Both ? 2 * place.weight : place.weight);
  }
  return withoutClipping(std::move(weights));
}

Weights between(const Weights& from, const Weights& to, float share) {
  if (share >= 1.0F) return to;
  Weights weights(from.size());
  for (std::size_t i = 0; i < from.size(); ++i) weights[i] = from[i] * (1.0F - share) + to[i] * share;
  return weights;
}

}  // namespace

Mix mixFor(const std::vector<GstAudioChannelPosition>& channels, double pan) {
  const Mix own = {heardOn(Side::Left, channels), heardOn(Side::Right, channels)};
  if (pan == 0.0) return own;
  const Weights silence(channels.size(), 0.0F);
  const Weights all = allOf(channels);
  const auto share = static_cast<float>(std::fmin(1.0, std::fabs(pan)));
  if (pan < 0.0) return {between(own[0], all, share), between(own[1], silence, share)};
  return {between(own[0], silence, share), between(own[1], all, share)};
}

std::vector<GstAudioChannelPosition> channelsOf(const GstCaps& caps) {
  GstAudioInfo info;
  if (!gst_audio_info_from_caps(&info, &caps)) return {};
  std::vector<GstAudioChannelPosition> channels(static_cast<std::size_t>(GST_AUDIO_INFO_CHANNELS(&info)),
                                                GST_AUDIO_CHANNEL_POSITION_NONE);
  // Caps list positions in the order of the samples, for up to 64 channels.
  for (std::size_t i = 0; i < channels.size() && i < 64 && !GST_AUDIO_INFO_IS_UNPOSITIONED(&info); ++i) {
    channels[i] = info.position[i];
  }
  return channels;
}

}  // namespace gstreamer
