#include "hosts/qtquick/Covers.h"

#include "hosts/qtquick/Levels.h"

#include <QQuickItem>

namespace qtquick {

Covers::Covers(QQuickItem& stage, std::function<Qt::FocusReason()> focusReason, std::function<void()> changed)
    : stage_(stage), focusReason_(std::move(focusReason)), changed_(std::move(changed)) {}

void Covers::add(QQuickItem& item, std::function<void()> escape) {
  fill(stage_, item, covers_.empty() ? lowestCoverLevel : covers_.back().item->z() + 1);
  connect(&item, &QObject::destroyed, this, [this](const QObject* gone) { remove(gone); });
  covers_.push_back({&item, std::move(escape)});
  if (covers_.size() == 1) changed_();
  noteUppermost();
}

bool Covers::escape() const {
  if (covers_.empty()) return false;
  const auto tell = covers_.back().escape;
  tell();
  return true;
}

void Covers::remove(const QObject* item) {
  std::erase_if(covers_, [item](const Cover& each) { return each.item == item; });
  if (covers_.empty()) {
    changed_();
  } else {
    noteUppermost();
  }
}

void Covers::noteUppermost() {
  for (const auto& cover : covers_) cover.item->setEnabled(cover.item == covers_.back().item);
  covers_.back().item->forceActiveFocus(focusReason_());
}

}  // namespace qtquick
