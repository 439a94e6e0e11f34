#pragma once

#include "platform/uikit/UIImage.h"
#include "platform/uikit/UIView.h"

/// Shows a picture.
class UIImageView final : public UIView {
 public:
  using UIView::UIView;

  const Strong<UIImage>& image() const { return image_; }
  void setImage(Strong<UIImage> image);

 private:
  Strong<UIImage> image_;
};
