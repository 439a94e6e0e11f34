#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QVariantMap>

namespace desktop {

/// Lets the user choose a folder that a sandboxed app does not see yet: the portal's FileChooser
/// (https://flatpak.github.io/xdg-desktop-portal/, version 3), which lets the app read it from then on, under a path
/// of the portal's own.
///
/// Does nothing where there is no portal. Never waits.
class FolderPortal final : public QObject {
  Q_OBJECT

 public:
  explicit FolderPortal(const QDBusConnection& sessionBus) : bus_(sessionBus) {}

  /// Has the desktop ask. Asked again before the user has answered, only the later question counts.
  void ask();

 signals:
  /// Not where the user chose nothing.
  void chosen(const QString& folder);

 private slots:
  void respond(uint response, const QVariantMap& results);

 private:
  void listenTo(const QString& request);

  QDBusConnection bus_;
  int questions_ = 0;
  QString request_;  ///< the path of the last question's object at the portal
};

}  // namespace desktop
