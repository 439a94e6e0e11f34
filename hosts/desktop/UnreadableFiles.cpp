#include "hosts/desktop/UnreadableFiles.h"

#include "hosts/desktop/FolderChooser.h"
#include "hosts/probe/Text.h"

#include <QString>

#include <algorithm>

namespace desktop {

namespace {

enum Role { NameRole = Qt::UserRole, FolderRole, ReasonRole };

QString nameOf(const std::string& path) {
  return QString::fromStdString(probe::lineOfText(path.substr(path.rfind('/') + 1)));
}

QString folderOf(const std::string& path) {
  const std::string folder = path.substr(0, path.rfind('/'));
  return folder.empty() ? QStringLiteral("/") : shownFolder(QString::fromStdString(probe::lineOfText(folder)));
}

}  // namespace

void UnreadableFiles::setFiles(Files files) {
  const bool isSame = std::equal(
      files.begin(), files.end(), files_.begin(), files_.end(),
      [](const auto& left, const auto& right) { return left.path == right.path && left.reason == right.reason; });
  if (isSame) return;
  beginResetModel();
  files_ = std::move(files);
  endResetModel();
}

int UnreadableFiles::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(files_.size());
}

QVariant UnreadableFiles::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto& file = files_[static_cast<std::size_t>(index.row())];
  switch (role) {
    case NameRole:
      return nameOf(file.path);
    case FolderRole:
      return folderOf(file.path);
    case ReasonRole:
      return QString::fromStdString(file.reason);
    default:
      return {};
  }
}

QHash<int, QByteArray> UnreadableFiles::roleNames() const {
  return {{NameRole, "name"}, {FolderRole, "folder"}, {ReasonRole, "reason"}};
}

}  // namespace desktop
