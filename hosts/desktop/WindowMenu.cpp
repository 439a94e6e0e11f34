#include "hosts/desktop/WindowMenu.h"

#include <utility>

namespace desktop {

WindowMenu::WindowMenu(Layers& layers, Entries entries)
    : makeEntries_(std::move(entries)), offer_(layers), layer_(layers) {}

void WindowMenu::offer() {
  offer_.decorate(QStringLiteral("WindowMenuOffer"), *this);
}

void WindowMenu::open() {
  if (isShown()) return;
  entries_ = makeEntries_();
  layer_.cover(QStringLiteral("WindowMenu"), *this, [this] { close(); });
}

QStringList WindowMenu::titles() const {
  QStringList titles;
  for (const auto& entry : entries_) titles << entry.title;
  return titles;
}

void WindowMenu::choose(int entry) {
  if (!isShown() || entry < 0 || static_cast<std::size_t>(entry) >= entries_.size()) return;
  layer_.endLater(entries_[static_cast<std::size_t>(entry)].chosen);
}

}  // namespace desktop
