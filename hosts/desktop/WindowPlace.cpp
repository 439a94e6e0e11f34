#include "hosts/desktop/WindowPlace.h"

#include <QSettings>

namespace desktop {

namespace {
const auto geometryKey = QStringLiteral("window/geometry");
const auto fullScreenKey = QStringLiteral("window/fullScreen");
}  // namespace

std::optional<WindowPlace::Place> WindowPlace::remembered() const {
  const QSettings settings(path_, QSettings::IniFormat);
  const QRect geometry = settings.value(geometryKey).toRect();
  if (!geometry.isValid()) return std::nullopt;
  return Place{geometry, settings.value(fullScreenKey).toBool()};
}

void WindowPlace::remember(const Place& place) const {
  QSettings settings(path_, QSettings::IniFormat);
  settings.setValue(geometryKey, place.geometry);
  settings.setValue(fullScreenKey, place.fullScreen);
}

}  // namespace desktop
