#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QProcess>
#include <QTemporaryDir>

namespace desktop {

/// A message bus of the test's own, on which nothing but the test's services is.
class PrivateBus final {
 public:
  PrivateBus();
  ~PrivateBus();

  const QString& address() const { return address_; }
  /// One more connection to it; the same name gives the same one.
  QDBusConnection connection(const QString& name);
  /// Returns when everything that was sent to `receiver` before has arrived and been dealt with.
  static void settle(const QDBusConnection& receiver);
  /// Lets what is sent to it lie until it is resumed, from any thread.
  void suspend() const;
  void resume() const;

 private:
  QTemporaryDir folder_;
  QProcess daemon_;
  QString address_;
  QStringList connections_;
};

/// Runs the main loop until `done`, which fails the test if that never comes.
template <class Condition>
void runUntil(Condition done) {
  const QDeadlineTimer deadline(10000);
  while (!done() && !deadline.hasExpired()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
  EXPECT_TRUE(done());
}

}  // namespace desktop
