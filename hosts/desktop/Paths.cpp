#include "hosts/desktop/Paths.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <unistd.h>

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
  return made(QDir::tempPath() + QStringLiteral("/quillop-%1").arg(getuid()));
}

bool isSandboxed() {
  return qEnvironmentVariableIsSet("FLATPAK_ID");
}

}  // namespace desktop
