#include "hosts/desktop/Notice.h"

#include <utility>

namespace desktop {

namespace {

using namespace std::chrono_literals;

constexpr auto readingTime = 10s;

}  // namespace

Notice::Notice(Layers& layers, QString text) : text_(std::move(text)), layer_(layers) {
  end_.setSingleShot(true);
  end_.setInterval(readingTime);
  connect(&end_, &QTimer::timeout, this, [this] { layer_.end(); });
}

void Notice::show() {
  end_.start();
  if (!isShown()) layer_.decorate(QStringLiteral("Notice"), *this);
}

}  // namespace desktop
