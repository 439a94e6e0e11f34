#include "hosts/qtquick/Node.h"

#include "hosts/qtquick/Mirror.h"

#include <QQmlComponent>

namespace qtquick {

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
  item_->setPosition({frame.origin.x, frame.origin.y});
  item_->setSize({frame.size.width, frame.size.height});
}

}  // namespace qtquick
