#include "platform/uikit/UIPageControl.h"

#include <algorithm>

void UIPageControl::setNumberOfPages(long pages) {
  numberOfPages_ = std::max(0L, pages);
  setCurrentPage(currentPage_);
  changed();
}

void UIPageControl::setCurrentPage(long page) {
  currentPage_ = std::clamp(page, 0L, std::max(0L, numberOfPages_ - 1));
  changed();
}

void UIPageControl::setPageIndicatorTintColor(UIColor color) {
  tint_ = color;
  changed();
}

void UIPageControl::setCurrentPageIndicatorTintColor(UIColor color) {
  currentTint_ = color;
  changed();
}

void UIPageControl::sizeToFit() {
  setFrame({frame().origin, {static_cast<double>(numberOfPages_) * dotPitch, height}});
}
