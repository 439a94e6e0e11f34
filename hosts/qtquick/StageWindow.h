#pragma once

#include "hosts/qtquick/LongPress.h"
#include "hosts/qtquick/ScreenHost.h"

#include <QQuickWindow>

namespace qtquick {

/// The window itself: its size, full screen, closing and minimising, and the keys that no control wanted.
class StageWindow final : public QQuickWindow {
  Q_OBJECT

 public:
  explicit StageWindow(WindowEvents events);

  void toggleFullScreen();
  /// The reason to give for moving the focus where nobody asked for it: the keyboard's where a key was the last thing
  /// that was used, so that the focus is shown.
  Qt::FocusReason focusReason() const { return isLedByKeys_ ? Qt::TabFocusReason : Qt::OtherFocusReason; }
  /// Whether the window can be seen as far as the window manager tells.
  bool isInSight() const;

 signals:
  /// Escape or Back was pressed. Whoever does something with it sets `handled`.
  void escapePressed(bool& handled);
  void pressedTwice(QPointF point);
  /// A place was pressed for long, or with the right button.
  void pressedLong(QPointF point);
  /// A key asked for a menu. Whoever shows one sets `handled`.
  void menuKeyPressed(bool& handled);

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  void noteSight();

  void noteInput(const QEvent& event);
  void pressUnwantedKey(QKeyEvent& event);

  WindowEvents events_;
  LongPress longPress_;
  bool wasInSight_ = true;
  bool isLedByKeys_ = false;
};

}  // namespace qtquick
