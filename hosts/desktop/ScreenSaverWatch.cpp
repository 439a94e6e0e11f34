#include "hosts/desktop/ScreenSaverWatch.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace desktop {

ScreenSaverWatch::ScreenSaverWatch(const QDBusConnection& sessionBus, const QString& service, const QString& path)
    : bus_(sessionBus), service_(service), owner_(service, sessionBus, QDBusServiceWatcher::WatchForUnregistration) {
  // At any path: some send it from a path of their own as well.
  bus_.connect(service_, QString(), service_, QStringLiteral("ActiveChanged"), this, SLOT(activeChanged(bool)));
  connect(&owner_, &QDBusServiceWatcher::serviceUnregistered, this, [this] { emit active(false); });
  ask(path);
}

void ScreenSaverWatch::ask(const QString& path) {
  auto question = QDBusMessage::createMethodCall(service_, path, service_, QStringLiteral("GetActive"));
  question.setAutoStartService(false);
  auto* const watcher = new QDBusPendingCallWatcher(bus_.asyncCall(question), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
    const QDBusPendingReply<bool> reply = *watcher;
    if (reply.isValid()) emit active(reply.value());
    watcher->deleteLater();
  });
}

void ScreenSaverWatch::activeChanged(bool isActive) {
  emit active(isActive);
}

}  // namespace desktop
