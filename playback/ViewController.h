#pragma once

#include "library/passoVideo.h"
#include "platform/avfoundation/AVAudioPlayer.h"
#include "platform/avfoundation/AVPlayerLayer.h"
#include "platform/foundation/NSTimer.h"
#include "platform/mediaplayer/MPMediaLibrary.h"
#include "platform/poptip/PopTip.h"
#include "platform/uikit/UIImageView.h"
#include "platform/uikit/UIViewController.h"
#include "playback/FilmSlot.h"

/// The main screen: two films, each with its own view, players, timers and controls.
///
/// Each film's fields end in its number. Wherever a film is told by a tag or a number, 1 is film 1 and everything
/// else film 2. A film is loaded while its audio player is present. The routines are written once, on a `FilmSlot`.
///
/// Every load adds one tap recogniser and one player layer to the film's view and one end-of-item observation; none
/// of them is taken away at a close. Older layers are empty by then, and older observations belong to items that are
/// gone.
class ViewController final : public UIViewController, public passoVideoProtocol {
 public:
  explicit ViewController(const std::optional<std::string>& nibName = std::nullopt, NSBundle* bundle = nullptr);
  explicit ViewController(const NSCoder& coder);
  /// Releases the fields in the order of their declaration.
  ~ViewController() override;

  // The order of these 25 fields is the order in which they are released.
  Strong<UIView> vistaFilm1;
  Strong<UIView> vistaFilm2;

 private:
  Strong<AVAudioPlayer> playerFilm1SinistraAudio;
  Strong<AVAudioPlayer> playerFilm2DestraAudio;
  Strong<AVPlayer> playerFilm1SinistraVideo;
  Strong<AVPlayer> playerFilm2DestroVideo;
  Strong<NSTimer> timerVideo1;
  Strong<NSTimer> timerVideo2;
  Strong<AVPlayerLayer> layer1;
  Strong<AVPlayerLayer> layer2;
  Strong<NSTimer> timer1;
  Strong<NSTimer> timer2;

 public:
  Strong<UIView> vistaControlliFilm1;
  Strong<UIImageView> immagineBarraControlli1;
  Strong<UIButton> bottonePlayPausaFilm1;
  Strong<UIButton> bottoneChiudiFilm1;
  Strong<UISlider> volumeSlider1;
  Strong<UISlider> progressSlider1;
  Strong<UIView> vistaControlliFilm2;
  Strong<UIImageView> immagineBarraControlli2;
  Strong<UIButton> bottonePlayPausaFilm2;
  Strong<UIButton> bottoneChiudiFilm2;
  Strong<UISlider> volumeSlider2;
  Strong<UISlider> progressSlider2;

 private:
  Strong<PopTip> popTip;

 public:
  // Lifecycle (Lifecycle.cpp)
  void viewDidLoad() override;
  void viewDidAppear(bool animated) override;
  void viewWillDisappear(bool animated) override;
  InterfaceTable interfaceTable() override;

  // Loading (Loading.cpp)
  void passoVideo(const Strong<NSURL>& url, bool video1) override;

  // Progress (Progress.cpp)
  void setSlider(long number);
  void updateSliderWithSender(const Strong<NSTimer>& timer);

  // Overlay (Overlay.cpp)
  void toccatoFilm1();
  void toccatoFilm2();
  void chiudiFilm1();
  void chiudiFilm2();

  // Layout (Layout.cpp)
  void willTransitionToTraitCollection_withTransitionCoordinator(
      const UITraitCollection& newCollection, UIViewControllerTransitionCoordinator& coordinator) override;
  void viewDidLayoutSubviews() override;
  void adattaLayerFilm();

  // Transport (Transport.cpp)
  void playPausaFilm(const Strong<UIControl>& sender);
  void chiudiFilm(const Strong<UIControl>& sender);
  void cambiaVolumeFilm(const Strong<UIControl>& sender);
  void muovitiDentroIlFilm(const Strong<UIControl>& sender);

  // Library access and the way to the other screens (Navigation.cpp)
  void listaVideo(const Strong<UIControl>& sender);
  void info(const Strong<UIControl>& sender);
  void prepareForSegue_sender(const Strong<UIStoryboardSegue>& segue, const Strong<NSObject>& sender) override;
  void rispostaLibreria(MPMediaLibraryAuthorizationStatus status);

 private:
  friend struct ViewControllerFields;  // lets tests look at the fields that are not outlets

  FilmSlot film(long number);

  void mostraSuggerimento();
  void avviaTutorial();
  void mostraTutorial();
  void mostraFilmProtetto();
  void mostraVideo(const FilmSlot& film, const Strong<NSURL>& url);
  void osservaLaFine(const FilmSlot& film);
  void avviaTimerVideo(const FilmSlot& film);
  void toccato(const FilmSlot& film);
  void chiudi(const FilmSlot& film);
  void mettiInPausa(const FilmSlot& film);
  void mostraErroreLibreria();
};
