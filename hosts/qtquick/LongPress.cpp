#include "hosts/qtquick/LongPress.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QStyleHints>
#include <QTouchEvent>

namespace qtquick {

namespace {

/// A touch that the system told of as one of a mouse as well.
bool isTouch(const QMouseEvent& event) {
  return event.device() != nullptr && event.device()->type() == QInputDevice::DeviceType::TouchScreen;
}

}  // namespace

LongPress::LongPress() {
  patience_.setSingleShot(true);
  connect(&patience_, &QTimer::timeout, this, [this] { emit held(place_); });
}

void LongPress::note(const QEvent& event) {
  switch (event.type()) {
    case QEvent::MouseButtonPress: {
      const auto& press = static_cast<const QMouseEvent&>(event);
      if (press.button() == Qt::RightButton) emit held(press.position());
      if (press.button() == Qt::LeftButton && !isTouch(press)) begin(press.position());
      break;
    }
    case QEvent::TouchBegin:
      begin(static_cast<const QTouchEvent&>(event).points().first().position());
      break;
    case QEvent::MouseMove:
      move(static_cast<const QMouseEvent&>(event).position());
      break;
    case QEvent::TouchUpdate: {
      const auto& points = static_cast<const QTouchEvent&>(event).points();
      points.size() == 1 ? move(points.first().position()) : patience_.stop();
      break;
    }
    case QEvent::MouseButtonRelease:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
      patience_.stop();
      break;
    default:
      break;
  }
}

void LongPress::begin(QPointF place) {
  place_ = place;
  patience_.start(QGuiApplication::styleHints()->mousePressAndHoldInterval());
}

void LongPress::move(QPointF place) {
  const QPointF way = place - place_;
  if (way.manhattanLength() > QGuiApplication::styleHints()->startDragDistance()) patience_.stop();
}

}  // namespace qtquick
