#pragma once

#include "platform/uikit/UIView.h"

#include <optional>
#include <string>

/// On which side of its source rectangle a hint balloon lies.
enum class PopTipDirection { Up = 0, Down = 1, Left = 2, Right = 3, None = 4 };

/// A hint balloon: a short text in a bubble that points at something. It takes no touches. Main thread only.
class PopTip final : public UIView {
 public:
  PopTip() = default;

  /// Shows the balloon in `container`, on that side of `sourceRect` (the container's coordinates), no wider than
  /// `maxWidth` points, for `duration` seconds, or until `hide` where there is none. Shown again it moves.
  void show(const std::string& text, PopTipDirection direction, double maxWidth, const Strong<UIView>& container,
            CGRect sourceRect, std::optional<double> duration = std::nullopt);
  /// Takes the balloon away, at once, forced or not. Nothing happens while it is not shown.
  void hide(bool forced = false);

  bool isVisible() const { return superview() != nullptr; }
  const std::string& text() const { return text_; }
  PopTipDirection direction() const { return direction_; }
  double maxWidth() const { return maxWidth_; }
  CGRect sourceRect() const { return sourceRect_; }

 private:
  std::string text_;
  PopTipDirection direction_ = PopTipDirection::None;
  double maxWidth_ = 0;
  CGRect sourceRect_;
  unsigned showing_ = 0;
};
