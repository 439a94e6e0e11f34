#pragma once

#include "platform/coregraphics/CGGeometry.h"

/// The room that the app has on the screen: its window.
class UIScreen {
 public:
  static UIScreen mainScreen() { return {}; }
  /// In points; empty before there is a window.
  CGRect bounds() const;
};
