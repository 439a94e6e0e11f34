#pragma once

#include "hosts/qtquick/PortalSetting.h"

#include <QObject>

#include <optional>

namespace qtquick {

/// How much larger than usual the desktop wants texts to be: "org.gnome.desktop.interface" "text-scaling-factor" of
/// the settings portal, between 1 and 2, followed while the app runs. Desktops that run on X11 work it into the
/// resolution that they tell the X server, by which Qt scales everything already: there the portal is not heeded a
/// second time. The environment variable QUILLOP_TEXT_SCALE takes the desktop's place.
class TextSize final : public QObject {
  Q_OBJECT
  Q_PROPERTY(double scale READ scale NOTIFY changed)

 public:
  explicit TextSize(const QDBusConnection& bus = PortalSetting::sessionBus());
  double scale() const { return scale_; }

 signals:
  void changed();

 private:
  void set(double scale);

  double scale_ = 1;
  std::optional<PortalSetting> factor_;
};

}  // namespace qtquick
