#include "hosts/qtquick/PageControlNode.h"

#include "hosts/qtquick/Pictures.h"

namespace qtquick {

int PageControlNode::pages() const {
  const auto control = this->control();
  return control ? static_cast<int>(control->numberOfPages()) : 0;
}

int PageControlNode::page() const {
  const auto control = this->control();
  return control ? static_cast<int>(control->currentPage()) : 0;
}

QColor PageControlNode::tint() const {
  const auto control = this->control();
  return control ? colour(control->pageIndicatorTintColor()) : QColor(Qt::transparent);
}

QColor PageControlNode::currentTint() const {
  const auto control = this->control();
  return control ? colour(control->currentPageIndicatorTintColor()) : QColor(Qt::transparent);
}

QString PageControlNode::accessibleName() const {
  const QString name = ViewNode::accessibleName();
  if (!name.isEmpty() || pages() == 0) return name;
  return QStringLiteral("Page %1 of %2").arg(page() + 1).arg(pages());
}

}  // namespace qtquick
