#include "hosts/qtquick/Levels.h"

#include <QQuickItem>

namespace qtquick {

void fill(QQuickItem& stage, QQuickItem& item, double level) {
  item.setParentItem(&stage);
  item.setZ(level);
  const auto fit = [&stage, &item] { item.setSize(stage.size()); };
  fit();
  QObject::connect(&stage, &QQuickItem::widthChanged, &item, fit);
  QObject::connect(&stage, &QQuickItem::heightChanged, &item, fit);
}

}  // namespace qtquick
