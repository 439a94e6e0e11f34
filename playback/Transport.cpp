// The commands of a film's controls. Each acts on the sound first and the picture second, but for the seek.

#include "playback/ViewController.h"

#include "platform/foundation/Required.h"

void ViewController::playPausaFilm(const Strong<UIControl>& sender) {
  const FilmSlot film = this->film(sender->tag());
  if (!film.playerVideo) return;
  AVAudioPlayer& audio = required(film.playerAudio, "an audio player");
  UIButton& button = required(film.bottonePlayPausaFilm, "a play/pause button");
  if (audio.isPlaying()) {
    required(film.timerVideo, "a progress timer").invalidate();
    audio.pause();
    film.playerVideo->pause();
    button.setImage_forState(UIImage::imageNamed("play"), UIControlState::Normal);
  } else {
    avviaTimerVideo(film);
    audio.play();
    film.playerVideo->play();
    button.setImage_forState(UIImage::imageNamed("pause"), UIControlState::Normal);
  }
}

void ViewController::chiudiFilm(const Strong<UIControl>& sender) {
  const FilmSlot film = this->film(sender->tag());
  print("-------------- chiudiFilm chiudo il film ");
  if (film.timerVideo) {
    print("blocco timer");
    film.timerVideo->invalidate();  // the field keeps it
  }
  if (!film.playerAudio) return;
  print("blocco tutto");
  film.playerAudio->stop();
  required(film.playerVideo, "a video player").pause();
  film.playerVideo = nullptr;
  film.playerAudio = nullptr;

  const auto sublayers = required(film.layer, "a player layer").sublayers();
  if (!sublayers) fatalError("a player layer without a list of sublayers");
  for (const auto& sublayer : *sublayers) {
    print("rimuovo il video 1");  // the same words for film 2
    sublayer->removeFromSuperlayer();
  }
  required(film.progressSlider, "a progress slider").setValue(0.0F);
  required(film.bottonePlayPausaFilm, "a play/pause button")
      .setImage_forState(UIImage::imageNamed("play"), UIControlState::Normal);
  required(film.vistaControlliFilm, "a controls overlay").setHidden(true);
}

void ViewController::cambiaVolumeFilm(const Strong<UIControl>& sender) {
  const FilmSlot film = this->film(sender->tag());
  if (!film.playerVideo) return;
  const float level = required(film.volumeSlider, "a volume slider").value();
  required(film.playerAudio, "an audio player").setVolume(level);
}

void ViewController::muovitiDentroIlFilm(const Strong<UIControl>& sender) {
  print("muovitiDentroIlFilm");
  const FilmSlot film = this->film(sender->tag());
  if (!film.playerVideo) return;
  const double position = required(film.progressSlider, "a progress slider").value();
  // Whole seconds for the picture, on purpose; the sound goes to the very place.
  film.playerVideo->seekToTime(CMTimeMakeWithSeconds(position, 1));
  required(film.playerAudio, "an audio player").setCurrentTime(position);
}
