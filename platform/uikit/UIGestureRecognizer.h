#pragma once

#include "platform/uikit/UIView.h"

#include <functional>

/// Recognises one tap on the view that it is added to. The target is not kept alive. Main thread only.
class UITapGestureRecognizer final : public NSObject {
 public:
  template <class Target>
  static Strong<UITapGestureRecognizer> tapGestureRecognizerWithTarget_action(const Strong<Target>& target,
                                                                              void (Target::*action)()) {
    return make<UITapGestureRecognizer>(target, [raw = target.get(), action] { (raw->*action)(); });
  }

  UITapGestureRecognizer(const Strong<NSObject>& target, std::function<void()> action)
      : target_(target), action_(std::move(action)) {}

  /// Sends the action, where the target still lives.
  void recognize() const;

 private:
  Weak<NSObject> target_;
  std::function<void()> action_;
};

/// A tap on `view` at `point` (the view's coordinates), as the screen host saw it. Of the recognisers on the view
/// that was hit, or on the closest one above it that has any, the first one recognises and the others are
/// prevented. Nothing happens for a tap on a control, on something hidden, or outside the topmost screen.
void deliverTap(const Strong<UIView>& view, CGPoint point);

/// A tap on `view` itself that has no place: the keyboard's or the accessibility interface's.
void deliverTap(const Strong<UIView>& view);
