#pragma once

#include "tests/host/gstreamer/Stage.h"

#include <memory>
#include <string>

namespace gstreamer {

/// The two players of one film, as an app makes them. What they are told takes effect when the engine commits.
class FilmPlayers {
 public:
  /// With a box of 64 x 64.
  FilmPlayers(Stage& stage, const std::string& path);

  void play() const { sound->play(), picture->play(); }
  void pause() const { sound->pause(), picture->pause(); }
  void seek(double seconds) const { picture->seek(seconds), sound->seek(seconds); }
  /// Whether both come further.
  bool run() const;
  /// How far their positions are from each other, in seconds.
  double apart() const;

 private:
  Stage& stage_;

 public:
  Heard heard;
  const std::unique_ptr<host::SoundPlayer> sound;
  const std::unique_ptr<host::PicturePlayer> picture;
};

}  // namespace gstreamer
