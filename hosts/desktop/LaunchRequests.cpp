#include "hosts/desktop/LaunchRequests.h"

#include <QDBusError>

#include <utility>

namespace desktop {

namespace {

/// Follows from the name, as org.freedesktop.Application has it.
QString objectPathOf(const QString& applicationId) {
  QString path = QLatin1Char('/') + applicationId;
  return path.replace(QLatin1Char('.'), QLatin1Char('/')).replace(QLatin1Char('-'), QLatin1Char('_'));
}

QString tokenIn(const QVariantMap& platformData) {
  return platformData.value(QStringLiteral("activation-token")).toString();
}

}  // namespace

LaunchRequests::LaunchRequests(QDBusConnection sessionBus, const QString& applicationId)
    : bus_(std::move(sessionBus)), name_(applicationId), path_(objectPathOf(applicationId)) {
  // The object comes first: once the name is there, what a launcher has sent already is delivered.
  bus_.registerObject(path_, this, QDBusConnection::ExportAllSlots);
  bus_.registerService(name_);
}

LaunchRequests::~LaunchRequests() {
  bus_.unregisterService(name_);
  bus_.unregisterObject(path_);
}

void LaunchRequests::Activate(const QVariantMap& platformData) {
  emit asked({LaunchRequest::Wish::ComeForward, tokenIn(platformData)});
}

void LaunchRequests::ActivateAction(const QString& action, const QVariantList& /*parameters*/,
                                    const QVariantMap& platformData) {
  if (action != QLatin1String("settings")) {
    sendErrorReply(QDBusError::InvalidArgs, QStringLiteral("There is no action \"%1\".").arg(action));
    return;
  }
  emit asked({LaunchRequest::Wish::OpenSettings, tokenIn(platformData)});
}

}  // namespace desktop
