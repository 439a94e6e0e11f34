#pragma once

#include "hosts/qtquick/LongPress.h"
#include "hosts/qtquick/ScreenHost.h"

#include <QQuickWindow>

namespace qtquick {

/// The window itself: its size, full screen, closing and minimising, and the keys that no control wanted.
class StageWindow final : public QQuickWindow {
  Q_OBJECT
  Q_PROPERTY(int focusReason READ focusReason NOTIFY focusReasonChanged)

 public:
  explicit StageWindow(WindowEvents events);

  /// Whether there is a window manager, and so anything but full screen.
  static bool hasManager();

  /// False, and nothing happens, where there is no window manager.
  bool toggleFullScreen();
  /// The reason to give for moving the focus where nobody asked for it: the keyboard's where a key was the last thing
  /// that was used, so that the focus is shown.
  Qt::FocusReason focusReason() const { return isLedByKeys_ ? Qt::TabFocusReason : Qt::OtherFocusReason; }

 signals:
  void focusReasonChanged();
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
  /// A finger hovers over nothing, yet Qt remembers where it was last as the pointer's place and would go on showing
  /// what lies there as hovered.
  void endHover();

  void noteInput(const QEvent& event);
  void pressUnwantedKey(QKeyEvent& event);

  WindowEvents events_;
  LongPress longPress_;
  bool wasInSight_ = true;
  bool isLedByKeys_ = false;
};

}  // namespace qtquick
