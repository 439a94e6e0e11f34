#pragma once

#include "platform/avfoundation/AVPlayer.h"
#include "platform/uikit/FilmControls.h"

#include <QObject>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace desktop {

/// What there is to know of a loaded film. Between two of them the film plays on by itself.
struct FilmState {
  using Clock = std::chrono::steady_clock;

  std::uint64_t load = 0;  ///< another number for each film that is loaded into the same place
  std::string url;
  double length = 0;  ///< in seconds; 0 where it is not known
  double volume = 1;  ///< as its control stands, from 0 to 1
  bool isPlaying = false;
  std::uint64_t jumps = 0;  ///< how many times it has gone elsewhere than by playing on
  double position = 0;      ///< in seconds, at the time `at`
  Clock::time_point at;

  /// Where the film is at `time`, in seconds, as far as can be told from this state.
  double positionAt(Clock::time_point time) const;
};

/// One of the films, as whoever is not at the screen sees and works it: the desktop, or a rule of the system's.
///
/// Everything that is done to a film is what its own control does when a person presses or moves it, whether the
/// control is in sight or not; nothing is done where no film is loaded. Main thread; all operations but the questions
/// inside a turn.
class Film final : public QObject {
  Q_OBJECT

 public:
  explicit Film(FilmControls controls);

  long number() const { return controls_.number; }
  /// What assistive technology calls it: "Film 1".
  const std::string& name() const { return controls_.view->accessibilityLabel(); }
  /// At the end of the last turn; none where no film is loaded.
  const std::optional<FilmState>& state() const { return state_; }
  bool isLoaded() const { return player() != nullptr; }
  bool isPlaying() const;

  void play();
  void pause();
  void playOrPause();
  void close();
  /// To whole seconds inside the film, because that is how its control moves. At its end a film that plays is over.
  void moveTo(double seconds);
  /// The same, counted from where the film is.
  void moveBy(double seconds);
  /// From 0 to 1, held inside that range; what is not a number is passed over.
  void setVolume(double volume);

  /// The turn has ended: looks for what has changed.
  void look();

 signals:
  /// Its state is another than the one told last. From within `look`.
  void changed();
  /// A film was loaded, or one of its controls was worked, by whomever.
  void used();

 private:
  Strong<AVPlayer> player() const;
  void noteUse(UIControl& control, UIControlEvents events);
  FilmState read(const AVPlayer& player) const;

  FilmControls controls_;
  Strong<NSObject> listener_;  ///< the target of what the controls tell, as long as this film is there
  Weak<AVPlayer> loaded_;
  std::uint64_t loads_ = 0;
  std::uint64_t jumps_ = 0;
  bool wasMoved_ = false;  ///< by its position's control, since the last look
  std::optional<FilmState> state_;
};

}  // namespace desktop
