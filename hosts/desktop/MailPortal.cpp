#include "hosts/desktop/MailPortal.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QStringList>
#include <QTextDocumentFragment>
#include <QVariantMap>

#include <utility>

namespace desktop {

namespace {

const auto connectionName = QStringLiteral("quillop-mail");

QDBusMessage questionFor(const host::MailDraft& draft) {
  QStringList recipients;
  for (const auto& recipient : draft.recipients) recipients << QString::fromStdString(recipient);
  const QString body = QString::fromStdString(draft.body);
  const QVariantMap options{
      {QStringLiteral("addresses"), recipients},
      {QStringLiteral("subject"), QString::fromStdString(draft.subject)},
      {QStringLiteral("body"), draft.isHTML ? QTextDocumentFragment::fromHtml(body).toPlainText() : body}};
  auto question = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.portal.Desktop"), QStringLiteral("/org/freedesktop/portal/desktop"),
      QStringLiteral("org.freedesktop.portal.Email"), QStringLiteral("ComposeEmail"));
  return question << QString() << options;
}

/// Waits for the answer.
bool isTaken(const QString& sessionBus, const QDBusMessage& question) {
  const auto answer = QDBusConnection::connectToBus(sessionBus, connectionName).call(question);
  QDBusConnection::disconnectFromBus(connectionName);
  return answer.type() == QDBusMessage::ReplyMessage;
}

}  // namespace

MailPortal::MailPortal(host::MainLoop& mainLoop, QString sessionBus)
    : mainLoop_(mainLoop), sessionBus_(std::move(sessionBus)) {}

MailPortal::~MailPortal() {
  if (question_.joinable()) question_.join();
}

void MailPortal::compose(const host::MailDraft& draft, std::function<void(bool)> done) {
  if (question_.joinable()) question_.join();  // long done: the app waits for `done` before it writes another mail
  question_ = std::thread([this, question = questionFor(draft), tell = std::move(done)]() mutable {
    const bool handedOver = isTaken(sessionBus_, question);
    mainLoop_.post([tell = std::move(tell), handedOver] { tell(handedOver); });
  });
}

}  // namespace desktop
