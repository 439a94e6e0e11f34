#pragma once

#include "hosts/qtquick/PortalSetting.h"

#include <QColor>
#include <QDBusConnection>
#include <QObject>

#include <optional>

namespace qtquick {

/// Whether the desktop asks for high contrast: "org.freedesktop.appearance" "contrast" of the settings portal, or,
/// from desktops that do not have that yet, "org.gnome.desktop.a11y.interface" "high-contrast". Followed while the
/// app runs. The environment variable QUILLOP_HIGH_CONTRAST takes the desktop's place: 1 for high contrast, 0 for
/// none.
class Contrast final : public QObject {
  Q_OBJECT
  Q_PROPERTY(bool high READ isHigh NOTIFY changed)

 public:
  explicit Contrast(const QDBusConnection& bus);
  bool isHigh() const { return appearance_ || accessibility_; }

  /// What to paint an area with that is to have the colour `usual`: black in high contrast, opaque, unless the colour
  /// is one that means something. What is not painted at all stays so.
  QColor ground(QColor usual) const;
  /// The same for texts and lines: white.
  QColor ink(QColor usual) const;

 signals:
  void changed();

 private:
  void set(bool& setting, bool isHigh);

  bool appearance_ = false;
  bool accessibility_ = false;
  std::optional<PortalSetting> appearanceSetting_;
  std::optional<PortalSetting> accessibilitySetting_;
};

}  // namespace qtquick
