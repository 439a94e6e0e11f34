#include "hosts/qtquick/ScrollNode.h"

#include "platform/foundation/RunLoop.h"
#include "platform/uikit/UIControl.h"

namespace qtquick {

void ScrollNode::update() {
  ViewNode::update();
  readAgain();
}

QPointF ScrollNode::offset() const {
  const auto view = viewAs<UIScrollView>();
  return view ? QPointF(view->contentOffset().x, view->contentOffset().y) : QPointF();
}

bool ScrollNode::pages() const {
  const auto view = viewAs<UIScrollView>();
  return view && view->isPagingEnabled();
}

bool ScrollNode::isScrolling() const {
  const auto view = viewAs<UIScrollView>();
  return view && view->isScrolling();
}

void ScrollNode::scrollTo(double x) const {
  const auto view = usableView();
  if (!view) return;
  const RunLoop::Turn turn(RunLoop::main());
  view->setContentOffset({x, view->contentOffset().y});
}

void ScrollNode::turnTo(double page) const {
  const auto view = usableView();
  if (!view) return;
  const CGSize size = view->bounds().size;
  const RunLoop::Turn turn(RunLoop::main());
  view->scrollRectToVisible_animated({{page * size.width, view->contentOffset().y}, size}, true);
}

QQuickItem& ScrollNode::inside() const {
  return *item().property("content").value<QQuickItem*>();
}

Strong<UIScrollView> ScrollNode::usableView() const {
  const auto view = viewAs<UIScrollView>();
  return view && acceptsInput(*view) ? view : nullptr;
}

}  // namespace qtquick
