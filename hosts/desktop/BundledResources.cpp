#include "hosts/desktop/BundledResources.h"

#include <QFile>
#include <QImageReader>
#include <QSvgRenderer>

namespace desktop {

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
  return Picture{"qrc" + path.toStdString(), size.width(), size.height()};
}

}  // namespace desktop
