#include "hosts/desktop/MainWindow.h"

#include <QGuiApplication>
#include <QIcon>
#include <QScreen>

#include <algorithm>
#include <utility>

namespace desktop {

namespace {

/// Drawn in many sizes, and not needed for the first screen.
void setIconAfterFirstFrame(const QQuickWindow& window) {
  QObject::connect(
      &window, &QQuickWindow::frameSwapped, qGuiApp,
      [] { QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/images/quillop.svg"))); },
      static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
}

bool isOnAnyScreen(const QRect& geometry) {
  const auto screens = QGuiApplication::screens();
  return std::any_of(screens.begin(), screens.end(),
                     [&](const QScreen* screen) { return screen->geometry().intersects(geometry); });
}

}  // namespace

MainWindow::MainWindow(qtquick::ScreenHost& screen, const QString& place)
    : screen_(screen), place_(place), geometry_(window().geometry()) {
  connect(&window(), &QWindow::xChanged, this, &MainWindow::noteGeometry);
  connect(&window(), &QWindow::yChanged, this, &MainWindow::noteGeometry);
  connect(&window(), &QWindow::widthChanged, this, &MainWindow::noteGeometry);
  connect(&window(), &QWindow::heightChanged, this, &MainWindow::noteGeometry);
  setIconAfterFirstFrame(window());
  showAsRemembered();
}

void MainWindow::showAsRemembered() {
  if (const auto remembered = place_.remembered()) {
    const QRect& geometry = remembered->geometry;
    // A monitor may have gone since.
    isOnAnyScreen(geometry) ? window().setGeometry(geometry) : window().resize(geometry.size());
    if (remembered->fullScreen) window().setWindowState(Qt::WindowFullScreen);
  }
  screen_.show();
}

void MainWindow::noteGeometry() {
  const bool isItsOwn = !(window().windowStates() & (Qt::WindowFullScreen | Qt::WindowMaximized));
  if (isItsOwn) geometry_ = window().geometry();
}

void MainWindow::comeForward(const QString& activationToken) const {
  if (!activationToken.isEmpty()) qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8());
  // In full screen it comes back in full screen.
  window().setWindowStates(window().windowStates() & ~Qt::WindowMinimized);
  window().raise();
  window().requestActivate();
  qunsetenv("XDG_ACTIVATION_TOKEN");  // it was good for this once
}

void MainWindow::remember() {
  noteGeometry();
  place_.remember({geometry_, window().windowStates().testFlag(Qt::WindowFullScreen)});
}

std::vector<WindowMenu::Entry> MainWindow::menuEntries(std::function<void()> openSettings,
                                                       std::function<void()> end) const {
  std::vector<WindowMenu::Entry> entries{{QStringLiteral("Settings"), std::move(openSettings)}};
  if (screen_.isResizable()) {
    const bool isFull = window().windowStates() & Qt::WindowFullScreen;
    const auto title = isFull ? QStringLiteral("Leave full screen") : QStringLiteral("Full screen");
    entries.push_back({title, [this] { screen_.toggleFullScreen(); }});
  }
  entries.push_back({QStringLiteral("Quit"), std::move(end)});
  return entries;
}

}  // namespace desktop
