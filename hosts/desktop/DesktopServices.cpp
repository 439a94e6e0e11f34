#include "hosts/desktop/DesktopServices.h"

#include "hosts/desktop/Browser.h"
#include "hosts/desktop/ProgramStart.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace desktop {

namespace {

/// Beside the program, as it is in a build, or else where the two are installed.
QString helpPage(const QString& name) {
  const QString program = QCoreApplication::applicationDirPath();
  const QString page = QStringLiteral("/help/%1.html").arg(name);
  if (QFileInfo::exists(program + page)) return program + page;
  return QDir::cleanPath(program + QStringLiteral("/" QUILLOP_DATA_FROM_PROGRAM "/quillop") + page);
}

}  // namespace

bool DesktopServices::open(const std::string& url) {
  const QUrl address(QString::fromStdString(url));
  if (address.scheme() == QLatin1String("app-settings")) {
    if (openSettings_) openSettings_();
    return openSettings_ != nullptr;
  }
  if (address.scheme() != QLatin1String("quillop-help")) return QDesktopServices::openUrl(address);
  const QString page = helpPage(address.path());
  if (!QFileInfo::exists(page)) return false;
  // Qt knows no desktop entries: it needs a program for opening things, which a small system lacks, or a sandbox.
  // What it starts itself would get this process's own environment.
  return openInBrowser(page.toStdString()) || startProgram({"xdg-open", page.toStdString()}) ||
         QDesktopServices::openUrl(QUrl::fromLocalFile(page));
}

}  // namespace desktop
