#include "hosts/desktop/DesktopServices.h"

#include "hosts/desktop/Browser.h"
#include "hosts/desktop/Paths.h"
#include "hosts/desktop/ProgramStart.h"

#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

namespace desktop {

namespace {

/// A browser cannot look into the program: the page, with what lies beside it, is put where it can read it.
QString helpPageOnDisk(const QString& page) {
  const QString folder = cacheFolder() + QStringLiteral("/help");
  QDir().mkpath(folder);
  for (const auto& name : QDir(QStringLiteral(":/help")).entryList(QDir::Files)) {
    const QString copy = folder + QLatin1Char('/') + name;
    QFile::remove(copy);
    QFile::copy(QStringLiteral(":/help/") + name, copy);
  }
  return folder + QLatin1Char('/') + page + QStringLiteral(".html");
}

}  // namespace

bool DesktopServices::open(const std::string& url) {
  const QUrl address(QString::fromStdString(url));
  if (address.scheme() == QLatin1String("app-settings")) {
    if (openSettings_) openSettings_();
    return openSettings_ != nullptr;
  }
  if (address.scheme() != QLatin1String("quillop-help")) return QDesktopServices::openUrl(address);
  const QString page = helpPageOnDisk(address.path());
  if (!QFileInfo::exists(page)) return false;
  // Qt knows no desktop entries: it needs a program for opening things, which a small system lacks, or a sandbox.
  // What it starts itself would get this process's own environment.
  return openInBrowser(page.toStdString()) || startProgram({"xdg-open", page.toStdString()}) ||
         QDesktopServices::openUrl(QUrl::fromLocalFile(page));
}

}  // namespace desktop
