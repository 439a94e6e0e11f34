#pragma once

#include "platform/foundation/NSObject.h"

class AVAudioPlayer;
class AVPlayer;
class AVPlayerLayer;
class NSTimer;
class UIButton;
class UISlider;
class UIView;
class ViewController;

/// What differs between the two films and is no object: numbers, texts, selectors.
struct FilmConstants {
  long number;
  float pan;
  const char* loadLine;
  const char* tapLine;
  const char* shownLine;
  const char* closeLine;
  void (ViewController::*tapped)();
  void (ViewController::*close)();
};

/// One of the two films: the fields of the screen that end in its number, and what differs.
struct FilmSlot {
  const FilmConstants& constants;
  Strong<UIView>& vistaFilm;
  Strong<AVAudioPlayer>& playerAudio;
  Strong<AVPlayer>& playerVideo;
  Strong<NSTimer>& timerVideo;
  Strong<AVPlayerLayer>& layer;
  Strong<NSTimer>& timer;
  Strong<UIView>& vistaControlliFilm;
  Strong<UIButton>& bottonePlayPausaFilm;
  Strong<UISlider>& volumeSlider;
  Strong<UISlider>& progressSlider;
};
