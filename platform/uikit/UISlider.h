#pragma once

#include "platform/uikit/UIControl.h"

class Scrubbing;

/// A value on a range, set by code and by a person. Values are single precision.
class UISlider final : public UIControl {
 public:
  using UIControl::UIControl;

  float value() const { return value_; }
  /// Held inside the range. Sends no action.
  void setValue(float value);
  float minimumValue() const { return minimum_; }
  /// Raises the maximum and the value where they would lie below.
  void setMinimumValue(float minimum);
  float maximumValue() const { return maximum_; }
  /// Lowers the minimum and the value where they would lie above.
  void setMaximumValue(float maximum);
  /// Whether the value's changes are sent while it is being dragged, not only when it is let go.
  bool isContinuous() const { return continuous_; }
  void setContinuous(bool continuous) { continuous_ = continuous; }
  UIColor tintColor() const { return tintColor_; }
  void setTintColor(UIColor color);
  /// What a person's changes are rounded to; 0 for any value. Code is not rounded.
  float step() const { return step_; }
  void setStep(float step) { step_ = step; }

  /// A finger is on the slider. Whoever draws it never moves it meanwhile.
  bool isTracking() const { return scrubbing_ != nullptr; }
  /// A finger was put on it. Nothing happens where the slider cannot be used.
  void beginTracking();
  /// The finger moved to `value`. Sends the action when the value is another and the slider is continuous.
  void track(float value);
  /// The finger was lifted. Sends the action that a slider that is not continuous kept back.
  void endTracking();
  /// A person set `value` at once, by key, wheel or the accessibility interface.
  void adjust(float value);

 private:
  bool moveTo(float value);

  float value_ = 0;
  float minimum_ = 0;
  float maximum_ = 1;
  float step_ = 0;
  UIColor tintColor_ = UIColor::whiteColor();
  bool continuous_ = true;
  Strong<Scrubbing> scrubbing_;  ///< while it is being tracked
  bool movedWhileTracking_ = false;
};
