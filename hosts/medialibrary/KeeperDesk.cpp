#include "hosts/medialibrary/KeeperDesk.h"

#include <utility>

namespace medialibrary {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds tellInterval{200};

}  // namespace

void KeeperDesk::order(const std::function<void(KeeperOrders&)>& write) {
  {
    const std::lock_guard lock(mutex_);
    write(orders_);
    state_.isSearching = state_.isSearching || orders_.areSearches();
  }
  bell_.ring();
}

void KeeperDesk::end() {
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
    changed_ = nullptr;
  }
  bell_.ring();
}

Keeper::State KeeperDesk::state() const {
  const std::lock_guard lock(mutex_);
  return state_;
}

std::optional<Keeper::Opening> KeeperDesk::openIndex(double patience) const {
  std::unique_lock lock(mutex_);
  stateChanged_.wait_for(lock, std::chrono::duration<double>(patience), [this] { return state_.isOpen; });
  return state_.isOpen ? std::optional(opening_) : std::nullopt;
}

KeeperOrders KeeperDesk::takeOrders() {
  const std::lock_guard lock(mutex_);
  return std::exchange(orders_, {});
}

bool KeeperDesk::ends() const {
  const std::lock_guard lock(mutex_);
  return ends_;
}

void KeeperDesk::open(const std::string& index) {
  const std::lock_guard lock(mutex_);
  opening_ = {index, opening_.number + 1};
  state_.isOpen = true;
  orders_.rebuild = false;  // what turned out to be damaged was the one before
  stateChanged_.notify_all();
}

void KeeperDesk::close() {
  const std::lock_guard lock(mutex_);
  state_.isOpen = false;
  state_.isSearching = true;
}

void KeeperDesk::report(Keeper::State state) {
  const std::lock_guard lock(mutex_);
  state.isOpen = state_.isOpen;
  state.isSearching = state.isSearching || orders_.areSearches();
  if (state == state_) return;
  const bool isEdge = state.isSearching != state_.isSearching || (state.unknown == 0) != (state_.unknown == 0);
  state_ = state;
  isTold_ = false;
  if (isEdge) tell();
}

void KeeperDesk::tellInTime() {
  const std::lock_guard lock(mutex_);
  if (!isTold_ && Clock::now() >= toldAt_ + tellInterval) tell();
}

bool KeeperDesk::hasUntold() const {
  const std::lock_guard lock(mutex_);
  return !isTold_;
}

Keeper::State KeeperDesk::atFirst() {
  Keeper::State state;
  state.isSearching = true;
  return state;
}

void KeeperDesk::tell() {
  isTold_ = true;
  toldAt_ = Clock::now();
  if (changed_) changed_();
}

}  // namespace medialibrary
