#include "hosts/desktop/LoginSession.h"

#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

namespace desktop {

namespace {

const auto service = QStringLiteral("org.freedesktop.login1");
const auto managerPath = QStringLiteral("/org/freedesktop/login1");
const auto managerInterface = QStringLiteral("org.freedesktop.login1.Manager");
const auto sessionInterface = QStringLiteral("org.freedesktop.login1.Session");
const auto propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");
const auto lockedHint = QStringLiteral("LockedHint");

QDBusMessage managerCall(const QString& method) {
  return QDBusMessage::createMethodCall(service, managerPath, managerInterface, method);
}

/// A program started by the user's service manager belongs to no session; "auto" is then the one on the display.
QString sessionName() {
  const QString own = qEnvironmentVariable("XDG_SESSION_ID");
  return own.isEmpty() ? QStringLiteral("auto") : own;
}

}  // namespace

LoginSession::LoginSession(const QDBusConnection& systemBus) : bus_(systemBus) {
  bus_.connect(service, managerPath, managerInterface, QStringLiteral("PrepareForSleep"), this,
               SLOT(prepareForSleep(bool)));
  delaySleep();
  findSession();
}

/// Where no reply comes, or an empty one, `answer` is not called.
void LoginSession::ask(QDBusMessage question, Answer answer) {
  auto* const watcher = new QDBusPendingCallWatcher(bus_.asyncCall(question), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, answer = std::move(answer)] {
    const auto reply = watcher->reply();
    if (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty()) answer(reply);
    watcher->deleteLater();
  });
}

void LoginSession::delaySleep() {
  auto question = managerCall(QStringLiteral("Inhibit"));
  question << QStringLiteral("sleep") << QStringLiteral("Quillop") << QStringLiteral("The films are paused first")
           << QStringLiteral("delay");
  ask(question, [this](const QDBusMessage& reply) {
    delay_ = reply.arguments().constFirst().value<QDBusUnixFileDescriptor>();
    if (delay_.isValid()) emit sleepDelayed();
  });
}

void LoginSession::readyToSleep() {
  delay_ = QDBusUnixFileDescriptor();
}

void LoginSession::prepareForSleep(bool isAsleep) {
  if (!isAsleep) delaySleep();
  emit sleeping(isAsleep);
}

void LoginSession::findSession() {
  auto question = managerCall(QStringLiteral("GetSession"));
  question << sessionName();
  ask(question,
      [this](const QDBusMessage& reply) { follow(reply.arguments().constFirst().value<QDBusObjectPath>().path()); });
}

void LoginSession::follow(const QString& session) {
  if (session.isEmpty()) return;
  bus_.connect(service, session, sessionInterface, QStringLiteral("Lock"), this, SLOT(lock()));
  bus_.connect(service, session, sessionInterface, QStringLiteral("Unlock"), this, SLOT(unlock()));
  bus_.connect(service, session, propertiesInterface, QStringLiteral("PropertiesChanged"), this,
               SLOT(propertiesChanged(QString, QVariantMap, QStringList)));
  auto question = QDBusMessage::createMethodCall(service, session, propertiesInterface, QStringLiteral("Get"));
  question << sessionInterface << lockedHint;
  ask(question, [this](const QDBusMessage& reply) {
    emit locked(reply.arguments().constFirst().value<QDBusVariant>().variant().toBool());
  });
}

void LoginSession::lock() {
  emit locked(true);
}

void LoginSession::unlock() {
  emit locked(false);
}

void LoginSession::propertiesChanged(const QString& interface, const QVariantMap& changed,
                                     const QStringList& /*invalidated*/) {
  if (interface != sessionInterface || !changed.contains(lockedHint)) return;
  emit locked(changed.value(lockedHint).toBool());
}

}  // namespace desktop
