#pragma once

#include "platform/uikit/UIView.h"

/// A view onto a larger content. Main thread only.
class UIScrollView : public UIView {
 public:
  using UIView::UIView;

  CGPoint contentOffset() const { return contentOffset_; }
  /// Held inside the content. Lays the view out again.
  void setContentOffset(CGPoint offset);
  CGSize contentSize() const { return contentSize_; }
  void setContentSize(CGSize size);

 private:
  CGPoint contentOffset_;
  CGSize contentSize_;
};
