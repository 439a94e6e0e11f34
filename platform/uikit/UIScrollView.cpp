#include "platform/uikit/UIScrollView.h"

#include "platform/Platform.h"

#include <algorithm>

namespace {

constexpr double frameInterval = 1.0 / 60;

/// The offset along one axis that shows [start, start + extent], moved as little as possible from `offset`.
double offsetShowing(double start, double extent, double offset, double visible) {
  if (start < offset) return start;
  if (start + extent > offset + visible) return start + extent - visible;
  return offset;
}

/// Starts and ends gently.
double eased(double part) {
  return part * part * (3 - 2 * part);
}

}  // namespace

// The timer ends itself: a view may outlive the run loop, when the app ends while the view is on its way.
UIScrollView::~UIScrollView() = default;

CGPoint UIScrollView::held(CGPoint offset) const {
  const CGSize visible = bounds().size;
  return {std::clamp(offset.x, 0.0, std::max(0.0, contentSize_.width - visible.width)),
          std::clamp(offset.y, 0.0, std::max(0.0, contentSize_.height - visible.height))};
}

void UIScrollView::setContentOffset(CGPoint offset) {
  endAnimation();
  moveTo(offset);
}

void UIScrollView::moveTo(CGPoint offset) {
  offset = held(offset);
  if (offset == contentOffset_) return;
  contentOffset_ = offset;
  setNeedsLayout();
  if (const auto delegate = delegate_.lock()) delegate->scrollViewDidScroll(strongReference(this));
}

void UIScrollView::setContentSize(CGSize size) {
  if (size == contentSize_) return;
  contentSize_ = size;
  moveTo(contentOffset_);
  changed();
}

void UIScrollView::setPagingEnabled(bool enabled) {
  pagingEnabled_ = enabled;
  changed();
}

void UIScrollView::scrollRectToVisible_animated(CGRect rect, bool animated) {
  const CGSize visible = bounds().size;
  const CGPoint target = held({offsetShowing(rect.origin.x, rect.size.width, contentOffset_.x, visible.width),
                               offsetShowing(rect.origin.y, rect.size.height, contentOffset_.y, visible.height)});
  if (!animated || Platform::current().ports().screen.reducesMotion()) {
    setContentOffset(target);
  } else if (!(target == contentOffset_)) {
    animateTo(target);
  }
}

void UIScrollView::animateTo(CGPoint target) {
  endAnimation();
  const auto step = [weak = weakReference(this), from = contentOffset_, target,
                     start = RunLoop::main().now()](const Strong<NSTimer>& timer) {
    const auto view = weak.lock();
    if (!view) {
      timer->invalidate();
      return;
    }
    const double part = std::min(1.0, (RunLoop::main().now() - start) / animationDuration);
    const double along = eased(part);
    if (part >= 1.0) view->endAnimation();
    view->moveTo({from.x + (target.x - from.x) * along, from.y + (target.y - from.y) * along});
  };
  animation_ = NSTimer::scheduledTimerWithTimeInterval_repeats_block(frameInterval, true, step);
}

void UIScrollView::endAnimation() {
  if (!animation_) return;
  const auto animation = std::exchange(animation_, nullptr);
  animation->invalidate();
}
