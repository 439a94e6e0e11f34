#include "hosts/desktop/Films.h"

#include "platform/foundation/RunLoop.h"

#include <QSignalBlocker>

#include <algorithm>
#include <utility>

namespace desktop {

Films::Films(const std::vector<FilmControls>& controls) {
  for (const FilmControls& each : controls) {
    auto& film = *films_.emplace_back(std::make_unique<Film>(each));
    byUse_.push_back(&film);
    connect(&film, &Film::used, this, [this, &film] { noteUse(film); });
  }
  RunLoop::main().setTurnEnded([this] { look(); });
}

Films::~Films() {
  RunLoop::main().setTurnEnded(nullptr);
}

Film* Films::lastUsed() const {
  const auto found = std::find_if(byUse_.begin(), byUse_.end(), [](const Film* film) { return film->isLoaded(); });
  return found == byUse_.end() ? nullptr : *found;
}

void Films::pause() {
  for (const auto& film : films_) {
    const QSignalBlocker nobodyUsesIt(*film);
    film->pause();
  }
}

void Films::noteUse(Film& film) {
  const auto place = std::find(byUse_.begin(), byUse_.end(), &film);
  std::rotate(byUse_.begin(), place, place + 1);
}

void Films::look() {
  for (const auto& film : films_) film->look();
  const bool isPlaying =
      std::any_of(films_.begin(), films_.end(), [](const auto& film) { return film->isPlaying(); });
  if (isPlaying != std::exchange(isPlaying_, isPlaying)) emit playingChanged(isPlaying);
}

}  // namespace desktop
