#include "hosts/desktop/PlayingFilms.h"

#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIViewController.h"
#include "platform/uikit/UIWindow.h"

namespace desktop {

namespace {

/// The control offers what it would do, so it offers to pause a film that plays.
bool plays(const FilmControls& film) {
  const auto image = film.playPause ? film.playPause->imageForState(UIControlState::Normal) : nullptr;
  return image && image->name() == "pause";
}

}  // namespace

void pausePlayingFilms() {
  const auto& application = UIApplication::sharedApplication();
  const auto window = application ? application->keyWindow() : nullptr;
  const auto screen = window ? window->rootViewController() : nullptr;
  if (!screen) return;
  const auto films = screen->films();
  for (const FilmControls& film : films) {
    // Not `press`: what nobody touches need not be in sight.
    if (plays(film)) film.playPause->sendActionsForControlEvents(UIControlEvents::TouchUpInside);
  }
}

}  // namespace desktop
