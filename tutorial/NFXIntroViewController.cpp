#include "tutorial/NFXIntroViewController.h"

#include "platform/coregraphics/UIGraphics.h"
#include "platform/foundation/Console.h"
#include "platform/foundation/Values.h"
#include "platform/uikit/UIImageView.h"
#include "platform/uikit/UIScreen.h"
#include "platform/uikit/UIStoryboard.h"

#include <cmath>
#include <cstdint>
#include <limits>

namespace {

constexpr UIColor outlineGrey = UIColor::colorWithWhite_alpha(0.8, 1);
constexpr UIColor currentDotGrey = UIColor::colorWithWhite_alpha(0.6, 1);
constexpr UIColor titleGrey = UIColor::colorWithWhite_alpha(0.4, 1);
constexpr double stripAboveCentre = 50;
constexpr CGSize buttonSize{250, 50};

/// Below `upper`, keeping its own x and size.
void moveBelow(UIView& view, const UIView& upper) {
  const CGRect above = upper.frame();
  const CGRect own = view.frame();
  view.setFrame({{own.origin.x, above.origin.y + above.size.height}, own.size});
}

/// The picture behind the button while it is pressed.
Strong<UIImage> highlightImage() {
  [[maybe_unused]] constexpr UIColor neverApplied = UIColor::colorWithWhite_alpha(0.9, 1);
  UIGraphicsBeginImageContext({1, 1});
  auto* const context = UIGraphicsGetCurrentContext();
  if (context == nullptr) fatalError("no drawing context");
  CGContextFillRect(context, CGRectMake(0, 0, 1, 1));  // with the context's own colour: black
  auto image = UIGraphicsGetImageFromCurrentImageContext();
  if (!image) fatalError("no image from the drawing context");
  UIGraphicsEndImageContext();
  return image;
}

/// The page in sight; halves are rounded away from zero.
std::int64_t pageOf(const UIScrollView& strip) {
  const double page = std::round(strip.contentOffset().x / strip.frame().size.width);
  constexpr double limit = 9223372036854775808.0;  // 2^63
  if (!(page >= -limit && page < limit)) fatalError("a page that cannot be counted");
  return static_cast<std::int64_t>(page);
}

std::int64_t lastPageOf(const std::vector<Strong<NSObject>>& images) {
  return static_cast<std::int64_t>(images.size()) - 1;
}

std::string descriptionOf(const std::vector<Strong<NSObject>>& images) {
  std::string text = "[";
  for (const auto& object : images) {
    if (text.size() > 1) text += ", ";
    const auto image = std::dynamic_pointer_cast<UIImage>(object);
    text += image ? "<UIImage: " + image->name() + ">" : "<NSObject>";
  }
  return text + "]";
}

}  // namespace

NFXIntroViewController::NFXIntroViewController(const std::optional<std::string>& nibName, NSBundle* bundle)
    : UIViewController(nibName, bundle),
      _scrollview(make<UIScrollView>(UIScreen::mainScreen().bounds())),
      _button(make<UIButton>(UIScreen::mainScreen().bounds())),
      _pgcontrol(make<UIPageControl>(UIScreen::mainScreen().bounds())) {}

NFXIntroViewController::NFXIntroViewController(const NSCoder& coder)
    : UIViewController(coder),
      _scrollview(make<UIScrollView>(UIScreen::mainScreen().bounds())),
      _button(make<UIButton>(UIScreen::mainScreen().bounds())),
      _pgcontrol(make<UIPageControl>(UIScreen::mainScreen().bounds())) {}

void NFXIntroViewController::viewDidLoad() {
  UIViewController::viewDidLoad();
}

void NFXIntroViewController::didReceiveMemoryWarning() {
  UIViewController::didReceiveMemoryWarning();
}

void NFXIntroViewController::initWithViews(const std::vector<Strong<NSObject>>& images) {
  print("initWithViews : " + descriptionOf(images));
  view()->setBackgroundColor(UIColor::blackColor());
  setModalTransitionStyle(UIModalTransitionStyle::CrossDissolve);
  _images = images;
  const auto highlight = highlightImage();
  addStrip();
  addDots();
  addButton(highlight);
  addPictures();
}

