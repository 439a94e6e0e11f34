#pragma once

#include "platform/coregraphics/CGGeometry.h"
#include "platform/foundation/NSObject.h"
#include "platform/uikit/UIColor.h"

#include <optional>
#include <vector>

class UIView;

/// One layer of the picture. A view's subviews draw through their own layers, which are among the sublayers of the
/// view's layer. Later sublayers lie above earlier ones. Main thread only.
class CALayer : public NSObject {
 public:
  CALayer() = default;
  ~CALayer() override;

  /// In the coordinates of the superlayer.
  CGRect frame() const { return frame_; }
  virtual void setFrame(CGRect frame);

  /// The list of sublayers, or none for a layer without any.
  virtual std::optional<std::vector<Strong<CALayer>>> sublayers() const;
  Strong<CALayer> superlayer() const { return superlayer_.lock(); }
  void addSublayer(const Strong<CALayer>& layer);
  /// Puts `layer` at that place, counted from the bottom; out of one it was in before.
  void insertSublayer_atIndex(const Strong<CALayer>& layer, std::size_t index);
  void removeFromSuperlayer();

  double cornerRadius() const { return cornerRadius_; }
  void setCornerRadius(double radius);
  double borderWidth() const { return borderWidth_; }
  void setBorderWidth(double width);
  UIColor borderColor() const { return borderColor_; }
  void setBorderColor(UIColor color);
  /// None unless set: a layer is see-through.
  UIColor backgroundColor() const { return backgroundColor_; }
  void setBackgroundColor(UIColor color);

  /// The view that draws through this layer; none for a layer of its own.
  UIView* view() const { return view_; }

 protected:
  /// Tells the view above that there is something to draw again.
  void changed();
  const std::vector<Strong<CALayer>>& children() const { return sublayers_; }
  /// Called on the superlayer after one of its sublayers has gone.
  virtual void didRemoveSublayer() {}

 private:
  friend class UIView;

  UIView* view_ = nullptr;
  Weak<CALayer> superlayer_;
  std::vector<Strong<CALayer>> sublayers_;
  CGRect frame_;
  double cornerRadius_ = 0;
  double borderWidth_ = 0;
  UIColor borderColor_ = UIColor::blackColor();
  UIColor backgroundColor_ = UIColor::clearColor();
};
