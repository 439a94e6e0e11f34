#include "hosts/desktop/SingleInstance.h"

#include <QLocalSocket>

namespace desktop {

namespace {
constexpr int patience = 1000;  // milliseconds
}

SingleInstance::SingleInstance(const QString& folder, std::function<void()> raise)
    : socket_(folder + QStringLiteral("/socket")), lock_(folder + QStringLiteral("/lock")), raise_(std::move(raise)) {
  // A lock held by a process that has died counts as free; only the process decides, not the lock's age.
  lock_.setStaleLockTime(0);
  first_ = lock_.tryLock();
  if (first_) {
    listen();
  } else if (lock_.error() == QLockFile::LockFailedError) {
    if (!tellTheOther()) takeOver();
  } else {
    first_ = true;  // no lock can be had here at all: better to run twice than not to run
  }
}

void SingleInstance::takeOver() {
  // This fails while the other one lives.
  first_ = lock_.removeStaleLockFile() && lock_.tryLock();
  if (first_) listen();
}

void SingleInstance::listen() {
  QLocalServer::removeServer(socket_);
  server_.setSocketOptions(QLocalServer::UserAccessOption);
  QObject::connect(&server_, &QLocalServer::newConnection, &server_, [this] {
    while (QLocalSocket* connection = server_.nextPendingConnection()) {
      connection->deleteLater();
      raise_();
    }
  });
  server_.listen(socket_);
}

bool SingleInstance::tellTheOther() const {
  QLocalSocket connection;
  connection.connectToServer(socket_);
  const bool isThere = connection.waitForConnected(patience);
  if (isThere) connection.disconnectFromServer();
  return isThere;
}

}  // namespace desktop
