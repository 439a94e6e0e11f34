#include "hosts/qtquick/StageWindow.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>

namespace qtquick {

namespace {
constexpr QSize firstSize(1024, 640);
constexpr QSize smallestSize(360, 360);
const QColor background(0x0B, 0x0E, 0x10);
}  // namespace

StageWindow::StageWindow(WindowEvents events) : events_(std::move(events)) {
  resize(firstSize);
  setMinimumSize(smallestSize);
  setColor(background);
  // Told to assistive technology and window managers.
  setTitle(QStringLiteral("Quillop"));
  connect(this, &QWindow::windowStateChanged, this, [this] { noteSight(); });
  connect(&longPress_, &LongPress::held, this, &StageWindow::pressedLong);
}

bool StageWindow::hasManager() {
  const QString platform = QGuiApplication::platformName();
  return platform != QStringLiteral("eglfs") && platform != QStringLiteral("linuxfb");
}

bool StageWindow::toggleFullScreen() {
  if (hasManager()) setWindowStates(windowStates() ^ Qt::WindowFullScreen);
  return hasManager();
}

void StageWindow::noteSight() {
  const bool inSight = !(windowStates() & Qt::WindowMinimized);
  if (inSight == wasInSight_) return;
  wasInSight_ = inSight;
  const auto& tell = inSight ? events_.shown : events_.hidden;
  if (tell) tell();
}

bool StageWindow::event(QEvent* event) {
  if (event->type() == QEvent::Close && events_.closed) {
    event->ignore();
    events_.closed();
    return true;
  }
  longPress_.note(*event);
  noteInput(*event);
  const bool handled = QQuickWindow::event(event);
  if (event->type() == QEvent::TouchEnd || event->type() == QEvent::TouchCancel) endHover();
  return handled;
}

void StageWindow::endHover() {
  QEvent leave(QEvent::Leave);
  QQuickWindow::event(&leave);
}

void StageWindow::noteInput(const QEvent& event) {
  const bool wasLedByKeys = isLedByKeys_;
  if (event.type() == QEvent::KeyPress) isLedByKeys_ = true;
  if (event.type() == QEvent::MouseButtonPress || event.type() == QEvent::TouchBegin) isLedByKeys_ = false;
  if (isLedByKeys_ != wasLedByKeys) emit focusReasonChanged();
}

void StageWindow::keyPressEvent(QKeyEvent* event) {
  QQuickWindow::keyPressEvent(event);
  if (!event->isAccepted() && !event->isAutoRepeat()) pressUnwantedKey(*event);
}

void StageWindow::pressUnwantedKey(QKeyEvent& event) {
  const bool isShifted = event.modifiers() == Qt::ShiftModifier;
  bool handled = false;
  if (event.key() == Qt::Key_F11) {
    handled = toggleFullScreen();
  } else if (event.key() == Qt::Key_Escape || event.key() == Qt::Key_Back) {
    emit escapePressed(handled);
  } else if (event.key() == Qt::Key_Menu || (event.key() == Qt::Key_F10 && isShifted)) {
    emit menuKeyPressed(handled);
  }
  event.setAccepted(handled);
}

void StageWindow::mouseDoubleClickEvent(QMouseEvent* event) {
  QQuickWindow::mouseDoubleClickEvent(event);
  if (event->button() == Qt::LeftButton) emit pressedTwice(event->position());
}

}  // namespace qtquick
