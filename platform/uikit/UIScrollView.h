#pragma once

#include "platform/foundation/NSTimer.h"
#include "platform/uikit/UIView.h"

class UIScrollView;

class UIScrollViewDelegate {
 public:
  virtual ~UIScrollViewDelegate() = default;
  /// The content moved: by a person, by code, or by one step of an animation.
  virtual void scrollViewDidScroll(const Strong<UIScrollView>& scrollView) = 0;
};

/// A view onto a larger content. The delegate is not kept alive. Main thread only.
class UIScrollView : public UIView {
 public:
  using UIView::UIView;
  ~UIScrollView() override;

  CGPoint contentOffset() const { return contentOffset_; }
  /// Held inside the content. Ends an animated scroll, lays the view out again and tells the delegate.
  void setContentOffset(CGPoint offset);
  CGSize contentSize() const { return contentSize_; }
  void setContentSize(CGSize size);
  /// Moves as little as it takes to bring `rect` (content coordinates) into view. Animated, it takes
  /// `animationDuration`, and each of its steps is told to the delegate. Nothing happens where it cannot move.
  void scrollRectToVisible_animated(CGRect rect, bool animated);
  bool isScrolling() const { return animation_ != nullptr; }

  void setDelegate(const Strong<UIScrollViewDelegate>& delegate) { delegate_ = delegate; }
  /// Whether a person's movement comes to rest on whole multiples of the view's width.
  bool isPagingEnabled() const { return pagingEnabled_; }
  void setPagingEnabled(bool enabled);
  bool bounces() const { return bounces_; }
  void setBounces(bool bounces) { bounces_ = bounces; }
  bool showsHorizontalScrollIndicator() const { return showsHorizontalScrollIndicator_; }
  void setShowsHorizontalScrollIndicator(bool shows) { showsHorizontalScrollIndicator_ = shows; }

  /// Seconds that an animated scroll takes where motion is wanted.
  static constexpr double animationDuration = 0.24;

 protected:
  /// As `setContentOffset`, but an animated scroll goes on.
  void moveTo(CGPoint offset);

 private:
  CGPoint held(CGPoint offset) const;
  void animateTo(CGPoint target);
  void endAnimation();

  Weak<UIScrollViewDelegate> delegate_;
  CGPoint contentOffset_;
  CGSize contentSize_;
  Strong<NSTimer> animation_;
  bool pagingEnabled_ = false;
  bool bounces_ = true;
  bool showsHorizontalScrollIndicator_ = true;
};
