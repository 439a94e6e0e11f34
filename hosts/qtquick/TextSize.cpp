#include "hosts/qtquick/TextSize.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace qtquick {

namespace {

constexpr double largestScale = 2;

/// Whether everything is scaled by what the desktop told the X server. What the user told Qt alone does not count.
bool isScaledByDesktop() {
  const auto* const screen = QGuiApplication::primaryScreen();
  if (screen == nullptr || QGuiApplication::platformName() != QStringLiteral("xcb")) return false;
  const double own = qEnvironmentVariable("QT_SCALE_FACTOR").toDouble();
  return std::abs(screen->devicePixelRatio() / (own > 0 ? own : 1) - 1) > 0.01;
}

}  // namespace

TextSize::TextSize(const QDBusConnection& bus) {
  const double own = qEnvironmentVariable("QUILLOP_TEXT_SCALE").toDouble();
  if (own > 0) {
    set(own);
    return;
  }
  factor_.emplace(bus, QStringLiteral("org.gnome.desktop.interface"), QStringLiteral("text-scaling-factor"),
                  [this](const QVariant& factor) {
                    if (factor.userType() == QMetaType::Double && !isScaledByDesktop()) set(factor.toDouble());
                  });
}

void TextSize::set(double scale) {
  const double within = std::clamp(scale, 1.0, largestScale);
  if (!(within > 0) || within == scale_) return;
  scale_ = within;
  emit changed();
}

}  // namespace qtquick
