#include "hosts/qtquick/Pictures.h"

#include <QRegularExpression>

namespace qtquick {

QUrl pictureUrl(const Strong<UIImage>& image) {
  if (!image || image->source().empty() || pictureColour(image)) return {};
  const auto source = QByteArray::fromStdString(image->source());
  const bool isUrl = source.startsWith("qrc:") || source.startsWith("file:") || source.startsWith("image:");
  if (isUrl) return QUrl::fromEncoded(source);
  return QUrl::fromEncoded(QByteArray("image://") + artworkProviderName + '/' + source.toPercentEncoding());
}

std::optional<QColor> pictureColour(const Strong<UIImage>& image) {
  static const QRegularExpression form(QStringLiteral("^color:#([0-9A-Fa-f]{6})([0-9A-Fa-f]{2})$"));
  const auto match = form.match(image ? QString::fromStdString(image->source()) : QString());
  if (!match.hasMatch()) return std::nullopt;
  // Qt writes the opacity first.
  return QColor(QLatin1Char('#') + match.captured(2) + match.captured(1));
}

QColor colour(UIColor colour) {
  return QColor::fromRgbF(static_cast<float>(colour.red), static_cast<float>(colour.green),
                          static_cast<float>(colour.blue), static_cast<float>(colour.alpha));
}

}  // namespace qtquick
