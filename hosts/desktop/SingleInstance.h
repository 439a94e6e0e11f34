#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QString>

#include <functional>

namespace desktop {

/// Makes sure that one user runs the app once: a second start tells the first one to come forward.
class SingleInstance final {
 public:
  /// `folder` holds the lock and the socket. `raise` runs on the main thread when another start asked for the window.
  SingleInstance(const QString& folder, std::function<void()> raise);

  /// Whether this process is the one that goes on. If not, the other one was told, and this one should end.
  bool isFirst() const { return first_; }

 private:
  void listen();
  /// False where nobody listens.
  bool tellTheOther() const;
  /// Takes the place of one that has died, which the lock alone does not always tell: it names a process by its
  /// number, and in a sandbox that is the same at each start.
  void takeOver();

  QString socket_;
  QLockFile lock_;
  QLocalServer server_;
  std::function<void()> raise_;
  bool first_ = false;
};

}  // namespace desktop
