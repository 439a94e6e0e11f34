#pragma once

#include <QObject>
#include <QPointF>
#include <QTimer>

class QEvent;

namespace qtquick {

/// A finger or the left button that rests on one place for a while, or a press of the right button. Main thread.
class LongPress final : public QObject {
  Q_OBJECT

 public:
  LongPress();

  /// To be shown every event of the window, which it leaves as it is.
  void note(const QEvent& event);

 signals:
  void held(QPointF place);

 private:
  void begin(QPointF place);
  void move(QPointF place);

  QPointF place_;
  QTimer patience_;
};

}  // namespace qtquick
