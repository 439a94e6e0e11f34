#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

namespace desktop {

/// A walk through the user's folders, to choose one. Hidden folders, and those that may not be read, are left out.
class FolderChooser final : public QObject {
  Q_OBJECT
  Q_PROPERTY(QString shownPath READ shownPath NOTIFY moved)
  Q_PROPERTY(QStringList folders READ folders NOTIFY moved)
  Q_PROPERTY(bool hasParent READ hasParent NOTIFY moved)
  Q_PROPERTY(bool canBeChosen READ canBeChosen NOTIFY moved)

 public:
  /// The folder we are in: the home folder at first.
  const QString& path() const { return path_; }
  QString shownPath() const;
  /// The names of the folders in it, in the order of the user's language.
  const QStringList& folders() const { return folders_; }
  bool hasParent() const;
  /// Not the root of everything: a library that holds the whole system is never meant.
  bool canBeChosen() const { return hasParent(); }

  Q_INVOKABLE void goHome();
  Q_INVOKABLE void goUp();
  /// Nothing happens where `name` is none of `folders()`.
  Q_INVOKABLE void enter(const QString& name);

 signals:
  void moved();

 private:
  void go(const QString& path);

  QString path_;
  QStringList folders_;
};

/// `path` as people read it: "~" for the home folder.
QString shownFolder(const QString& path);

}  // namespace desktop
