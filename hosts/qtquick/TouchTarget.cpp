#include "hosts/qtquick/TouchTarget.h"

#include <QQuickItem>
#include <QRectF>

#include <algorithm>
#include <cmath>

namespace qtquick {

namespace {

constexpr double leastExtent = 44;

/// In the window; of an item in something that clips, what is left of it.
QRectF shownPlace(const QQuickItem& item) {
  QRectF place = item.mapRectToScene({0, 0, item.width(), item.height()});
  for (const auto* above = item.parentItem(); above != nullptr; above = above->parentItem()) {
    if (above->clip()) place &= above->mapRectToScene({0, 0, above->width(), above->height()});
  }
  return place;
}

QRectF targetAround(const QRectF& place) {
  const double besideX = std::max(0.0, (leastExtent - place.width()) / 2);
  const double besideY = std::max(0.0, (leastExtent - place.height()) / 2);
  return place.adjusted(-besideX, -besideY, besideX, besideY);
}

double distance(QPointF point, const QRectF& place) {
  const double x = std::max({place.left() - point.x(), point.x() - place.right(), 0.0});
  const double y = std::max({place.top() - point.y(), point.y() - place.bottom(), 0.0});
  return std::hypot(x, y);
}

/// Whether `other` has more of a claim to a point this far beside a control.
bool isNearer(const QQuickItem& other, QPointF point, double distanceOfControl) {
  const QRectF place = shownPlace(other);
  if (place.isEmpty() || !targetAround(place).contains(point)) return false;
  return distance(point, place) < distanceOfControl;
}

}  // namespace

bool isMeantFor(const QQuickItem& control, QPointF point, const std::vector<const QQuickItem*>& others) {
  const QRectF place = shownPlace(control);
  const double own = distance(point, place);
  if (own == 0) return true;
  if (!targetAround(place).contains(point)) return false;
  return std::none_of(others.begin(), others.end(), [&](const QQuickItem* other) {
    const bool counts =
        other != &control && !other->isAncestorOf(&control) && other->isVisible() && other->isEnabled();
    return counts && isNearer(*other, point, own);
  });
}

}  // namespace qtquick