void NFXIntroViewController::addStrip() {
  const CGSize size = view()->bounds().size;
  const CGPoint centre = view()->center();
  const double pageWidth = size.width / 3 + size.width / 3;
  const double pageHeight = size.height / 3 + size.height / 3;
  _scrollview->setFrame(CGRectMake(0, 0, pageWidth, pageHeight));
  _scrollview->setCenter({centre.x, centre.y - stripAboveCentre});
  _scrollview->setBackgroundColor(UIColor::blackColor());
  _scrollview->setContentSize({pageWidth * static_cast<double>(_images.size()), pageHeight});
  _scrollview->setPagingEnabled(true);
  _scrollview->setBounces(false);
  _scrollview->setDelegate(strongReference(this));
  _scrollview->layer()->setBorderColor(outlineGrey);  // the border keeps its width of 0: none is seen
  _scrollview->setShowsHorizontalScrollIndicator(false);
  _scrollview->layer()->setCornerRadius(2);
  view()->addSubview(_scrollview);
}

void NFXIntroViewController::addDots() {
  _pgcontrol->setFrame(CGRectZero);
  _pgcontrol->setPageIndicatorTintColor(outlineGrey);
  _pgcontrol->setCurrentPageIndicatorTintColor(currentDotGrey);
  _pgcontrol->setNumberOfPages(static_cast<long>(_images.size()));
  _pgcontrol->setCurrentPage(0);
  _pgcontrol->sizeToFit();
  _pgcontrol->setCenter({view()->center().x, 0});
  view()->addSubview(_pgcontrol);
  moveBelow(*_pgcontrol, *_scrollview);
}

void NFXIntroViewController::addButton(const Strong<UIImage>& highlight) {
  _button = make<UIButton>();
  _button->addTarget_action_forControlEvents(strongReference(this), &NFXIntroViewController::ButtonPushed,
                                             UIControlEvents::TouchUpInside);
  _button->setTitleColor_forState(titleGrey, UIControlState::Normal);
  _button->setTitle_forState(nextText, UIControlState::Normal);
  _button->setBackgroundImage_forState(highlight, UIControlState::Highlighted);
  _button->setClipsToBounds(true);
  _button->setFrame({{0, 0}, buttonSize});
  _button->setCenter({view()->center().x, 0});
  _button->layer()->setCornerRadius(4);
  _button->layer()->setBorderWidth(0.5);
  _button->layer()->setBorderColor(outlineGrey);
  view()->addSubview(_button);
  print("_pgcontrol : " + textOf(_pgcontrol->frame().size.height));
  moveBelow(*_button, *_pgcontrol);
}

void NFXIntroViewController::addPictures() {
  double index = 0;
  for (const auto& object : _images) {
    const auto image = std::dynamic_pointer_cast<UIImage>(object);
    if (!image) fatalError("a page of the tutorial is no image");
    const CGSize strip = _scrollview->bounds().size;
    const auto page = make<UIImageView>(CGRectMake(index * strip.width, 0, strip.width, strip.height));
    page->setContentMode(UIViewContentMode::ScaleAspectFit);
    page->setClipsToBounds(true);
    page->setImage(image);
    _scrollview->addSubview(page);
    ++index;
  }
}

void NFXIntroViewController::scrollViewDidScroll(const Strong<UIScrollView>& scrollView) {
  const std::int64_t page = pageOf(*scrollView);
  const std::int64_t numero = lastPageOf(_images);
  _button->setTitle_forState(page == numero ? startText : nextText, UIControlState::Normal);
  _pgcontrol->setCurrentPage(page);
}

void NFXIntroViewController::ButtonPushed() {
  print("ButtonPushed");
  const std::int64_t page = pageOf(*_scrollview);
  const std::int64_t numero = lastPageOf(_images);
  print("numero : " + std::to_string(numero) + "   page : " + std::to_string(page));
  if (numero == page) {
    print("self.dismissViewControllerAnimated");
    dismissViewControllerAnimated_completion(true, [self = strongReference(this)] {
      if (self->delegate2) self->delegate2->chiusoTutorial();
    });
    return;
  }
  print("if page_ != numero");
  if (page == std::numeric_limits<std::int64_t>::max()) fatalError("a page beyond the last number");
  const CGRect strip = _scrollview->frame();
  // The strip's own y is no place in its content; the content, one strip high, does not move down.
  _scrollview->scrollRectToVisible_animated(
      {{strip.size.width * static_cast<double>(page + 1), strip.origin.y}, strip.size}, true);
}
