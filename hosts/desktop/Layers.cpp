#include "hosts/desktop/Layers.h"

#include <QQmlComponent>
#include <QQmlContext>
#include <QUrl>

namespace desktop {

Layers::Layers(qtquick::ScreenHost& screen) : screen_(screen) {
  screen_.share(*engine_.rootContext());
}

std::unique_ptr<QQuickItem> Layers::cover(const QString& name, QObject& node, std::function<void()> escape) {
  auto item = make(name, node);
  screen_.cover(*item, std::move(escape));
  return item;
}

std::unique_ptr<QQuickItem> Layers::decorate(const QString& name, QObject& node) {
  auto item = make(name, node);
  screen_.decorate(*item);
  return item;
}

std::unique_ptr<QQuickItem> Layers::make(const QString& name, QObject& node) {
  QQmlComponent component(&engine_, QUrl(QStringLiteral("qrc:/quillop/desktop/") + name + QStringLiteral(".qml")));
  const QVariantMap properties{{QStringLiteral("node"), QVariant::fromValue(&node)},
                               {QStringLiteral("moves"), !screen_.reducesMotion()}};
  std::unique_ptr<QQuickItem> item(
      qobject_cast<QQuickItem*>(component.createWithInitialProperties(properties, engine_.rootContext())));
  if (!item) qFatal("%s", qPrintable(component.errorString()));
  return item;
}

}  // namespace desktop
