#include "platform/uikit/UITraitCollection.h"

namespace {

// Below these a phone held upright, or lying, counts as compact.
constexpr double regularWidth = 600;
constexpr double regularHeight = 480;

}  // namespace

UITraitCollection UITraitCollection::forWindow(CGSize size, bool resizable) {
  using enum UIUserInterfaceSizeClass;
  UITraitCollection traits;
  traits.horizontalSizeClass = size.width < regularWidth ? Compact : Regular;
  traits.verticalSizeClass = size.height < regularHeight ? Compact : Regular;
  if (resizable) traits.windowSize = size;
  return traits;
}
