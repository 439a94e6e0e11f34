#include "platform/uikit/UILabel.h"

void UILabel::setText(std::optional<std::string> text) {
  if (text_ == text) return;
  text_ = std::move(text);
  changed();
}

void UILabel::setTextColor(UIColor color) {
  if (textColor_ == color) return;
  textColor_ = color;
  changed();
}

void UILabel::setFontSize(double size) {
  fontSize_ = size;
  changed();
}

void UILabel::setBold(bool bold) {
  bold_ = bold;
  changed();
}

void UILabel::setTextAlignment(NSTextAlignment alignment) {
  alignment_ = alignment;
  changed();
}
