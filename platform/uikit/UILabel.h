#pragma once

#include "platform/uikit/UIView.h"

#include <optional>
#include <string>

enum class NSTextAlignment { Left = 0, Center = 1, Right = 2 };

/// One line or more of text.
class UILabel final : public UIView {
 public:
  using UIView::UIView;

  /// None for an empty label.
  const std::optional<std::string>& text() const { return text_; }
  void setText(std::optional<std::string> text);
  UIColor textColor() const { return textColor_; }
  void setTextColor(UIColor color);
  /// Points.
  double fontSize() const { return fontSize_; }
  void setFontSize(double size);
  bool isBold() const { return bold_; }
  void setBold(bool bold);
  NSTextAlignment textAlignment() const { return alignment_; }
  void setTextAlignment(NSTextAlignment alignment);

 private:
  std::optional<std::string> text_;
  UIColor textColor_ = UIColor::whiteColor();
  double fontSize_ = 17;
  bool bold_ = false;
  NSTextAlignment alignment_ = NSTextAlignment::Left;
};
