#include "hosts/qtquick/Decorations.h"

#include "hosts/qtquick/Levels.h"

#include <QQuickItem>

#include <algorithm>

namespace qtquick {

void Decorations::add(QQuickItem& item) {
  fill(stage_, item, decorationLevel);
  item.setEnabled(inReach_);
  connect(&item, &QObject::destroyed, this, [this](const QObject* gone) { std::erase(items_, gone); });
  items_.push_back(&item);
}

void Decorations::setInReach(bool inReach) {
  inReach_ = inReach;
  for (auto* const item : items_) item->setEnabled(inReach);
}

}  // namespace qtquick
