#include "hosts/desktop/FolderPortal.h"

#include <QDBusMessage>
#include <QStringList>
#include <QUrl>

namespace desktop {

namespace {

const auto service = QStringLiteral("org.freedesktop.portal.Desktop");
const auto path = QStringLiteral("/org/freedesktop/portal/desktop");
const auto requestInterface = QStringLiteral("org.freedesktop.portal.Request");
const auto answered = QStringLiteral("Response");
constexpr uint chose = 0;  // of the answers that the signal knows

/// The portal derives it from who asks and the question's name, so that the answer can be listened to beforehand.
QString requestPath(const QDBusConnection& bus, const QString& question) {
  QString asker = bus.baseService().mid(1);
  return path + QStringLiteral("/request/%1/%2").arg(asker.replace(QLatin1Char('.'), QLatin1Char('_')), question);
}

}  // namespace

void FolderPortal::ask() {
  const QString name = QStringLiteral("quillop%1").arg(++questions_);
  listenTo(requestPath(bus_, name));
  auto question = QDBusMessage::createMethodCall(service, path, QStringLiteral("org.freedesktop.portal.FileChooser"),
                                                 QStringLiteral("OpenFile"));
  question << QString() << QStringLiteral("Add a folder with videos")
           << QVariantMap{{QStringLiteral("handle_token"), name}, {QStringLiteral("directory"), true}};
  bus_.send(question);
}

void FolderPortal::listenTo(const QString& request) {
  const char* const answer = SLOT(respond(uint, QVariantMap));
  if (!request_.isEmpty()) bus_.disconnect(service, request_, requestInterface, answered, this, answer);
  request_ = request;
  bus_.connect(service, request_, requestInterface, answered, this, answer);
}

void FolderPortal::respond(uint response, const QVariantMap& results) {
  const auto addresses = results.value(QStringLiteral("uris")).toStringList();
  if (response != chose || addresses.isEmpty()) return;
  const QString folder = QUrl(addresses.constFirst()).toLocalFile();
  if (!folder.isEmpty()) emit chosen(folder);
}

}  // namespace desktop
