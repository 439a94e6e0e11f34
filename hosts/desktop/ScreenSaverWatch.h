#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>

namespace desktop {

/// Whether one of the desktop's screen savers covers the screen: `service` by its name on the session bus, which is
/// also the name of its interface, with the methods and the signal of org.freedesktop.ScreenSaver.
///
/// Does nothing where the service is missing, and never starts it. Never waits for an answer, but making one may wait
/// for the bus itself.
class ScreenSaverWatch final : public QObject {
  Q_OBJECT

 public:
  ScreenSaverWatch(const QDBusConnection& sessionBus, const QString& service, const QString& path);

 signals:
  void active(bool isActive);

 private slots:
  void activeChanged(bool isActive);

 private:
  void ask(const QString& path);

  QDBusConnection bus_;
  QString service_;
  QDBusServiceWatcher owner_;
};

}  // namespace desktop
