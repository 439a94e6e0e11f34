// What the screen does when it is loaded, when it appears and when it is about to leave.

#include "playback/ViewController.h"

#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/NSUserDefaults.h"
#include "platform/foundation/Required.h"
#include "tutorial/Tutorial.h"

namespace {

constexpr const char* hintShownKey = "primoAvvio2";
constexpr const char* tutorialShownKey = "primoAvvio";
constexpr double tutorialDelay = 1.0;
constexpr long chooseButtonTag = 5;
constexpr auto hintDirection = static_cast<PopTipDirection>(1);
constexpr double hintWidth = 200.0;

}  // namespace

void ViewController::viewDidLoad() {
  UIViewController::viewDidLoad();
  MPMediaLibrary::requestAuthorization(
      [self = strongReference(this)](MPMediaLibraryAuthorizationStatus status) { self->rispostaLibreria(status); });
  required(vistaControlliFilm1, "vistaControlliFilm1").setHidden(true);
  required(vistaControlliFilm2, "vistaControlliFilm2").setHidden(true);

  auto& defaults = NSUserDefaults::standardUserDefaults();
  if (defaults.objectForKey(hintShownKey)) return;
  mostraSuggerimento();
  defaults.setObject_forKey(make<NSString>("2"), hintShownKey);
}

void ViewController::mostraSuggerimento() {
  const auto button = std::dynamic_pointer_cast<UIButton>(view()->viewWithTag(chooseButtonTag));
  const CGRect frame = required(button, "the button with tag 5").frame();
  popTip->show("Click on this and select your videos", hintDirection, hintWidth, view(), frame);
}

void ViewController::viewDidAppear(bool /*animated*/) {
  print("viewDidAppear");
  auto& defaults = NSUserDefaults::standardUserDefaults();
  if (defaults.objectForKey(tutorialShownKey)) return;
  avviaTutorial();
  // At once, not when it is shown: the tutorial is scheduled once even if the screen goes away meanwhile.
  defaults.setObject_forKey(make<NSString>("2"), tutorialShownKey);
}

void ViewController::avviaTutorial() {
  print("tutorial");
  DispatchQueue::main().asyncAfter(tutorialDelay, [self = strongReference(this)] { self->mostraTutorial(); });
}

void ViewController::mostraTutorial() {
  const auto pager = makeTutorial();
  pager->setModalPresentationStyle(UIModalPresentationStyle::FullScreen);
  presentViewController_animated_completion(pager, true);
}

void ViewController::viewWillDisappear(bool /*animated*/) {
  print("viewWillDisappear metto in pausa i due player");
  mettiInPausa(film(1));
  mettiInPausa(film(2));
}

void ViewController::mettiInPausa(const FilmSlot& film) {
  if (!film.playerVideo) return;
  AVAudioPlayer& audio = required(film.playerAudio, "an audio player");
  if (!audio.isPlaying()) return;
  required(film.timerVideo, "a progress timer").invalidate();
  audio.stop();  // not pause: the sound device is given back while the screen is away
  film.playerVideo->pause();
  required(film.bottonePlayPausaFilm, "a play/pause button")
      .setImage_forState(UIImage::imageNamed("play"), UIControlState::Normal);
}
