#include "platform/uikit/UIButton.h"

void UIButton::setTitle_forState(std::string title, UIControlState state) {
  looks_[state].title = std::move(title);
  changed();
}

UIColor UIButton::titleColorForState(UIControlState state) const {
  return look(state, &Look::titleColor).value_or(UIColor::whiteColor());
}

void UIButton::setTitleColor_forState(UIColor color, UIControlState state) {
  looks_[state].titleColor = color;
  changed();
}

void UIButton::setImage_forState(Strong<UIImage> image, UIControlState state) {
  looks_[state].image = std::move(image);
  changed();
}

void UIButton::setBackgroundImage_forState(Strong<UIImage> image, UIControlState state) {
  looks_[state].backgroundImage = std::move(image);
  changed();
}

void UIButton::press() {
  if (acceptsInput(*this)) sendActionsForControlEvents(UIControlEvents::TouchUpInside);
}
