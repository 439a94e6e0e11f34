#include "hosts/desktop/Layer.h"

#include <QMetaObject>
#include <QPointer>

#include <utility>

namespace desktop {

void Layer::cover(const QString& name, QObject& node, std::function<void()> escape) {
  item_ = layers_.cover(name, node, std::move(escape));
}

void Layer::decorate(const QString& name, QObject& node) {
  item_ = layers_.decorate(name, node);
}

void Layer::endLater(std::function<void()> then) {
  const auto endNow = [this, shown = QPointer<QQuickItem>(item_.get()), then = std::move(then)] {
    if (!shown) return;
    end();
    if (then) then();
  };
  QMetaObject::invokeMethod(&lifetime_, endNow, Qt::QueuedConnection);
}

}  // namespace desktop
