#include "platform/uikit/UISlider.h"

#include "platform/Platform.h"

#include <algorithm>
#include <cmath>

void UISlider::setValue(float value) {
  const float held = std::isnan(value) ? minimum_ : std::clamp(value, minimum_, maximum_);
  if (held == value_) return;
  value_ = held;
  changed();
}

void UISlider::setMinimumValue(float minimum) {
  if (minimum == minimum_) return;
  minimum_ = minimum;
  maximum_ = std::max(maximum_, minimum_);
  value_ = std::max(value_, minimum_);
  changed();
}

void UISlider::setMaximumValue(float maximum) {
  if (maximum == maximum_) return;
  maximum_ = maximum;
  minimum_ = std::min(minimum_, maximum_);
  value_ = std::min(value_, maximum_);
  changed();
}

void UISlider::setTintColor(UIColor color) {
  tintColor_ = color;
  changed();
}

void UISlider::beginTracking() {
  if (!acceptsInput(*this)) return;
  scrubbing_ = Platform::current().scrubbing();
  movedWhileTracking_ = false;
  changed();
}

bool UISlider::moveTo(float value) {
  const float rounded = step_ > 0 ? std::round(value / step_) * step_ : value;
  const float before = value_;
  setValue(rounded);
  return value_ != before;
}

void UISlider::track(float value) {
  if (!isTracking() || !acceptsInput(*this) || !moveTo(value)) return;
  movedWhileTracking_ = true;
  if (continuous_) sendActionsForControlEvents(UIControlEvents::ValueChanged);
}

void UISlider::endTracking() {
  if (!isTracking()) return;
  scrubbing_ = nullptr;
  changed();
  if (movedWhileTracking_ && !continuous_) sendActionsForControlEvents(UIControlEvents::ValueChanged);
}

void UISlider::adjust(float value) {
  if (acceptsInput(*this) && moveTo(value)) sendActionsForControlEvents(UIControlEvents::ValueChanged);
}
