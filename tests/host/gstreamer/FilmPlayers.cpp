#include "tests/host/gstreamer/FilmPlayers.h"

#include <cmath>

namespace gstreamer {

FilmPlayers::FilmPlayers(Stage& stage, const std::string& path)
    : stage_(stage), sound(stage.sound(path, heard)), picture(stage.picture(path, heard, 64, 64)) {}

bool FilmPlayers::run() const {
  constexpr double further = 0.2;
  const double soundWas = sound->position(), pictureWas = picture->position();
  return stage_.until(
      [&] { return sound->position() > soundWas + further && picture->position() > pictureWas + further; });
}

double FilmPlayers::apart() const {
  return leastOf([this] { return std::fabs(sound->position() - picture->position()); });
}

}  // namespace gstreamer
