#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <QVariantMap>

#include <functional>

namespace desktop {

/// What the login service says of this user's session (org.freedesktop.login1, systemd-logind or elogind): locked or
/// not, and that the system goes to sleep. Sleep waits for `readyToSleep`, as long as the service allows.
///
/// Does nothing where the service is missing. Never waits for an answer, but making one may wait for the bus itself.
class LoginSession final : public QObject {
  Q_OBJECT

 public:
  explicit LoginSession(const QDBusConnection& systemBus);

 public slots:
  /// After `sleeping(true)`: the system may sleep now.
  void readyToSleep();

 signals:
  void locked(bool isLocked);
  void sleeping(bool isAsleep);
  /// The sleep of the system can be delayed from now on.
  void sleepDelayed();

 private slots:
  void prepareForSleep(bool isAsleep);
  void lock();
  void unlock();
  void propertiesChanged(const QString& interface, const QVariantMap& changed, const QStringList& invalidated);

 private:
  using Answer = std::function<void(const QDBusMessage& reply)>;
  void ask(QDBusMessage question, Answer answer);
  void delaySleep();
  void findSession();
  void follow(const QString& session);

  QDBusConnection bus_;
  QDBusUnixFileDescriptor delay_;  ///< the system does not sleep while this is open
};

}  // namespace desktop
