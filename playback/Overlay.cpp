// A tap on a film shows or hides its controls; shown, they hide themselves after seven seconds.

#include "playback/ViewController.h"

#include "platform/foundation/Required.h"

namespace {

constexpr double overlaySeconds = 7.0;

}  // namespace

void ViewController::toccatoFilm1() {
  toccato(film(1));
}

void ViewController::toccatoFilm2() {
  toccato(film(2));
}

void ViewController::toccato(const FilmSlot& film) {
  print(film.constants.tapLine);
  if (film.timer) film.timer->invalidate();
  UIView& overlay = required(film.vistaControlliFilm, "a controls overlay");
  if (!overlay.isHidden()) {
    overlay.setHidden(true);
    return;
  }
  print(film.constants.shownLine);
  overlay.setHidden(false);
  film.timer = NSTimer::scheduledTimerWithTimeInterval_repeats_block(
      overlaySeconds, false, [self = strongReference(this), number = film.constants.number](const Strong<NSTimer>&) {
        print("------------------------ Done");
        required(self->film(number).vistaControlliFilm, "a controls overlay").setHidden(true);
      });
}

void ViewController::chiudiFilm1() {
  chiudi(film(1));
}

void ViewController::chiudiFilm2() {
  chiudi(film(2));
}

void ViewController::chiudi(const FilmSlot& film) {
  print(film.constants.closeLine);
  const auto sender = make<UIButton>(CGRectZero);  // never shown: it carries the film's number
  sender->setTag(film.constants.number);
  chiudiFilm(sender);
}
