#include "platform/uikit/UIControl.h"

#include "platform/uikit/UIWindow.h"

bool acceptsInput(const UIView& view) {
  for (const UIView* each = &view; each != nullptr; each = each->superview().get()) {
    if (each->isHidden()) return false;
  }
  const auto window = view.window();
  return window && window->acceptsInputIn(view);
}

void UIControl::addAction(const Strong<NSObject>& target, Action action, UIControlEvents events) {
  entries_.push_back({target, std::move(action), events});
}

void UIControl::sendActionsForControlEvents(UIControlEvents events) {
  const auto self = strongReference(this);
  const auto entries = entries_;
  for (const auto& entry : entries) {
    if (entry.events != events) continue;
    if (const auto target = entry.target.lock()) entry.action(self);
  }
}
