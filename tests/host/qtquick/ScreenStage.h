#pragma once

#include "hosts/qtquick/ScreenHost.h"
#include "info/Info.h"
#include "library/ListaVideo.h"
#include "platform/Platform.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIWindow.h"
#include "playback/ViewController.h"
#include "tests/host/qtquick/Motion.h"
#include "tests/host/qtquick/TestPictures.h"
#include "tutorial/NFXIntroViewController.h"

#include <QPoint>
#include <QQuickItem>
#include <QQuickWindow>

#include <memory>
#include <vector>

/// The app on the real screen host; the other ports are simulated, and time is virtual: it passes in `advance` only.
class ScreenStage final {
 public:
  struct Options {
    QSize size{1024, 640};
    std::size_t videos = 3;  ///< "Video 0", "Video 1", ..., one minute each
    bool isFirstRun = false;
    std::vector<std::string> titles = {};  ///< of the first videos, in place of their usual ones
    bool moves = false;                    ///< there are animations
  };

  ScreenStage() : ScreenStage(Options{}) {}
  explicit ScreenStage(Options options);
  ~ScreenStage();
  ScreenStage(const ScreenStage&) = delete;
  ScreenStage& operator=(const ScreenStage&) = delete;

  qtquick::ScreenHost& host() { return screen_; }
  QQuickWindow& window() { return screen_.window(); }
  ViewController& screen() const;
  const Strong<UIWindow>& platformWindow() const;
  PaintedEngine& engine() { return engine_; }
  simulated::Host& simulatedHost() { return host_; }
  std::shared_ptr<PaintedStream> stream(std::size_t index) const { return engine_.streams().at(index); }

  /// Lets virtual time pass, that of animations too, then draws what came of it.
  void advance(double seconds);
  /// Handles Qt's events until the next frame was drawn, and whatever the app does at once.
  void settle();
  void event(const std::function<void()>& block);
  /// Loads a video as the list does.
  void load(int film);
  /// Shows or hides the controls as a tap does.
  void toggleOverlay(int film);
  /// Opens the list and waits for it to be there.
  Strong<ListaVideo> openList();
  /// Opens the info screen and waits for it to be there.
  Strong<Info> openInfo();
  /// Opens the tutorial over the main screen and waits for it to be there.
  Strong<NFXIntroViewController> openTutorial();
  void resize(QSize size);

  /// The item standing for the view, control or alert button of that accessible name, among those that can be used
  /// now; null when there is none.
  QQuickItem* named(const QString& name);
  /// The window's picture now.
  QImage grab();
  /// How often the window's menu was asked for.
  int menusRequested() const { return menusRequested_; }
  std::vector<std::string> takeLines() { return std::exchange(host_.console.lines, {}); }

 private:
  int menusRequested_ = 0;
  std::unique_ptr<Motion> motion_;
  simulated::Host host_;
  PaintedEngine engine_;
  qtquick::ScreenHost screen_;
  std::unique_ptr<Platform> platform_;
};

/// The middle of `item` in its window.
QPoint middleOf(const QQuickItem& item);
