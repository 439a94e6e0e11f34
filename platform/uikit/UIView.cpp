#include "platform/uikit/UIView.h"

#include "platform/uikit/UIGestureRecognizer.h"
#include "platform/uikit/UIViewController.h"
#include "platform/uikit/UIWindow.h"

#include <algorithm>

UIView::UIView(CGRect frame) : layer_(make<CALayer>()) {
  layer_->view_ = this;
  layer_->frame_ = frame;
}

UIView::~UIView() {
  layer_->view_ = nullptr;
}

void UIView::setFrame(CGRect frame) {
  if (frame == layer_->frame()) return;
  const bool resized = !(frame.size == layer_->frame().size);
  layer_->setFrame(frame);
  if (resized) setNeedsLayout();
}

void UIView::setScale(double scale) {
  if (scale == scale_) return;
  scale_ = scale;
  changed();
}

CGPoint UIView::center() const {
  const CGRect rect = frame();
  return {rect.origin.x + rect.size.width / 2, rect.origin.y + rect.size.height / 2};
}

void UIView::setCenter(CGPoint center) {
  const CGSize size = frame().size;
  setFrame({{center.x - size.width / 2, center.y - size.height / 2}, size});
}

void UIView::setHidden(bool hidden) {
  if (hidden_ == hidden) return;
  hidden_ = hidden;
  changed();
}

void UIView::setContentMode(UIViewContentMode mode) {
  contentMode_ = mode;
  changed();
}

void UIView::setClipsToBounds(bool clips) {
  clipsToBounds_ = clips;
  changed();
}

void UIView::setAccessibilityLabel(std::string label) {
  accessibilityLabel_ = std::move(label);
  changed();
}

void UIView::addSubview(const Strong<UIView>& view) {
  const auto keepAlive = view;
  view->removeFromSuperview();
  subviews_.push_back(view);
  view->superview_ = weakReference(this);
  layer_->addSublayer(view->layer_);
  setNeedsLayout();
  view->setNeedsLayout();
  view->changed();
  view->didMoveToWindow();
}

void UIView::removeFromSuperview() {
  const auto above = superview_.lock();
  if (!above) return;
  const auto keepAlive = shared_from_this();
  std::erase_if(above->subviews_, [this](const auto& view) { return view.get() == this; });
  superview_.reset();
  layer_->removeFromSuperlayer();
  above->changed();
  didMoveToWindow();
}

Strong<UIView> UIView::viewWithTag(long tag) {
  if (tag_ == tag) return strongReference(this);
  for (const auto& view : subviews_) {
    if (auto found = view->viewWithTag(tag)) return found;
  }
  return nullptr;
}

bool UIView::contains(const UIView& other) const {
  if (&other == this) return true;
  const auto above = other.superview();
  return above && contains(*above);
}

Strong<UIWindow> UIView::window() const {
  auto view = std::const_pointer_cast<UIView>(std::static_pointer_cast<const UIView>(shared_from_this()));
  while (const auto above = view->superview()) view = above;
  return view->asWindow();
}

void UIView::addGestureRecognizer(const Strong<UITapGestureRecognizer>& recognizer) {
  gestureRecognizers_.push_back(recognizer);
  changed();
}

Strong<UIView> UIView::hitTest(CGPoint point) {
  if (hidden_ || !bounds().contains(point)) return nullptr;
  for (auto each = subviews_.rbegin(); each != subviews_.rend(); ++each) {
    const CGPoint origin = (*each)->frame().origin;
    const double scale = (*each)->scale();
    if (auto found = (*each)->hitTest({(point.x - origin.x) / scale, (point.y - origin.y) / scale})) return found;
  }
  return strongReference(this);
}

void UIView::setLayoutRule(std::optional<LayoutRule> rule) {
  layoutRule_ = rule;
  if (const auto above = superview_.lock()) above->setNeedsLayout();
}

void UIView::setNeedsLayout() {
  needsLayout_ = true;
  changed();
}

void UIView::layoutIfNeeded() {
  const auto keepAlive = shared_from_this();
  if (needsLayout_) {
    needsLayout_ = false;
    const auto controller = viewController();
    if (controller) controller->viewWillLayoutSubviews();
    layoutSubviews();
    if (controller) controller->viewDidLayoutSubviews();
  }
  const auto views = subviews_;
  for (const auto& view : views) view->layoutIfNeeded();
}

bool UIView::isInPortrait() const {
  // The screen that a view belongs to decides, not the view's own shape.
  const UIView* screen = this;
  while (screen->viewController_.expired()) {
    const auto above = screen->superview_.lock();
    if (!above) break;
    screen = above.get();
  }
  return screen->frame().size.height > screen->frame().size.width;
}

void UIView::layoutSubviews() {
  const bool portrait = isInPortrait();
  for (const auto& view : subviews_) {
    if (!view->layoutRule_) continue;
    const auto& place = portrait ? view->layoutRule_->portrait : view->layoutRule_->landscape;
    view->setFrame(place.in(bounds().size));
  }
}

Strong<UIViewController> UIView::viewController() const {
  return viewController_.lock();
}

void UIView::changed() {
  if (weak_from_this().expired()) return;  // still being made: nobody can have drawn it
  if (const auto window = this->window()) window->noteChange(*this);
}
