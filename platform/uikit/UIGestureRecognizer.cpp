#include "platform/uikit/UIGestureRecognizer.h"

#include "platform/uikit/UIControl.h"

void UITapGestureRecognizer::recognize() const {
  const auto target = target_.lock();
  if (target) action_();
}

namespace {

bool isPartOfAControl(const UIView& view) {
  if (dynamic_cast<const UIControl*>(&view) != nullptr) return true;
  const auto above = view.superview();
  return above && isPartOfAControl(*above);
}

}  // namespace

void deliverTap(const Strong<UIView>& view, CGPoint point) {
  if (const auto hit = view->hitTest(point)) deliverTap(hit);
}

void deliverTap(const Strong<UIView>& view) {
  if (!acceptsInput(*view) || isPartOfAControl(*view)) return;
  for (auto each = view; each; each = each->superview()) {
    if (each->gestureRecognizers().empty()) continue;
    const auto recognizer = each->gestureRecognizers().front();
    recognizer->recognize();
    return;
  }
}
