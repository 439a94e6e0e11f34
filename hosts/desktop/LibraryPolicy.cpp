#include "hosts/desktop/LibraryPolicy.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include <cstdio>
#include <optional>

namespace desktop {

namespace {

/// Once for each reason, however often it is asked.
bool complain(const QString& path, const QString& reason) {
  static QSet<QString> told;
  const QString text =
      QStringLiteral("the policy %1 keeps the app from the media library, because it cannot be understood: %2")
          .arg(path, reason);
  if (!told.contains(text)) std::fprintf(stderr, "%s\n", qPrintable(text));
  told.insert(text);
  return true;
}

/// What the policy in one file says, or nothing.
std::optional<bool> restrictsLibrary(const QString& path) {
  QFile file(path);
  if (!file.exists()) return std::nullopt;
  if (!file.open(QIODevice::ReadOnly)) return complain(path, file.errorString());
  QJsonParseError error{};
  const auto document = QJsonDocument::fromJson(file.readAll(), &error);
  if (!document.isObject()) return complain(path, error.errorString());
  const auto value = document.object().value(QStringLiteral("mediaLibrary"));
  if (value.isUndefined()) return std::nullopt;
  return value.toString() == QLatin1String("restricted");
}

}  // namespace

QStringList systemConfigurationFolders() {
  const auto named = QFile::decodeName(qgetenv("XDG_CONFIG_DIRS")).split(QLatin1Char(':'), Qt::SkipEmptyParts);
  QStringList folders;
  for (const auto& folder : named) {
    if (QDir::isAbsolutePath(folder)) folders << folder;
  }
  return folders.isEmpty() ? QStringList{QStringLiteral("/etc/xdg")} : folders;
}

bool policyRestrictsLibrary(const QStringList& folders) {
  for (const auto& folder : folders) {
    if (const auto restricts = restrictsLibrary(folder + QStringLiteral("/quillop/policy.json"))) return *restricts;
  }
  return false;
}

}  // namespace desktop
