// A Wayland compositor without a device that shows one window over all of it, and touches it as it is told: for the
// journeys. Every event passes through the Wayland socket, as from the compositor of a phone.
//
// quillop-touch-screen SOCKET WIDTH HEIGHT; then on standard input, a line each:
//   down FINGER X Y   move FINGER X Y   up FINGER      numbers of fingers, places in points
//   turn WIDTH HEIGHT                                  the screen has another size from now on
//   look FILE                                          writes the pixels there: rows of blue, green, red, unused
// Says "ready" at the beginning, "window" once there is one, and "seen WIDTH HEIGHT" after each look.

#include <QGuiApplication>
#include <QPointF>
#include <QSocketNotifier>
#include <QTimer>
#include <QWaylandBufferRef>
#include <QWaylandCompositor>
#include <QWaylandOutput>
#include <QWaylandOutputMode>
#include <QWaylandSeat>
#include <QWaylandSurface>
#include <QWaylandView>
#include <QWaylandXdgShell>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <string>

namespace {

constexpr int refreshRate = 60000;  // in thousandths of a hertz
constexpr auto frameTime = std::chrono::milliseconds(16);

void say(const std::string& line) {
  std::cout << line << std::endl;  // flushed: a journey waits for it
}

class TouchScreen final {
 public:
  TouchScreen(const QByteArray& socket, QSize size) : size_(size) {
    compositor_.setSocketName(socket);
    compositor_.create();
    output_ = std::make_unique<QWaylandOutput>(&compositor_, nullptr);
    setMode();
    QObject::connect(&shell_, &QWaylandXdgShell::toplevelCreated, &shell_,
                     [this](QWaylandXdgToplevel* window, QWaylandXdgSurface* surface) { show(window, surface); });
    QObject::connect(&frames_, &QTimer::timeout, &frames_, [this] { frame(); });
    frames_.start(frameTime);
  }

  void obey(const std::string& line) {
    std::istringstream words(line);
    std::string command;
    words >> command;
    if (command == "look") return look(words);
    if (command == "turn") return turn(words);
    touch(command, words);
  }

 private:
  void setMode() {
    const QWaylandOutputMode mode(size_, refreshRate);
    output_->addMode(mode, true);
    output_->setCurrentMode(mode);
  }

  void show(QWaylandXdgToplevel* window, QWaylandXdgSurface* surface) {
    if (window_ != nullptr) return;
    window_ = window;
    QObject::connect(window, &QObject::destroyed, &shell_, [this] { window_ = nullptr; });
    window_->sendFullscreen(size_);
    view_.setOutput(output_.get());
    view_.setSurface(surface->surface());
    compositor_.defaultSeat()->setKeyboardFocus(surface->surface());
    say("window");
  }

  void frame() {
    output_->frameStarted();
    // A copy: the image itself lies in the program's memory, which goes when the program likes.
    const bool isNew = view_.advance();
    const QImage image = view_.currentBuffer().image();
    if (isNew && !image.isNull()) shown_ = image.copy().convertToFormat(QImage::Format_RGB32);
    output_->sendFrameCallbacks();
  }

  void look(std::istringstream& words) {
    std::string path;
    words >> path;
    std::ofstream file(path, std::ios::binary);
    for (int y = 0; y < shown_.height(); ++y) {
      file.write(reinterpret_cast<const char*>(shown_.constScanLine(y)), 4LL * shown_.width());
    }
    file.close();
    say("seen " + std::to_string(shown_.width()) + " " + std::to_string(shown_.height()));
  }

  void turn(std::istringstream& words) {
    int width = 0;
    int height = 0;
    words >> width >> height;
    size_ = {width, height};
    setMode();
    if (window_ != nullptr) window_->sendFullscreen(size_);
  }

  void touch(const std::string& command, std::istringstream& words) {
    int finger = 0;
    words >> finger;
    auto& place = fingers_[finger];
    double x = place.x();
    double y = place.y();
    words >> x >> y;
    if (command != "up") place = {x, y};
    auto* const seat = compositor_.defaultSeat();
    auto* const surface = view_.surface();
    if (surface == nullptr) return;
    seat->sendTouchPointEvent(surface, finger, place, stateOf(command));
    seat->sendTouchFrameEvent(surface->client());
  }

  static Qt::TouchPointState stateOf(const std::string& command) {
    if (command == "down") return Qt::TouchPointPressed;
    return command == "up" ? Qt::TouchPointReleased : Qt::TouchPointMoved;
  }

  QSize size_;
  QWaylandCompositor compositor_;
  QWaylandXdgShell shell_{&compositor_};
  std::unique_ptr<QWaylandOutput> output_;
  QWaylandView view_;
  QWaylandXdgToplevel* window_ = nullptr;
  QTimer frames_;
  QImage shown_;
  std::map<int, QPointF> fingers_;
};

}  // namespace

int main(int argumentCount, char* arguments[]) {
  if (argumentCount != 4) return 2;
  // With a buffer of its own the input tells whether there is another line in it already.
  std::ios::sync_with_stdio(false);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QGuiApplication application(argumentCount, arguments);
  TouchScreen screen(arguments[1], {std::atoi(arguments[2]), std::atoi(arguments[3])});
  QSocketNotifier input(0, QSocketNotifier::Read);
  QObject::connect(&input, &QSocketNotifier::activated, &input, [&] {
    std::string line;
    if (!std::getline(std::cin, line)) return QCoreApplication::quit();
    do screen.obey(line);
    while (std::cin.rdbuf()->in_avail() > 0 && std::getline(std::cin, line));
  });
  say("ready");
  return QCoreApplication::exec();
}
