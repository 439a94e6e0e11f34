#pragma once

#include "platform/foundation/Values.h"
#include "platform/host/MediaEngine.h"

#include <memory>

/// Plays the sound of one medium. Main thread only.
///
/// Its time line is the whole length of the medium: it counts as playing until the film's end even where the sound
/// track is shorter, or where there is none.
class AVAudioPlayer final : public NSObject {
 public:
  /// None, with the reason in `error` where that is not null, for what cannot be read or whose sound cannot be
  /// decoded. A film without a sound track opens, and plays silence.
  static Strong<AVAudioPlayer> initWithContentsOfURL_error(const Strong<NSURL>& url, Strong<NSError>* error);
  AVAudioPlayer() = default;

  void prepareToPlay();
  /// -1 is full left, +1 full right: all of the source's channels on that side, exact zeros on the other;
  /// held inside that range.
  void setPan(float pan);
  float pan() const { return pan_; }
  /// Linear gain from 0 to 1, 1 at first; held inside that range.
  void setVolume(float volume);
  float volume() const { return volume_; }
  /// After the end it starts over.
  void play();
  /// Stays prepared.
  void pause();
  /// Gives the sound device back and keeps the position.
  void stop();
  /// True at once after `play`, until `pause`, `stop` or the end.
  bool isPlaying() const { return playing_; }
  double currentTime() const;
  void setCurrentTime(double seconds);

 private:
  void open(const std::string& url);

  std::unique_ptr<host::SoundPlayer> engine_;
  float pan_ = 0;
  float volume_ = 1;
  bool playing_ = false;
};
