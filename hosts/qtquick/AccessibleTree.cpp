#include "hosts/qtquick/AccessibleTree.h"

#include <QAccessible>
#include <QQuickItem>
#include <QQuickWindow>

namespace qtquick {

namespace {

using namespace std::chrono_literals;

constexpr auto pauseBetweenLooks = 100ms;

void tell(QObject& object, QAccessible::Event what) {
  QAccessibleEvent event(&object, what);
  QAccessible::updateAccessibility(&event);
}

}  // namespace

AccessibleTree::AccessibleTree(QQuickWindow& window) : window_(window) {
  pause_.setSingleShot(true);
  pause_.setInterval(pauseBetweenLooks);
  connect(&pause_, &QTimer::timeout, this, &AccessibleTree::look);
  connect(&window, &QQuickWindow::afterAnimating, this, &AccessibleTree::noteFrame);
  // Of what has the focus before its window has it, nobody is told.
  connect(&window, &QWindow::activeChanged, this, &AccessibleTree::tellFocus, Qt::QueuedConnection);
}

void AccessibleTree::noteFrame() {
  if (QAccessible::isActive() && !pause_.isActive()) pause_.start();
}

void AccessibleTree::tellFocus() {
  auto* const focused = window_.activeFocusItem();
  if (window_.isActive() && focused != nullptr) tell(*focused, QAccessible::Focus);
}

void AccessibleTree::look() {
  auto* const root = QAccessible::queryAccessibleInterface(&window_);
  if (root == nullptr) return;
  Places places;
  collect(*root, places);
  const bool isFirstLook = known_.empty();
  const Places before = std::exchange(known_, places);
  if (isFirstLook) return;
  for (const auto& [key, place] : before) {
    if (!place.object || places.contains(key)) continue;
    if (place.isVisible) tell(*place.object, QAccessible::ObjectHide);
    tell(*place.object, QAccessible::ObjectDestroyed);
  }
  for (const auto& [key, place] : places) {
    const auto known = before.find(key);
    const bool wasThere = known != before.end() && known->second.object;
    if (wasThere || !place.object) continue;
    tell(*place.object, QAccessible::ObjectCreated);
    if (place.isVisible) tell(*place.object, QAccessible::ObjectShow);
  }
}

void AccessibleTree::collect(QAccessibleInterface& from, Places& places) {
  for (int index = 0; index < from.childCount(); ++index) {
    auto* const child = from.child(index);
    if (child == nullptr || child->object() == nullptr) continue;
    places[child->object()] = {child->object(), child->state().invisible == 0};
    collect(*child, places);
  }
}

}  // namespace qtquick
