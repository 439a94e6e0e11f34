#include "hosts/gstreamer/Mix.h"

#include <gtest/gtest.h>

#include <numeric>

namespace gstreamer {

namespace {

using Channels = std::vector<GstAudioChannelPosition>;

const Channels mono = {GST_AUDIO_CHANNEL_POSITION_MONO};
const Channels stereo = {GST_AUDIO_CHANNEL_POSITION_FRONT_LEFT, GST_AUDIO_CHANNEL_POSITION_FRONT_RIGHT};
const Channels fiveOne = {GST_AUDIO_CHANNEL_POSITION_FRONT_LEFT,   GST_AUDIO_CHANNEL_POSITION_FRONT_RIGHT,
                          GST_AUDIO_CHANNEL_POSITION_FRONT_CENTER, GST_AUDIO_CHANNEL_POSITION_LFE1,
                          GST_AUDIO_CHANNEL_POSITION_REAR_LEFT,    GST_AUDIO_CHANNEL_POSITION_REAR_RIGHT};
const Channels sevenOne = {GST_AUDIO_CHANNEL_POSITION_FRONT_LEFT,   GST_AUDIO_CHANNEL_POSITION_FRONT_RIGHT,
                           GST_AUDIO_CHANNEL_POSITION_FRONT_CENTER, GST_AUDIO_CHANNEL_POSITION_LFE1,
                           GST_AUDIO_CHANNEL_POSITION_REAR_LEFT,    GST_AUDIO_CHANNEL_POSITION_REAR_RIGHT,
                           GST_AUDIO_CHANNEL_POSITION_SIDE_LEFT,    GST_AUDIO_CHANNEL_POSITION_SIDE_RIGHT};

double sum(const std::vector<float>& weights) {
  return std::accumulate(weights.begin(), weights.end(), 0.0);
}

}  // namespace

TEST(Mix, StereoIsHalvedIntoOneChannelAndTheOtherHasNoWeight) {
  const Mix left = mixFor(stereo, -1.0);
  EXPECT_EQ(left[0], (std::vector<float>{0.5F, 0.5F}));
  EXPECT_EQ(left[1], (std::vector<float>{0.0F, 0.0F}));
  const Mix right = mixFor(stereo, 1.0);
  EXPECT_EQ(right[0], (std::vector<float>{0.0F, 0.0F}));
  EXPECT_EQ(right[1], (std::vector<float>{0.5F, 0.5F}));
}

TEST(Mix, MonoKeepsItsLoudness) {
  EXPECT_EQ(mixFor(mono, -1.0)[0], (std::vector<float>{1.0F}));
  EXPECT_EQ(mixFor(mono, 0.0)[0], (std::vector<float>{1.0F}));
  EXPECT_EQ(mixFor(mono, 0.0)[1], (std::vector<float>{1.0F}));
}

TEST(Mix, InTheMiddleStereoStaysAsItIs) {
  const Mix mix = mixFor(stereo, 0.0);
  EXPECT_EQ(mix[0], (std::vector<float>{1.0F, 0.0F}));
  EXPECT_EQ(mix[1], (std::vector<float>{0.0F, 1.0F}));
}

TEST(Mix, NothingCanClipWhateverTheLayoutAndPan) {
  for (const Channels& channels : {mono, stereo, fiveOne, sevenOne}) {
    for (const double pan : {-1.0, -0.3, 0.0, 0.5, 1.0}) {
      const Mix mix = mixFor(channels, pan);
      EXPECT_LE(sum(mix[0]), 1.0 + 1e-7) << channels.size() << " channels at " << pan;
      EXPECT_LE(sum(mix[1]), 1.0 + 1e-7) << channels.size() << " channels at " << pan;
    }
  }
}

TEST(Mix, LowFrequencyEffectsAreLeftOutAndEverythingElseIsHeard) {
  for (const Channels& channels : {fiveOne, sevenOne}) {
    const auto weights = mixFor(channels, -1.0)[0];
    for (std::size_t i = 0; i < channels.size(); ++i) {
      if (channels[i] == GST_AUDIO_CHANNEL_POSITION_LFE1) {
        EXPECT_EQ(weights[i], 0.0F);
      } else {
        EXPECT_GT(weights[i], 0.0F);
      }
    }
  }
}

TEST(Mix, ChannelsWithoutAPlaceAllCountTheSame) {
  const Channels unknown(4, GST_AUDIO_CHANNEL_POSITION_NONE);
  EXPECT_EQ(mixFor(unknown, 1.0)[1], (std::vector<float>{0.25F, 0.25F, 0.25F, 0.25F}));
}

}  // namespace gstreamer
