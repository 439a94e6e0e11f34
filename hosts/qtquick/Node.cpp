#include "hosts/qtquick/Node.h"

#include "hosts/qtquick/Mirror.h"

#include <QQmlComponent>
#include <QQuickWindow>

#include <cmath>

namespace qtquick {

namespace {

/// `frame` with its edges on whole pixels of the device where a point is not a whole number of them: the software
/// scene graph would draw the corners and the sides of a surface a pixel apart otherwise.
QRectF onPixels(CGRect frame, double ratio) {
  const QRectF rect(frame.origin.x, frame.origin.y, frame.size.width, frame.size.height);
  if (std::floor(ratio) == ratio) return rect;
  const auto edge = [ratio](double position) { return std::round(position * ratio) / ratio; };
  return {QPointF(edge(rect.left()), edge(rect.top())), QPointF(edge(rect.right()), edge(rect.bottom()))};
}

}  // namespace

Node::~Node() = default;

void Node::makeItem(const QString& component, QQuickItem& parent, CGRect frame) {
  QQmlComponent& factory = mirror_.component(component);
  auto* const made = qobject_cast<QQuickItem*>(factory.beginCreate(mirror_.context()));
  if (made == nullptr) qFatal("%s", qPrintable(factory.errorString()));
  item_.reset(made);
  factory.setInitialProperties(made, {{QStringLiteral("node"), QVariant::fromValue<QObject*>(this)}});
  // In its place before it is completed, so that nothing in it starts at another size or moves on its first frame.
  made->setParentItem(&parent);
  place(frame);
  factory.completeCreate();
}

void Node::place(CGRect frame) {
  const QRectF place = onPixels(frame, item_->window() == nullptr ? 1 : item_->window()->effectiveDevicePixelRatio());
  item_->setPosition(place.topLeft());
  item_->setSize(place.size());
}

}  // namespace qtquick
