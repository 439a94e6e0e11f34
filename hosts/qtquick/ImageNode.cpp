#include "hosts/qtquick/ImageNode.h"

#include "hosts/qtquick/Pictures.h"

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

}  // namespace qtquick
