// A chosen video becomes a film: its two players, its layer, its timer, its controls.

#include "playback/ViewController.h"

#include "platform/foundation/NSNotificationCenter.h"
#include "platform/foundation/Required.h"
#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UIGestureRecognizer.h"

namespace {

/// A mix in which no sound track of `asset` is heard.
Strong<AVMutableAudioMix> silence(const AVAsset& asset) {
  AVMutableAudioMix::Parameters parameters;
  for (const auto& track : asset.tracksWithMediaType(AVMediaTypeAudio)) {
    const auto input = AVMutableAudioMixInputParameters::audioMixInputParametersWithTrack(track);
    input->setVolume_atTime(0.0F, kCMTimeZero);
    input->setTrackID(track->trackID());
    parameters.push_back(input);
  }
  auto mix = make<AVMutableAudioMix>();
  mix->setInputParameters(std::move(parameters));
  return mix;
}

}  // namespace

void ViewController::passoVideo(const Strong<NSURL>& url, bool video1) {
  print(std::string("passoVideo video1 : ") + (video1 ? "true" : "false"));
  if (make<AVPlayerItem>(url)->asset()->hasProtectedContent()) {
    mostraFilmProtetto();
    return;
  }
  const FilmSlot film = this->film(video1 ? 1 : 2);
  print("posso far partire il video");
  print(film.constants.loadLine);
  (this->*film.constants.close)();

  const auto audio = AVAudioPlayer::initWithContentsOfURL_error(url, nullptr);
  if (!audio) {
    print("Error getting the audio file");
    return;
  }
  film.playerAudio = audio;
  // The sound starts before the picture exists; both begin together at the end of this turn.
  audio->prepareToPlay();
  audio->setPan(film.constants.pan);
  audio->play();

  mostraVideo(film, url);
  osservaLaFine(film);
  film.playerVideo->play();
  required(film.bottonePlayPausaFilm, "a play/pause button")
      .setImage_forState(UIImage::imageNamed("pause"), UIControlState::Normal);
  setSlider(film.constants.number);
  (this->*film.constants.tapped)();
}

void ViewController::mostraFilmProtetto() {
  const auto alert = UIAlertController::alertControllerWithTitle_message_preferredStyle(
      "Attenction", "The file is protected.Please try another video.", UIAlertControllerStyle::Alert);
  alert->addAction(UIAlertAction::actionWithTitle_style_handler("OK", UIAlertActionStyle::Default, nullptr));
  presentViewController_animated_completion(alert, true);
}

void ViewController::mostraVideo(const FilmSlot& film, const Strong<NSURL>& url) {
  film.playerVideo = AVPlayer::playerWithURL(url);
  film.layer = AVPlayerLayer::playerLayerWithPlayer(film.playerVideo);
  film.playerVideo->setActionAtItemEnd(AVPlayerActionAtItemEnd::None);

  UIView& view = required(film.vistaFilm, "a film's view");
  film.layer->setFrame({{0, 0}, view.frame().size});
  view.layer()->insertSublayer_atIndex(film.layer, 0);
  view.addGestureRecognizer(
      UITapGestureRecognizer::tapGestureRecognizerWithTarget_action(strongReference(this), film.constants.tapped));

  const auto& asset = *required(film.playerVideo->currentItem(), "a video player's item").asset();
  const auto mix = silence(asset);
  if (const auto& item = film.playerVideo->currentItem()) item->setAudioMix(mix);
}

void ViewController::osservaLaFine(const FilmSlot& film) {
  NSNotificationCenter::defaultCenter().addObserver_selector_name_object(strongReference(this), film.constants.close,
                                                                         AVPlayerItemDidPlayToEndTimeNotification,
                                                                         film.playerVideo->currentItem());
}
