// Shows the app with painted films, for looking at the design and for measuring what drawing costs.

#include "tests/host/qtquick/ScreenStage.h"

#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QTimer>

#include <atomic>
#include <cstdio>
#include <ctime>
#include <thread>

namespace {

/// Paints pictures for both films, thirty a second, on a thread of its own, as an engine does.
class Painter {
 public:
  explicit Painter(ScreenStage& stage) : thread_([this, streams = stage.engine().streams()] { paint(streams); }) {}
  ~Painter() {
    stopped_ = true;
    thread_.join();
  }

 private:
  void paint(const std::vector<std::shared_ptr<PaintedStream>>& streams) {
    while (!stopped_) {
      for (const auto& stream : streams) stream->paintNext();
      std::this_thread::sleep_for(std::chrono::milliseconds(33));
    }
  }

  std::atomic<bool> stopped_ = false;
  std::thread thread_;
};

void bringInto(ScreenStage& stage, const QString& state) {
  if (state == "playing" || state == "controls") {
    for (const int film : {1, 2}) stage.load(film);
  }
  if (state == "playing") {
    for (const int film : {1, 2}) stage.toggleOverlay(film);
  }
  if (state == "emptycontrols") {
    stage.event([&] {
      stage.screen().vistaControlliFilm1->setHidden(false);
      stage.screen().vistaControlliFilm2->setHidden(false);
      stage.screen().progressSlider1->setMaximumValue(5025);
      stage.screen().progressSlider1->setValue(1234);
    });
  }
  if (state == "list" || state == "alert") stage.openList();
  if (state == "info") stage.openInfo();
  if (state == "tutorial" || state == "tutorial2") {
    const auto pager = stage.openTutorial();
    if (state == "tutorial2") stage.event([&] { pager->ButtonPushed(); });
    stage.advance(1);
  }
}

QSize sizeOf(const QString& text) {
  const auto parts = text.split('x');
  return {parts.value(0).toInt(), parts.value(1).toInt()};
}

}  // namespace

int main(int argumentCount, char* arguments[]) {
  QGuiApplication application(argumentCount, arguments);
  QCommandLineParser parser;
  parser.addHelpOption();
  parser.addOption({"size", "Size of the window.", "WIDTHxHEIGHT", "1024x640"});
  parser.addOption(
      {"state", "main, playing, controls, list, alert, hint, info, tutorial or tutorial2.", "name", "main"});
  parser.addOption({"videos", "Number of videos in the library.", "number", "30"});
  parser.addOption({"shot", "Writes a picture of the window and ends.", "file"});
  parser.addOption({"seconds", "Ends after that time and tells the processor time used.", "number", "0"});
  parser.addOption({"still", "No new pictures."});
  parser.process(application);
  qtquick::chooseGraphics();

  const QString state = parser.value("state");
  const std::size_t videos = state == "alert" ? 0 : parser.value("videos").toULong();
  ScreenStage stage({sizeOf(parser.value("size")), videos, state == "hint"});
  bringInto(stage, state);
  if (parser.isSet("shot")) {
    for (int turn = 0; turn < 30; ++turn) {
      std::this_thread::sleep_for(std::chrono::milliseconds(15));
      stage.settle();
    }
    return stage.grab().save(parser.value("shot")) ? 0 : 1;
  }

  QElapsedTimer clock;
  clock.start();
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout,
                   [&] { stage.simulatedHost().mainLoop.advance(static_cast<double>(clock.restart()) / 1000); });
  timer.start(50);
  const double seconds = parser.value("seconds").toDouble();
  if (seconds > 0) QTimer::singleShot(static_cast<int>(seconds * 1000), &application, &QCoreApplication::quit);
  const std::clock_t before = std::clock();
  int frames = 0;
  QObject::connect(&stage.window(), &QQuickWindow::frameSwapped, &stage.window(), [&] { ++frames; });
  {
    std::unique_ptr<Painter> painter;
    if (!parser.isSet("still")) painter = std::make_unique<Painter>(stage);
    QCoreApplication::exec();
  }
  std::printf("%.2f s of processor time for %d frames\n", static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC,
              frames);
  return 0;
}
