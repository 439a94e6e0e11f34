#pragma once

#include "hosts/desktop/FolderChooser.h"
#include "hosts/desktop/GuardedLibrary.h"
#include "hosts/desktop/Layer.h"
#include "hosts/desktop/LibraryAccess.h"
#include "hosts/desktop/UnreadableFiles.h"

#include <QObject>
#include <QStringList>

#include <functional>
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
  Q_PROPERTY(QString contents READ contents NOTIFY contentsChanged)
  Q_PROPERTY(bool working READ isWorking NOTIFY contentsChanged)
  Q_PROPERTY(double fraction READ fraction NOTIFY contentsChanged)
  Q_PROPERTY(QString progress READ progress NOTIFY contentsChanged)
  Q_PROPERTY(QString unreadable READ unreadable NOTIFY contentsChanged)
  Q_PROPERTY(QString unlisted READ unlisted NOTIFY contentsChanged)
  Q_PROPERTY(QObject* unreadableFiles READ unreadableFiles CONSTANT)
  Q_PROPERTY(QString version READ version CONSTANT)
  Q_PROPERTY(QObject* chooser READ chooser CONSTANT)

 public:
  /// All of them outlive the page.
  SettingsPage(Layers& layers, LibraryAccess& access, GuardedLibrary& library);
  /// Has somebody else (`ask`) let the user choose a folder to be added, in place of a page of this one's own.
  void setFolderQuestion(std::function<void()> ask) { askForFolder_ = std::move(ask); }

  /// Shows the page. Does nothing while it is shown already.
  void open();
  bool isShown() const { return layer_.isShown(); }

  bool isAllowed() const;
  bool isRestricted() const;
  QString explanation() const;
  QString videosFolder() const;
  /// As they are shown.
  QStringList addedFolders() const;
  /// "37 videos", or why there is nothing to tell.
  QString contents() const;
  /// Whether files are being looked into or looked for.
  bool isWorking() const;
  /// How far that is, from 0 to 1, and the same in words.
  double fraction() const;
  QString progress() const;
  /// "3 files could not be read"; empty where there is none.
  QString unreadable() const;
  /// How many more there are than are listed, in words; empty where all are listed.
  QString unlisted() const;
  QObject* unreadableFiles() { return &unreadableFiles_; }
  QString version() const;
  QObject* chooser() { return &chooser_; }

  // For the layer.
  Q_INVOKABLE void allow(bool allows);
  /// Has somebody else ask for a folder. False where there is nobody.
  Q_INVOKABLE bool askElsewhere() const;
  Q_INVOKABLE void addChosenFolder();
  /// `place` in `addedFolders()`.
  Q_INVOKABLE void removeFolder(int place);
  Q_INVOKABLE void rescan() { library_.rescan(); }
  /// Ends the layer.
  Q_INVOKABLE void close() { layer_.endLater(); }

 signals:
  void changed();
  void contentsChanged();
  /// Escape or Back was pressed. The layer closes its inner page, or itself.
  void escapePressed();

 private:
  void update();
  void updateContents();
  void readContents();

  LibraryAccess& access_;
  GuardedLibrary& library_;
  std::function<void()> askForFolder_;
  FolderChooser chooser_;
  std::optional<medialibrary::FolderLibrary::Contents> contents_;
  medialibrary::FolderLibrary::Progress progress_;
  UnreadableFiles unreadableFiles_;
  Layer layer_;
};

}  // namespace desktop
