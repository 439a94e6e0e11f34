#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QString>
#include <QVariantList>
#include <QVariantMap>

namespace desktop {

/// What a launcher wants of the app.
struct LaunchRequest {
  enum class Wish { ComeForward, OpenSettings };

  Wish wish = Wish::ComeForward;
  QString activationToken;  ///< by which the compositor lets a window come forward; empty where the launcher has none
};

/// The app as launchers see it: org.freedesktop.Application (Desktop Entry Specification 1.5, "D-Bus Activation"),
/// where the action "settings" of the desktop entry arrives. No file is ever opened through it.
///
/// Does nothing where another program has the name.
class LaunchRequests final : public QObject, protected QDBusContext {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

 public:
  /// `applicationId` is the desktop entry's name without its ending.
  LaunchRequests(QDBusConnection sessionBus, const QString& applicationId);
  ~LaunchRequests() override;

 public slots:  // for the bus
  void Activate(const QVariantMap& platformData);
  void ActivateAction(const QString& action, const QVariantList& parameters, const QVariantMap& platformData);

 signals:
  void asked(const desktop::LaunchRequest& request);

 private:
  QDBusConnection bus_;
  QString name_;
  QString path_;
};

}  // namespace desktop
