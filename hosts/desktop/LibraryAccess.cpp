#include "hosts/desktop/LibraryAccess.h"

#include "hosts/desktop/LibraryPolicy.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace desktop {

namespace {

const auto answerKey = QStringLiteral("access");
const auto foldersKey = QStringLiteral("folders");
const auto authorised = QStringLiteral("authorised");
const auto denied = QStringLiteral("denied");

/// A folder that is not there restricts nobody: it is empty.
bool isKeptFromUs(const QString& folder) {
  const bool mayRead = ::faccessat(AT_FDCWD, QFile::encodeName(folder).constData(), R_OK | X_OK, AT_EACCESS) == 0;
  return !mayRead && errno == EACCES;
}

}  // namespace

LibraryAccess::LibraryAccess(QString path, QStringList policyFolders, QString videosFolder)
    : file_(std::move(path), "the answer about the media library"),
      policyFolders_(std::move(policyFolders)),
      videosFolder_(std::move(videosFolder)) {
  load();
}

host::LibraryAccess LibraryAccess::status() const {
  if (restriction() != Restriction::None) return host::LibraryAccess::Restricted;
  if (!answer_) return host::LibraryAccess::NotDetermined;
  return *answer_ == Answer::Authorised ? host::LibraryAccess::Authorised : host::LibraryAccess::Denied;
}

LibraryAccess::Restriction LibraryAccess::restriction() const {
  if (policyRestrictsLibrary(policyFolders_)) return Restriction::Policy;
  return isKeptFromUs(videosFolder_) ? Restriction::UnreadableFolder : Restriction::None;
}

void LibraryAccess::setAnswer(Answer answer) {
  if (answer_ == answer) return;
  answer_ = answer;
  save();
  emit answered();
}

void LibraryAccess::addFolder(const QString& folder) {
  const QString clean = QDir::cleanPath(folder);
  if (!QDir::isAbsolutePath(clean) || clean == videosFolder_ || addedFolders_.contains(clean)) return;
  addedFolders_ << clean;
  save();
  emit foldersChanged();
}

void LibraryAccess::removeFolder(const QString& folder) {
  if (addedFolders_.removeAll(folder) == 0) return;
  save();
  emit foldersChanged();
}

std::vector<std::string> LibraryAccess::folders() const {
  std::vector<std::string> names{QFile::encodeName(videosFolder_).toStdString()};
  for (const auto& folder : addedFolders_) names.push_back(QFile::encodeName(folder).toStdString());
  return names;
}

void LibraryAccess::load() {
  const QJsonObject contents = file_.read();
  const QString answer = contents.value(answerKey).toString();
  if (answer == authorised) answer_ = Answer::Authorised;
  if (answer == denied) answer_ = Answer::Denied;
  for (const auto& folder : contents.value(foldersKey).toArray()) {
    if (QDir::isAbsolutePath(folder.toString())) addedFolders_ << folder.toString();
  }
}

void LibraryAccess::save() const {
  QJsonObject contents{{foldersKey, QJsonArray::fromStringList(addedFolders_)}};
  if (answer_) contents.insert(answerKey, *answer_ == Answer::Authorised ? authorised : denied);
  file_.write(contents);
}

}  // namespace desktop
