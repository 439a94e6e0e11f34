#pragma once

#include "hosts/desktop/JsonFile.h"
#include "platform/host/MediaLibrary.h"

#include <QObject>
#include <QStringList>

#include <optional>
#include <string>
#include <vector>

namespace desktop {

/// Whether the app may read the media library, and of which folders that is made: what the user answered and added,
/// in one JSON file, under what an administrator and the file system allow. Main thread.
///
/// Every change is written through a temporary file, so that a crash or a full disk leaves the old or the new state.
/// A file that cannot be understood is set aside under the same name with ".damaged" behind it: then nobody was asked
/// yet, and no folder was added.
class LibraryAccess final : public QObject {
  Q_OBJECT

 public:
  enum class Answer { Denied, Authorised };
  enum class Restriction { None, Policy, UnreadableFolder };

  /// The answer is kept in the file `path`, policies are looked for in `policyFolders`, and `videosFolder`, which
  /// need not exist, is always part of the library.
  LibraryAccess(QString path, QStringList policyFolders, QString videosFolder);

  /// What holds now. Restrictions come first, whatever the user answered, and are looked up at each call.
  host::LibraryAccess status() const;
  Restriction restriction() const;
  /// Remembers the user's answer. On return it is on disk, or the failure was told on standard error and the answer
  /// holds for this run.
  void setAnswer(Answer answer);

  const QString& videosFolder() const { return videosFolder_; }
  /// In the order in which they were added, without the videos folder.
  const QStringList& addedFolders() const { return addedFolders_; }
  /// Adds the absolute path `folder`. Nothing happens where it is part of the library already.
  void addFolder(const QString& folder);
  /// Nothing happens where it was not added.
  void removeFolder(const QString& folder);
  /// The videos folder and what was added, as file names.
  std::vector<std::string> folders() const;

 signals:
  void answered();
  void foldersChanged();

 private:
  void load();
  void save() const;

  JsonFile file_;
  QStringList policyFolders_;
  QString videosFolder_;
  std::optional<Answer> answer_;
  QStringList addedFolders_;
};

}  // namespace desktop
