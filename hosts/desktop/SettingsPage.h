#pragma once

#include "hosts/desktop/FolderChooser.h"
#include "hosts/desktop/Layers.h"
#include "hosts/desktop/LibraryAccess.h"
#include "hosts/medialibrary/Library.h"

#include <QObject>
#include <QQuickItem>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

namespace desktop {

/// The app's page in the system's settings: access to the media library, the folders that make it up, what it holds,
/// and the version. Every change takes effect at once. Main thread.
class SettingsPage final : public QObject {
  Q_OBJECT
  Q_PROPERTY(bool allowed READ isAllowed NOTIFY changed)
  Q_PROPERTY(bool restricted READ isRestricted NOTIFY changed)
  Q_PROPERTY(QString explanation READ explanation NOTIFY changed)
  Q_PROPERTY(QString videosFolder READ videosFolder NOTIFY changed)
  Q_PROPERTY(QStringList addedFolders READ addedFolders NOTIFY changed)
  Q_PROPERTY(QString contents READ contents NOTIFY changed)
  Q_PROPERTY(QString version READ version CONSTANT)
  Q_PROPERTY(QObject* chooser READ chooser CONSTANT)

 public:
  /// What the library holds now; none without access.
  using Contents = std::function<std::optional<medialibrary::FolderLibrary::Contents>()>;

  /// `layers` and `access` outlive the page.
  SettingsPage(Layers& layers, LibraryAccess& access, Contents contents);

  /// Shows the page. Does nothing while it is shown already.
  void open();
  bool isShown() const { return layer_ != nullptr; }

  bool isAllowed() const;
  bool isRestricted() const;
  QString explanation() const;
  QString videosFolder() const;
  /// As they are shown.
  QStringList addedFolders() const;
  QString contents() const { return contents_; }
  QString version() const;
  QObject* chooser() { return &chooser_; }

  // For the layer.
  Q_INVOKABLE void allow(bool allows);
  Q_INVOKABLE void addChosenFolder();
  /// `place` in `addedFolders()`.
  Q_INVOKABLE void removeFolder(int place);
  /// Takes effect once the event that led here is dealt with, since it ends the layer.
  Q_INVOKABLE void close();

 signals:
  void changed();
  /// Escape or Back was pressed. The layer closes its inner page, or itself.
  void escapePressed();

 private:
  void update();
  void count();

  Layers& layers_;
  LibraryAccess& access_;
  Contents countContents_;
  FolderChooser chooser_;
  QString contents_;
  QTimer countAgain_;
  std::unique_ptr<QQuickItem> layer_;
};

}  // namespace desktop
