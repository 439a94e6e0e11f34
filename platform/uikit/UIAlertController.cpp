#include "platform/uikit/UIAlertController.h"

#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIWindow.h"

#include <algorithm>

void UIAlertController::pressAction(std::size_t index) {
  const auto window = UIApplication::sharedApplication()->keyWindow();
  if (!window || !window->isUserInteractionEnabled() || !window->isTopmostAtRest(*this)) return;
  if (index >= actions_.size()) return;
  const auto action = actions_[index];
  dismissViewControllerAnimated_completion(true, [action] {
    if (action->handler_) action->handler_(action);
  });
}

void UIAlertController::pressCancel() {
  const auto cancel = std::find_if(actions_.begin(), actions_.end(),
                                   [](const auto& action) { return action->style() == UIAlertActionStyle::Cancel; });
  pressAction(cancel == actions_.end() ? 0 : static_cast<std::size_t>(cancel - actions_.begin()));
}
