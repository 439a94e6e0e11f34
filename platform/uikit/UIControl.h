#pragma once

#include "platform/uikit/UIView.h"

#include <functional>
#include <vector>

enum class UIControlEvents : unsigned { TouchUpInside = 1U << 6U, ValueChanged = 1U << 12U };

/// Whether anything hidden or behind another screen keeps `view` from being used. Input of every kind, the
/// accessibility interface included, passes here.
bool acceptsInput(const UIView& view);

/// A view that sends actions when it is used. Targets are not kept alive. Main thread only.
class UIControl : public UIView {
 public:
  using UIView::UIView;
  using Action = std::function<void(const Strong<UIControl>& sender)>;

  template <class Target>
  void addTarget_action_forControlEvents(const Strong<Target>& target,
                                         void (Target::*action)(const Strong<UIControl>& sender),
                                         UIControlEvents events) {
    addAction(
        target, [raw = target.get(), action](const Strong<UIControl>& sender) { (raw->*action)(sender); }, events);
  }
  template <class Target>
  void addTarget_action_forControlEvents(const Strong<Target>& target, void (Target::*action)(),
                                         UIControlEvents events) {
    addAction(
        target, [raw = target.get(), action](const Strong<UIControl>&) { (raw->*action)(); }, events);
  }
  void addAction(const Strong<NSObject>& target, Action action, UIControlEvents events);

  /// Calls the actions for `events`, in the order in which they were added.
  void sendActionsForControlEvents(UIControlEvents events);

 private:
  struct Entry {
    Weak<NSObject> target;
    Action action;
    UIControlEvents events;
  };
  std::vector<Entry> entries_;
};
