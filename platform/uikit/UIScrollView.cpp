#include "platform/uikit/UIScrollView.h"

#include <algorithm>

void UIScrollView::setContentOffset(CGPoint offset) {
  const CGSize visible = bounds().size;
  offset.x = std::clamp(offset.x, 0.0, std::max(0.0, contentSize_.width - visible.width));
  offset.y = std::clamp(offset.y, 0.0, std::max(0.0, contentSize_.height - visible.height));
  if (offset == contentOffset_) return;
  contentOffset_ = offset;
  setNeedsLayout();
}

void UIScrollView::setContentSize(CGSize size) {
  if (size == contentSize_) return;
  contentSize_ = size;
  setContentOffset(contentOffset_);
  changed();
}
