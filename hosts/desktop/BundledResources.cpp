#include "hosts/desktop/BundledResources.h"

#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QSvgRenderer>

namespace desktop {

namespace {

/// Empty where nobody wrote one.
std::string descriptionOf(const QString& picture) {
  const QFileInfo file(picture);
  QFile text(file.path() + QLatin1Char('/') + file.completeBaseName() + QStringLiteral(".txt"));
  if (!text.open(QIODevice::ReadOnly)) return {};
  return QString::fromUtf8(text.readAll()).simplified().toStdString();
}

}  // namespace

std::optional<std::string> BundledResources::text(const std::string& name) const {
  QFile file(QStringLiteral(":/") + QString::fromStdString(name));
  if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
  return file.readAll().toStdString();
}

std::optional<host::Resources::Picture> BundledResources::picture(const std::string& name) const {
  const bool isDrawing = name.find('.') == std::string::npos;
  const QString path = QStringLiteral(":/images/") + QString::fromStdString(isDrawing ? name + ".svg" : name);
  if (!QFile::exists(path)) return std::nullopt;
  const QSizeF size = isDrawing ? QSizeF(QSvgRenderer(path).defaultSize()) : QSizeF(QImageReader(path).size());
  return Picture{"qrc" + path.toStdString(), size.width(), size.height(), descriptionOf(path)};
}

}  // namespace desktop
