#include "hosts/desktop/BackgroundReasons.h"

#include <utility>

namespace desktop {

BackgroundReasons::BackgroundReasons(std::function<void()> entered, std::function<void()> left)
    : entered_(std::move(entered)), left_(std::move(left)) {}

void BackgroundReasons::set(BackgroundReason reason, bool holds) {
  const bool wasInBackground = holding_.any();
  holding_.set(static_cast<std::size_t>(reason), holds);
  if (holding_.any() == wasInBackground) return;
  (wasInBackground ? left_ : entered_)();
}

}  // namespace desktop
