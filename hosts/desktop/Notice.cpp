#include "hosts/desktop/Notice.h"

#include <QMetaObject>

#include <utility>

namespace desktop {

namespace {

using namespace std::chrono_literals;

constexpr auto readingTime = 10s;

}  // namespace

Notice::Notice(Layers& layers, QString text) : layers_(layers), text_(std::move(text)) {
  end_.setSingleShot(true);
  end_.setInterval(readingTime);
  connect(&end_, &QTimer::timeout, this, [this] { layer_ = nullptr; });
}

void Notice::show() {
  end_.start();
  if (!isShown()) layer_ = layers_.decorate(QStringLiteral("Notice"), *this);
}

void Notice::hide() {
  const auto end = [this] {
    end_.stop();
    layer_ = nullptr;
  };
  QMetaObject::invokeMethod(this, end, Qt::QueuedConnection);
}

}  // namespace desktop
