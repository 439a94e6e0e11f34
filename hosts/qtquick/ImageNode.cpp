#include "hosts/qtquick/ImageNode.h"

#include "hosts/qtquick/Pictures.h"
#include "platform/uikit/UIScrollView.h"

namespace qtquick {

QColor ImageNode::color() const {
  const auto view = imageView();
  const auto picture = view ? pictureColour(view->image()) : std::nullopt;
  return picture.value_or(ViewNode::color());
}

QUrl ImageNode::picture() const {
  const auto view = imageView();
  return view ? pictureUrl(view->image()) : QUrl();
}

int ImageNode::fillMode() const {
  // Both enumerations count stretch, fit, crop from 0.
  const auto view = imageView();
  return view ? static_cast<int>(view->contentMode()) : 0;
}

QString ImageNode::accessibleName() const {
  const QString own = ViewNode::accessibleName();
  const auto view = imageView();
  return own.isEmpty() && view && view->image() ? QString::fromStdString(view->image()->accessibilityLabel()) : own;
}

bool ImageNode::isInSight() const {
  const auto view = imageView();
  const auto strip = view ? std::dynamic_pointer_cast<UIScrollView>(view->superview()) : nullptr;
  if (!strip) return true;
  // Half a point is what rounding leaves of the page beside.
  const double left = view->frame().origin.x - strip->contentOffset().x;
  return left < strip->bounds().size.width - 0.5 && left + view->frame().size.width > 0.5;
}

}  // namespace qtquick
