#include "hosts/desktop/Paths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <unistd.h>

#include <cstdio>

namespace desktop {

namespace {

constexpr auto appFolder = "/quillop";
constexpr auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner;

QString made(const QString& path) {
  if (QDir().mkpath(path)) QFile::setPermissions(path, ownerOnly);
  return path;
}

/// The folder that `variable` names, where that is absolute as the standard demands, else `otherwise` in the home.
QString baseFolder(const char* variable, const QString& otherwise) {
  const QString named = QFile::decodeName(qgetenv(variable));
  return QDir::isAbsolutePath(named) ? named : QDir::homePath() + otherwise;
}

/// Anybody may make a folder of any name among the temporary files.
bool isOurs(const QString& path) {
  const QFileInfo there(path);
  return there.isDir() && !there.isSymLink() && there.ownerId() == getuid();
}

/// A new folder of the user's own, of a name that nobody can know before.
QString madeAnew() {
  QTemporaryDir folder(QDir::tempPath() + QStringLiteral("/quillop-XXXXXX"));
  folder.setAutoRemove(false);
  return folder.path();
}

QString temporaryFolder() {
  const QString usual = QDir::tempPath() + QStringLiteral("/quillop-%1").arg(getuid());
  QDir().mkdir(usual);
  if (isOurs(usual)) return made(usual);
  static const QString other = [&] {
    std::fprintf(stderr, "%s is somebody else's: sockets and drafts lie elsewhere\n", qPrintable(usual));
    return madeAnew();
  }();
  return other;
}

}  // namespace

QString configurationFolder() {
  return made(baseFolder("XDG_CONFIG_HOME", QStringLiteral("/.config")) + QLatin1String(appFolder));
}

QString stateFolder() {
  return made(baseFolder("XDG_STATE_HOME", QStringLiteral("/.local/state")) + QLatin1String(appFolder));
}

QString runtimeFolder() {
  QString named = QFile::decodeName(qgetenv("XDG_RUNTIME_DIR"));
  // All of the rest is another one for each start of a sandboxed app, which would not find itself running.
  if (isSandboxed()) named += QStringLiteral("/app/") + qEnvironmentVariable("FLATPAK_ID");
  if (QDir::isAbsolutePath(named) && QDir(named).exists()) return made(named + QLatin1String(appFolder));
  return temporaryFolder();
}

bool isSandboxed() {
  return qEnvironmentVariableIsSet("FLATPAK_ID");
}

}  // namespace desktop
