#include "hosts/desktop/ProgressText.h"

#include <QLocale>

#include <algorithm>
#include <cmath>

namespace desktop {

namespace {

constexpr double minute = 60;
constexpr double hour = 60 * minute;
/// Estimates beyond this many seconds are told in steps, or the number would never stand still.
constexpr double countedSeconds = 10;
constexpr double step = 5;

QString aboutText(double count, const QString& unit) {
  const auto whole = static_cast<qulonglong>(count);
  return QStringLiteral("about %1 %2%3 left").arg(whole).arg(unit, whole == 1 ? QString() : QStringLiteral("s"));
}

}  // namespace

QString numberText(std::size_t number) {
  return QLocale(QLocale::English).toString(static_cast<qulonglong>(number));
}

QString videosText(std::size_t count) {
  return count == 1 ? QStringLiteral("1 video") : QStringLiteral("%1 videos").arg(numberText(count));
}

QString remainingText(double seconds) {
  const double left = std::max(1.0, std::round(seconds));
  if (left <= countedSeconds) return aboutText(left, QStringLiteral("second"));
  const double inSteps = std::round(left / step) * step;
  if (inSteps < minute) return aboutText(inSteps, QStringLiteral("second"));
  const double minutes = std::max(1.0, std::round(left / minute));
  if (minutes < hour / minute) return aboutText(minutes, QStringLiteral("minute"));
  return aboutText(std::max(1.0, std::round(left / hour)), QStringLiteral("hour"));
}

double fractionOf(const medialibrary::FolderLibrary::Progress& progress) {
  return progress.total == 0 ? 0.0 : static_cast<double>(progress.done) / static_cast<double>(progress.total);
}

QString countText(const medialibrary::FolderLibrary::Progress& progress) {
  if (progress.total == 0) return QStringLiteral("Searching your folders");
  return QStringLiteral("%1 of %2").arg(numberText(progress.done), numberText(progress.total));
}

QString progressText(const medialibrary::FolderLibrary::Progress& progress) {
  const QString count = countText(progress);
  return progress.total > 0 && progress.secondsLeft
             ? count + QStringLiteral(", ") + remainingText(*progress.secondsLeft)
             : count;
}

}  // namespace desktop
