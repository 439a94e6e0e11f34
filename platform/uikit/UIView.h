#pragma once

#include "platform/coreanimation/CALayer.h"
#include "platform/uikit/LayoutRule.h"
#include "platform/uikit/UIResponder.h"

#include <optional>
#include <string>
#include <vector>

class UITapGestureRecognizer;
class UIViewController;
class UIWindow;

enum class UIViewContentMode { ScaleToFill = 0, ScaleAspectFit = 1, ScaleAspectFill = 2 };

/// A rectangle on the screen with other views in it. Main thread only.
class UIView : public UIResponder {
 public:
  explicit UIView(CGRect frame = CGRectZero);
  ~UIView() override;

  /// In the coordinates of the superview.
  CGRect frame() const { return layer_->frame(); }
  void setFrame(CGRect frame);
  /// In its own coordinates.
  CGRect bounds() const { return {{0, 0}, {frame().size.width / scale_, frame().size.height / scale_}}; }
  /// How many points of the superview one point of this view's own coordinates takes; 1 unless set. The frame is not
  /// changed by it.
  double scale() const { return scale_; }
  void setScale(double scale);
  CGPoint center() const;
  void setCenter(CGPoint center);

  bool isHidden() const { return hidden_; }
  void setHidden(bool hidden);
  long tag() const { return tag_; }
  void setTag(long tag) { tag_ = tag; }
  UIColor backgroundColor() const { return layer_->backgroundColor(); }
  void setBackgroundColor(UIColor color) { layer_->setBackgroundColor(color); }
  UIViewContentMode contentMode() const { return contentMode_; }
  void setContentMode(UIViewContentMode mode);
  bool clipsToBounds() const { return clipsToBounds_; }
  void setClipsToBounds(bool clips);
  /// What assistive technology calls the view; empty for one that it passes over.
  const std::string& accessibilityLabel() const { return accessibilityLabel_; }
  void setAccessibilityLabel(std::string label);

  const Strong<CALayer>& layer() const { return layer_; }
  Strong<UIView> superview() const { return superview_.lock(); }
  /// From the bottom to the top.
  const std::vector<Strong<UIView>>& subviews() const { return subviews_; }
  void addSubview(const Strong<UIView>& view);
  void removeFromSuperview();
  /// The view with that tag: this one, else the first below it, depth first; none when there is none.
  Strong<UIView> viewWithTag(long tag);
  /// Whether this is `other` or lies somewhere above it.
  bool contains(const UIView& other) const;
  /// The window that the view is in, or none.
  Strong<UIWindow> window() const;

  void addGestureRecognizer(const Strong<UITapGestureRecognizer>& recognizer);
  const std::vector<Strong<UITapGestureRecognizer>>& gestureRecognizers() const { return gestureRecognizers_; }
  /// The topmost visible view at `point` (own coordinates), or none outside.
  Strong<UIView> hitTest(CGPoint point);

  /// How the superview places this view; a view without a rule keeps its frame.
  const std::optional<LayoutRule>& layoutRule() const { return layoutRule_; }
  void setLayoutRule(std::optional<LayoutRule> rule);
  /// Asks for `layoutSubviews` at the end of this turn.
  void setNeedsLayout();
  /// Lays out this view and those below it, where they asked for it.
  void layoutIfNeeded();

  /// The controller whose root view this is, or none.
  Strong<UIViewController> viewController() const;

  /// Something that is drawn changed; it is drawn again with the next frame.
  void changed();

 protected:
  /// Places the subviews that have a rule.
  virtual void layoutSubviews();
  virtual void didMoveToWindow() {}
  /// The window for itself; nothing for other views.
  virtual Strong<UIWindow> asWindow() { return nullptr; }

 private:
  friend class UIViewController;
  friend class UIWindow;

  bool isInPortrait() const;

  Strong<CALayer> layer_;
  Weak<UIView> superview_;
  std::vector<Strong<UIView>> subviews_;
  std::vector<Strong<UITapGestureRecognizer>> gestureRecognizers_;
  std::optional<LayoutRule> layoutRule_;
  Weak<UIViewController> viewController_;
  std::string accessibilityLabel_;
  double scale_ = 1;
  long tag_ = 0;
  UIViewContentMode contentMode_ = UIViewContentMode::ScaleToFill;
  bool hidden_ = false;
  bool clipsToBounds_ = false;
  bool needsLayout_ = true;
  bool changeNoted_ = false;
};
