#pragma once

#include "platform/uikit/UIControl.h"

/// A row of dots, one per page. It takes no taps.
class UIPageControl final : public UIControl {
 public:
  using UIControl::UIControl;

  static constexpr double height = 26;
  static constexpr double dotPitch = 16;

  long numberOfPages() const { return numberOfPages_; }
  void setNumberOfPages(long pages);
  long currentPage() const { return currentPage_; }
  /// Held between 0 and the last page.
  void setCurrentPage(long page);
  UIColor pageIndicatorTintColor() const { return tint_; }
  void setPageIndicatorTintColor(UIColor color);
  UIColor currentPageIndicatorTintColor() const { return currentTint_; }
  void setCurrentPageIndicatorTintColor(UIColor color);
  /// As wide as its dots need and as high as every page control, in place.
  void sizeToFit();

 private:
  long numberOfPages_ = 0;
  long currentPage_ = 0;
  UIColor tint_ = UIColor::colorWithWhite_alpha(1, 0.3);
  UIColor currentTint_ = UIColor::whiteColor();
};
