#include "hosts/desktop/Inbox.h"

#include <utility>

namespace desktop {

Inbox::Inbox() {
  rest_.setSingleShot(true);
  rest_.setInterval(pause);
  connect(&rest_, &QTimer::timeout, this, [this] { empty(); });
}

bool Inbox::put(Work work) {
  const std::lock_guard lock(mutex_);
  if (waiting_.size() >= room) return false;
  waiting_.push_back(std::move(work));
  if (waiting_.size() > 1) return true;
  QMetaObject::invokeMethod(
      this,
      [this] {
        if (!rest_.isActive()) empty();
      },
      Qt::QueuedConnection);
  return true;
}

void Inbox::empty() {
  std::vector<Work> share;
  {
    const std::lock_guard lock(mutex_);
    share = std::exchange(waiting_, {});
  }
  for (const Work& work : share) work();
  if (!share.empty()) rest_.start();
}

}  // namespace desktop
