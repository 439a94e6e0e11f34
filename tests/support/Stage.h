#pragma once

#include "library/ListaVideo.h"
#include "platform/Platform.h"
#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UIWindow.h"
#include "playback/ViewController.h"
#include "tests/support/SimulatedHost.h"

#include <memory>

using simulated::Lines;

/// The fields of the main screen that are not outlets, for tests; the film number chooses.
struct ViewControllerFields {
  ViewController& screen;

  const Strong<AVAudioPlayer>& audio(int film) const;
  const Strong<AVPlayer>& video(int film) const;
  const Strong<NSTimer>& progressTimer(int film) const;
  const Strong<AVPlayerLayer>& layer(int film) const;
  const Strong<NSTimer>& overlayTimer(int film) const;
  const Strong<PopTip>& popTip() const;
  /// For tests of what a missing object does.
  void clearAudio(int film) const;
  void clearVideo(int film) const;
  void clearLayer(int film) const;
  void setLayer(int film, Strong<AVPlayerLayer> layer) const;
  void clearProgressTimer(int film) const;
};

/// The app on the simulated host: launched, the main screen shown, a library of three videos, the hint already
/// seen. `Stage::FirstRun` starts with empty user defaults.
class Stage {
 public:
  enum Run { LaterRun, FirstRun, NotLaunched };

  explicit Stage(Run run = LaterRun);
  ~Stage();
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;

  void launch();

  simulated::Host host;
  ViewController& screen() const;
  ViewControllerFields fields() const { return {screen()}; }
  const Strong<UIWindow>& window() const;
  /// The list, while it is the topmost screen.
  Strong<ListaVideo> list() const;
  /// The alert, while it is the topmost screen.
  Strong<UIAlertController> alert() const;

  const Strong<UIView>& filmView(int film) const;
  const Strong<UIView>& overlay(int film) const;
  const Strong<UIButton>& playPause(int film) const;
  const Strong<UIButton>& close(int film) const;
  const Strong<UISlider>& position(int film) const;
  const Strong<UISlider>& volume(int film) const;

  void advance(double seconds) { host.mainLoop.advance(seconds); }
  /// Runs `block` as one event of the main loop.
  void event(const std::function<void()>& block);
  /// A tap in the upper part of the film, where no control ever is.
  void tapFilm(int film);
  void press(const Strong<UIButton>& button);
  void pressChoose();
  /// Presses the choose button and waits until the list is there.
  void openList();
  /// Chooses that row for that film, without waiting.
  void choose(int film, long row);
  /// Hands over a video as the list does. The address is "file:///videos/NAME".
  void load(int film, const std::string& name);
  /// Sends one of the screen's actions with a sender of that tag.
  void send(void (ViewController::*action)(const Strong<UIControl>&), long tag);
  /// What the engine reports of an open player, as it does: posted to the main loop.
  void reportEnd(const std::string& player);
  /// The last position reported by both players of a film.
  void setPosition(const std::string& name, double seconds);

  /// The console since the last time this was asked.
  Lines takeLines() { return std::exchange(host.console.lines, {}); }
  Lines takeCalls() { return host.mediaEngine.takeCalls(); }

  /// The name of the image that a button shows.
  static std::string imageOf(const UIButton& button);
  /// What the closing of a film prints first.
  static constexpr auto closeLine = "-------------- chiudiFilm chiudo il film ";
  static std::string url(const std::string& name) { return "file:///videos/" + name; }

 private:
  std::unique_ptr<Platform> platform_;
};
