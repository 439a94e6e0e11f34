#pragma once

#include "hosts/qtquick/PortalSetting.h"

#include <optional>

namespace qtquick {

/// Whether the desktop asks for as little motion as possible: "org.gnome.desktop.interface" "enable-animations" of
/// the settings portal. Without one motion is welcome, unless the environment variable QUILLOP_REDUCE_MOTION is 1.
class MotionSetting final {
 public:
  MotionSetting();
  bool isReduced() const { return reduced_; }

 private:
  bool reduced_;
  std::optional<PortalSetting> animations_;
};

}  // namespace qtquick
