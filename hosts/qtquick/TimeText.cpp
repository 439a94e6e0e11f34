#include "hosts/qtquick/TimeText.h"

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
