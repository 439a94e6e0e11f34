#pragma once

#include <optional>
#include <string>

namespace desktop {

/// Who hears a sound device.
enum class Audience {
  Wearer,  ///< earphones of any kind
  Room,    ///< loudspeakers, a television, a car
  Unknown
};

/// The device that sound comes out of, in the state in which it is.
struct SoundOutput {
  std::string device;  ///< the sound server's name of it
  Audience audience = Audience::Unknown;
  int channels = 2;
  bool operator==(const SoundOutput&) const = default;
};

/// How one output gave way to the next.
enum class Passing {
  Changed,   ///< it is still there, or somebody chose another one
  Vanished,  ///< its device was taken away
  Lost       ///< the sound server ended, or cannot be reached; what was before it says nothing
};

/// Decides, from one output of sound to the next, what follows for the films.
class SoundOutputRule {
 public:
  struct Consequences {
    bool pausesFilms = false;
    bool tellsThatItIsMono = false;
  };

  /// Sound comes out of `output` from now on, or out of nothing. Films are paused where they would go on through
  /// something that nobody chose for them: out of earphones into the room, or from a device that was taken away to
  /// whatever comes next. Each output of one channel is told once, until another one took its place.
  Consequences next(const std::optional<SoundOutput>& output, Passing passing);

 private:
  std::optional<SoundOutput> last_;  ///< that there was
  bool lastVanished_ = false;
};

}  // namespace desktop
