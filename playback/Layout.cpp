// The video layers follow the size of their film views, which the interface resource lays out.

#include "playback/ViewController.h"

#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/Required.h"

void ViewController::willTransitionToTraitCollection_withTransitionCoordinator(
    const UITraitCollection& /*newCollection*/, UIViewControllerTransitionCoordinator& /*coordinator*/) {
  print("cambia orientamento");
  // Deferred, so that it reads the film views as they are laid out for the new size.
  DispatchQueue::main().async([self = strongReference(this)] { self->adattaLayerFilm(); });
}

void ViewController::viewDidLayoutSubviews() {
  // Left empty on purpose: the layers change with the screen's traits, not with every layout pass.
}

void ViewController::adattaLayerFilm() {
  for (const long number : {1L, 2L}) {
    const FilmSlot film = this->film(number);
    if (!film.layer) continue;
    film.layer->setFrame({{0, 0}, required(film.vistaFilm, "a film's view").frame().size});
  }
}
