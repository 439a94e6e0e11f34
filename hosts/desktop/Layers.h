#pragma once

#include "hosts/qtquick/ScreenHost.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <QString>

#include <functional>
#include <memory>

namespace desktop {

/// Makes what the system itself shows over the app. Main thread.
class Layers final {
 public:
  /// `screen` outlives the layers, and these outlive every layer that they made.
  explicit Layers(qtquick::ScreenHost& screen);

  /// Lays the component `name` of `qml/` over the app, with `node` as its property of that name, until the result is
  /// destroyed. Escape and Back call `escape`. `node` outlives the result.
  std::unique_ptr<QQuickItem> cover(const QString& name, QObject& node, std::function<void()> escape);
  /// Lays such a component over the app's main screen only, where it takes no input but for its own controls.
  std::unique_ptr<QQuickItem> decorate(const QString& name, QObject& node);

 private:
  std::unique_ptr<QQuickItem> make(const QString& name, QObject& node);

  qtquick::ScreenHost& screen_;
  QQmlEngine engine_;
};

}  // namespace desktop
