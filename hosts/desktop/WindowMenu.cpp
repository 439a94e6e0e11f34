#include "hosts/desktop/WindowMenu.h"

#include <QMetaObject>

#include <utility>

namespace desktop {

WindowMenu::WindowMenu(Layers& layers, Entries entries) : layers_(layers), makeEntries_(std::move(entries)) {}

void WindowMenu::offer() {
  offer_ = layers_.decorate(QStringLiteral("WindowMenuOffer"), *this);
}

void WindowMenu::open() {
  if (isShown()) return;
  entries_ = makeEntries_();
  layer_ = layers_.open(QStringLiteral("WindowMenu"), *this, [this] { close(); });
}

QStringList WindowMenu::titles() const {
  QStringList titles;
  for (const auto& entry : entries_) titles << entry.title;
  return titles;
}

void WindowMenu::choose(int entry) {
  if (!isShown() || entry < 0 || static_cast<std::size_t>(entry) >= entries_.size()) return;
  const auto take = [this, chosen = entries_[static_cast<std::size_t>(entry)].chosen] {
    layer_ = nullptr;
    chosen();
  };
  QMetaObject::invokeMethod(this, take, Qt::QueuedConnection);
}

void WindowMenu::close() {
  QMetaObject::invokeMethod(
      this, [this] { layer_ = nullptr; }, Qt::QueuedConnection);
}

}  // namespace desktop
