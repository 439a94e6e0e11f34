#pragma once

#include "hosts/qtquick/ScreenHost.h"

#include <QQuickWindow>

namespace qtquick {

/// The window itself: its size, full screen, closing and minimising, and the keys that no control wanted.
class StageWindow final : public QQuickWindow {
  Q_OBJECT

 public:
  explicit StageWindow(WindowEvents events);

  void toggleFullScreen();
  /// Whether the window can be seen as far as the window manager tells.
  bool isInSight() const;

 signals:
  /// Escape or Back was pressed. Whoever does something with it sets `handled`.
  void escapePressed(bool& handled);
  void pressedTwice(QPointF point);

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  void noteSight();
  /// A finger hovers over nothing, yet Qt remembers where it was last as the pointer's place and would go on showing
  /// what lies there as hovered.
  void endHover();

  WindowEvents events_;
  bool wasInSight_ = true;
};

}  // namespace qtquick
