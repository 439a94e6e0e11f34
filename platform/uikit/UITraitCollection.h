#pragma once

#include "platform/coregraphics/CGGeometry.h"

#include <optional>

enum class UIUserInterfaceSizeClass { Unspecified = 0, Compact = 1, Regular = 2 };

/// What a screen can know of the room it has.
struct UITraitCollection {
  UIUserInterfaceSizeClass horizontalSizeClass = UIUserInterfaceSizeClass::Unspecified;
  UIUserInterfaceSizeClass verticalSizeClass = UIUserInterfaceSizeClass::Unspecified;
  /// The window's size, where windows may have any size; none where an app always fills the screen, so that there
  /// only the size classes count.
  std::optional<CGSize> windowSize;
  bool operator==(const UITraitCollection&) const = default;

  static UITraitCollection forWindow(CGSize size, bool resizable);
};

/// Would run animations alongside a change of traits; there are none to run here.
struct UIViewControllerTransitionCoordinator {};
