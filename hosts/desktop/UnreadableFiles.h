#pragma once

#include "hosts/medialibrary/Library.h"

#include <QAbstractListModel>

#include <vector>

namespace desktop {

/// The files that could not be read, as rows with the roles `name`, `folder` and `reason`, all of them text as it is
/// shown. Main thread.
class UnreadableFiles final : public QAbstractListModel {
  Q_OBJECT

 public:
  using Files = std::vector<medialibrary::FolderLibrary::UnreadableFile>;

  /// Views start anew only where `files` are others.
  void setFiles(Files files);

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

 private:
  Files files_;
};

}  // namespace desktop
