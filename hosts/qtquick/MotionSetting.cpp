#include "hosts/qtquick/MotionSetting.h"

namespace qtquick {

MotionSetting::MotionSetting() : reduced_(qEnvironmentVariableIntValue("QUILLOP_REDUCE_MOTION") == 1) {
  if (reduced_) return;
  animations_.emplace(PortalSetting::sessionBus(), QStringLiteral("org.gnome.desktop.interface"),
                      QStringLiteral("enable-animations"), [this](const QVariant& enabled) {
                        if (enabled.userType() == QMetaType::Bool) reduced_ = !enabled.toBool();
                      });
}

}  // namespace qtquick
