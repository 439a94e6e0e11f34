#pragma once

#include <QPointF>

#include <vector>

class QQuickItem;

namespace qtquick {

/// Whether a touch or click at `point` of the window is meant for `control`. A control is touched on itself and,
/// where less than 44 points of the window show it in a direction, within 44 points around its middle. Of that room
/// beside it belongs to others: what one of `others` shows of itself, and what is nearer to one that is small itself.
/// Those of `others` that cannot be used now, and `control` and what it lies in, do not count.
bool isMeantFor(const QQuickItem& control, QPointF point, const std::vector<const QQuickItem*>& others);

}  // namespace qtquick
