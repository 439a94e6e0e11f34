#include "platform/uikit/UIScreen.h"

#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIWindow.h"

CGRect UIScreen::bounds() const {
  const auto window = UIApplication::sharedApplication()->keyWindow();
  return window ? window->bounds() : CGRectZero;
}
