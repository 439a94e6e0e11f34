#pragma once

#include <array>
#include <cstddef>
#include <optional>

namespace gstreamer {

/// Follows the pace of a sound device, which is not quite that of the clock: told now and then how far what is heard
/// is behind its time, it says how far the picture belongs behind its own, and whether the sound is to be brought
/// back to where the film is. A device that gains or loses is followed by the picture, however far that leads in
/// hours; sound is never cut for it. Only where the device stood still, and so was heard to stop anyway, the sound
/// goes on from another place.
///
/// Knows no clock and no device. One thread. All times are in seconds.
class SoundPace {
 public:
  enum class Advice {
    Follow,  ///< the picture belongs `delay` behind its time
    Skip,    ///< the device stood still: the sound is to be started anew where the film is by now
    Renew    ///< the server has lost count of the time: only another stream has another one
  };

  /// The sound is started, to be heard at its time but for `expected`, by which the device was late before. The
  /// picture is that late from the beginning.
  void begin(double expected);
  /// What is heard is `lag` behind its time. To be told `pause` after `begin`, and then again and again.
  Advice take(double lag);
  /// How long to wait before the next lag is told.
  double pause() const;

  /// How far the picture belongs behind its time; negative where the device is ahead.
  double delay() const { return delay_; }
  /// What the device was late by when it was started; none before that is certain.
  std::optional<double> startLag() const { return startLag_; }

 private:
  /// So many lags in a row tell what is from what a server guesses.
  static constexpr std::size_t certain = 3;

  std::optional<double> agreed() const;
  Advice settle(double lag);
  Advice follow(double lag);
  Advice skip(double lag);
  void accept(double lag);
  void moveTowards(double lag);

  double delay_ = 0.0;
  /// What the device lags by as its way: its latency, and what it has lost or gained since the sound was started.
  double usual_ = 0.0;
  double drifted_ = 0.0;  ///< of that, what was lost or gained
  bool settled_ = false;
  std::optional<double> startLag_;
  /// The newest lags since the beginning, round and round.
  std::array<double, certain> newest_{};
  std::size_t told_ = 0;
  std::size_t late_ = 0, early_ = 0, absurd_ = 0;  ///< such lags in a row
  /// What the device lagged by before the newest skip, until that has been seen to help.
  std::optional<double> beforeSkip_;
};

}  // namespace gstreamer
