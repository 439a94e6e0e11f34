#pragma once

#include "platform/avfoundation/AVAsset.h"

#include <vector>

/// How loud one track is in a mix.
class AVMutableAudioMixInputParameters final : public NSObject {
 public:
  static Strong<AVMutableAudioMixInputParameters> audioMixInputParametersWithTrack(
      const Strong<AVAssetTrack>& track) {
    return make<AVMutableAudioMixInputParameters>(track->trackID());
  }
  explicit AVMutableAudioMixInputParameters(int trackID) : trackID_(trackID) {}

  int trackID() const { return trackID_; }
  void setTrackID(int trackID) { trackID_ = trackID; }
  /// Linear gain from `time` on. Only the start of the medium is meaningful here.
  void setVolume_atTime(float volume, CMTime /*time*/) { volume_ = volume; }
  float volume() const { return volume_; }

 private:
  int trackID_;
  float volume_ = 1;
};

/// How the sound tracks of an item are mixed; tracks that it does not name play as they are.
class AVMutableAudioMix final : public NSObject {
 public:
  using Parameters = std::vector<Strong<AVMutableAudioMixInputParameters>>;

  void setInputParameters(Parameters parameters) { parameters_ = std::move(parameters); }
  const Parameters& inputParameters() const { return parameters_; }

 private:
  Parameters parameters_;
};
