#include "hosts/qtquick/Contrast.h"

namespace qtquick {

namespace {

constexpr unsigned highContrast = 1;  // of the portal's "contrast"; 0 is no preference
/// Colours that are no shade of grey: those of the films, and of what is to be seen at once.
constexpr float leastSaturation = 0.4F;
constexpr float leastValue = 0.5F;

bool meansSomething(const QColor& colour) {
  return colour.hsvSaturationF() >= leastSaturation && colour.valueF() >= leastValue;
}

}  // namespace

Contrast::Contrast(const QDBusConnection& bus) {
  if (qEnvironmentVariableIsSet("QUILLOP_HIGH_CONTRAST")) {
    appearance_ = qEnvironmentVariableIntValue("QUILLOP_HIGH_CONTRAST") == 1;
    return;
  }
  appearanceSetting_.emplace(bus, QStringLiteral("org.freedesktop.appearance"), QStringLiteral("contrast"),
                             [this](const QVariant& value) { set(appearance_, value.toUInt() == highContrast); });
  accessibilitySetting_.emplace(
      bus, QStringLiteral("org.gnome.desktop.a11y.interface"), QStringLiteral("high-contrast"),
      [this](const QVariant& value) { set(accessibility_, value.userType() == QMetaType::Bool && value.toBool()); });
}

void Contrast::set(bool& setting, bool isHigh) {
  const bool wasHigh = this->isHigh();
  setting = isHigh;
  if (wasHigh != this->isHigh()) emit changed();
}

QColor Contrast::ground(QColor usual) const {
  if (!isHigh() || usual.alpha() == 0 || meansSomething(usual)) return usual;
  return Qt::black;
}

QColor Contrast::ink(QColor usual) const {
  if (!isHigh() || usual.alpha() == 0 || meansSomething(usual)) return usual;
  return Qt::white;
}

}  // namespace qtquick
