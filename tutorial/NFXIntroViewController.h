#pragma once

#include "tutorial/delegatoTutorialChiuso.h"

#include "platform/uikit/UIButton.h"
#include "platform/uikit/UIPageControl.h"
#include "platform/uikit/UIScrollView.h"
#include "platform/uikit/UIViewController.h"

#include <string>
#include <vector>

/// Pages through pictures: a strip that moves by whole pages, dots under it, and one button under the dots, "next" on
/// every page but the last and "start" there, which closes the pager. Its view is built by code.
class NFXIntroViewController final : public UIViewController, public UIScrollViewDelegate {
 public:
  explicit NFXIntroViewController(const std::optional<std::string>& nibName = std::nullopt,
                                  NSBundle* bundle = nullptr);
  explicit NFXIntroViewController(const NSCoder& coder);

  const std::string nextText = "next";
  const std::string startText = "start";
  /// Told after the pager has closed; may be none.
  Strong<delegatoTutorialChiuso> delegate2;
  Strong<UIScrollView> _scrollview;
  Strong<UIButton> _button;
  Strong<UIPageControl> _pgcontrol;
  std::vector<Strong<NSObject>> _images;

  void viewDidLoad() override;
  void didReceiveMemoryWarning() override;
  /// Builds the screen, one page per picture in order. To be called once, right after construction.
  void initWithViews(const std::vector<Strong<NSObject>>& images);
  void ButtonPushed();
  void scrollViewDidScroll(const Strong<UIScrollView>& scrollView) override;

 private:
  void addStrip();
  void addDots();
  void addButton(const Strong<UIImage>& highlight);
  void addPictures();
};
