#include "hosts/desktop/FolderChooser.h"

#include <QDir>

namespace desktop {

QString FolderChooser::shownPath() const {
  return shownFolder(path_);
}

bool FolderChooser::hasParent() const {
  return !QDir(path_).isRoot();
}

void FolderChooser::goHome() {
  go(QDir::homePath());
}

void FolderChooser::goUp() {
  if (hasParent()) go(QDir::cleanPath(path_ + QStringLiteral("/..")));
}

void FolderChooser::enter(const QString& name) {
  if (folders_.contains(name)) go(QDir(path_).filePath(name));
}

void FolderChooser::go(const QString& path) {
  path_ = path;
  folders_ = QDir(path).entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::Readable,
                                  QDir::Name | QDir::IgnoreCase | QDir::LocaleAware);
  emit moved();
}

QString shownFolder(const QString& path) {
  const QString home = QDir::homePath();
  if (path == home) return QStringLiteral("~");
  return path.startsWith(home + QLatin1Char('/')) ? QLatin1Char('~') + path.mid(home.size()) : path;
}

}  // namespace desktop
