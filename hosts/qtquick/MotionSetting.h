#pragma once

#include <QDBusVariant>
#include <QObject>

namespace qtquick {

/// Whether the desktop asks for as little motion as possible: the settings portal's
/// "org.gnome.desktop.interface" "enable-animations" (https://flatpak.github.io/xdg-desktop-portal/, Settings).
/// Asked once, without waiting, and followed from then on. Without a portal motion is welcome, unless the
/// environment variable QUILLOP_REDUCE_MOTION is 1.
class MotionSetting final : public QObject {
  Q_OBJECT

 public:
  MotionSetting();
  bool isReduced() const { return reduced_; }

 private slots:
  void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

 private:
  void ask();

  bool reduced_;
};

}  // namespace qtquick
