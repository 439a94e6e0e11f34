#include "hosts/desktop/IdleInhibitor.h"

#include <QDBusPendingCallWatcher>
#include <QVariantMap>

#include <utility>

namespace desktop {

namespace {

const auto portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const auto portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const auto screenSaverService = QStringLiteral("org.freedesktop.ScreenSaver");
const auto screenSaverPath = QStringLiteral("/org/freedesktop/ScreenSaver");
const auto inhibit = QStringLiteral("Inhibit");
const auto reason = QStringLiteral("Playing films");
constexpr uint idle = 8;  // the portal's flag for "the session is marked idle"

QDBusMessage screenSaverCall(const QString& method) {
  return QDBusMessage::createMethodCall(screenSaverService, screenSaverPath, screenSaverService, method);
}

/// The first value of `reply`, or nothing where it is an error or of another type.
template <class Value>
std::variant<std::monostate, QDBusObjectPath, uint> promiseIn(const QDBusMessage& reply) {
  const auto values = reply.arguments();
  const bool isPromise = reply.type() == QDBusMessage::ReplyMessage && !values.isEmpty() &&
                         values.constFirst().userType() == qMetaTypeId<Value>();
  if (!isPromise) return {};
  return values.constFirst().value<Value>();
}

}  // namespace

IdleInhibitor::~IdleInhibitor() {
  giveBack();
}

void IdleInhibitor::keepAwake(bool awake) {
  wanted_ = awake;
  if (asking_) return;  // the answer that is under way settles it
  const bool isPromised = promise_.index() != 0;
  if (wanted_ && !isPromised) {
    askPortal();
  } else if (!wanted_) {
    giveBack();
  }
}

void IdleInhibitor::askPortal() {
  asking_ = true;
  auto question = QDBusMessage::createMethodCall(portalService, portalPath,
                                                 QStringLiteral("org.freedesktop.portal.Inhibit"), inhibit);
  question << QString() << idle << QVariantMap{{QStringLiteral("reason"), reason}};
  ask(question, [this](const QDBusMessage& reply) {
    auto promise = promiseIn<QDBusObjectPath>(reply);
    if (promise.index() != 0) {
      settle(std::move(promise));
    } else if (wanted_) {
      askScreenSaver();
    } else {
      settle({});
    }
  });
}

void IdleInhibitor::askScreenSaver() {
  auto question = screenSaverCall(inhibit);
  question << QStringLiteral("Quillop") << reason;
  ask(question, [this](const QDBusMessage& reply) { settle(promiseIn<Cookie>(reply)); });
}

void IdleInhibitor::ask(const QDBusMessage& question, Answer answer) {
  auto* const watcher = new QDBusPendingCallWatcher(bus_.asyncCall(question), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, answer = std::move(answer)] {
    watcher->deleteLater();
    answer(watcher->reply());
  });
}

void IdleInhibitor::settle(Promise promise) {
  asking_ = false;
  promise_ = std::move(promise);
  if (!wanted_) giveBack();
}

void IdleInhibitor::giveBack() {
  const auto promise = std::exchange(promise_, {});
  if (const auto* request = std::get_if<QDBusObjectPath>(&promise)) {
    bus_.send(QDBusMessage::createMethodCall(
        portalService, request->path(), QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Close")));
  } else if (const auto* cookie = std::get_if<Cookie>(&promise)) {
    auto call = screenSaverCall(QStringLiteral("UnInhibit"));
    call << *cookie;
    bus_.send(call);
  }
}

}  // namespace desktop
