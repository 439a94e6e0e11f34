#include "platform/uikit/UIImageView.h"

void UIImageView::setImage(Strong<UIImage> image) {
  image_ = std::move(image);
  changed();
}
