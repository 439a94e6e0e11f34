#include "hosts/qtquick/Pictures.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <cmath>

namespace qtquick {

namespace {

struct ClockTime {
  long long hours;
  long long minutes;
  long long seconds;
};

ClockTime clockTime(double time) {
  const auto whole = std::isfinite(time) ? std::max(0LL, static_cast<long long>(time)) : 0LL;
  return {whole / 3600, whole / 60 % 60, whole % 60};
}

QString counted(long long count, const char* unit) {
  const QString text = QString::number(count) + QLatin1Char(' ') + QLatin1String(unit);
  return count == 1 ? text : text + QLatin1Char('s');
}

}  // namespace

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

QString clockText(double seconds) {
  const ClockTime time = clockTime(seconds);
  const auto two = [](long long number) { return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0')); };
  if (time.hours == 0) return QString::number(time.minutes) + QLatin1Char(':') + two(time.seconds);
  return QString::number(time.hours) + QLatin1Char(':') + two(time.minutes) + QLatin1Char(':') + two(time.seconds);
}

QString spokenTime(double seconds) {
  const ClockTime time = clockTime(seconds);
  QStringList parts;
  if (time.hours > 0) parts << counted(time.hours, "hour");
  if (time.minutes > 0) parts << counted(time.minutes, "minute");
  if (time.seconds > 0 || parts.isEmpty()) parts << counted(time.seconds, "second");
  return parts.join(QLatin1Char(' '));
}

}  // namespace qtquick
