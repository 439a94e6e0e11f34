#include "hosts/medialibrary/KeeperShift.h"

#include <poll.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <utility>

namespace medialibrary {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds searchSlice{50};
constexpr milliseconds settlingTime{50};  // changes come in bursts
constexpr milliseconds unfinishedInterval{2000};
constexpr milliseconds reportInterval{200};
constexpr milliseconds longestWait{60'000};

}  // namespace

KeeperShift::KeeperShift(KeeperDesk& desk, Index& index, const Keeper::Options& options)
    : desk_(desk), index_(index), search_(index, *watch_), looking_(index, options.indexer) {
  search_.beginAll(options.folders);
  looking_.setPace(options.pace);
}

void KeeperShift::run(Keeper::Options& options) {
  while (!desk_.ends()) {
    const KeeperOrders orders = desk_.takeOrders();
    if (orders.folders) options.folders = *orders.folders;
    if (orders.pace) options.pace = *orders.pace;
    if (orders.rebuild) return;
    follow(orders);
    notice(watch_->changes());
    searchOn();
    look();
    report();
    wait();
  }
}

void KeeperShift::follow(const KeeperOrders& orders) {
  if (orders.pace) looking_.setPace(*orders.pace);
  if (orders.lookAgain) {
    index_.forgetUnreadable();
    isDirty_ = true;
  }
  if (orders.folders) {
    search_.beginAll(*orders.folders);
  } else if (orders.searchAll) {
    search_.beginAll();
  }
}

void KeeperShift::notice(const FolderChanges& changes) {
  if (changes.isEverything) search_.beginAll();
  changed_.insert(changes.folders.begin(), changes.folders.end());
}

void KeeperShift::searchOn() {
  const auto now = Clock::now();
  if (recheck_ && now >= *recheck_) {
    recheck_.reset();
    changed_.merge(std::exchange(unfinished_, {}));
  }
  if (!search_.isUnderWay() && !changed_.empty() && now >= nextSearch_) search_.add(std::exchange(changed_, {}));
  if (!search_.isUnderWay()) return;
  search_.goOn(now + searchSlice);
  searchTime_ += Clock::now() - now;
  isDirty_ = true;
  if (!search_.isUnderWay()) endSearch();
}

void KeeperShift::endSearch() {
  // A folder that changes all the time must not keep a processor busy.
  nextSearch_ = Clock::now() + std::max<Clock::duration>(settlingTime, 4 * std::exchange(searchTime_, {}));
  unfinished_.merge(search_.unfinishedFolders());
  if (!unfinished_.empty()) recheck_ = Clock::now() + unfinishedInterval;
}

void KeeperShift::look() {
  index_.begin();
  settled_ = looking_.settle();
  index_.commit();
  changed_.merge(looking_.outdatedFolders());
  isDirty_ = isDirty_ || settled_ > 0;
  looking_.feed();
  if (!looking_.canLook() && !std::exchange(hasComplained_, true)) {
    std::fprintf(stderr, "the program that looks into videos cannot be started\n");
  }
}

void KeeperShift::report() {
  if (std::exchange(isDirty_, false)) {
    waiting_ = looking_.canLook() ? index_.counts(0).waiting : 0;
    ++version_;
  }
  estimate_.note(settled_, waiting_);
  Keeper::State state;
  state.isSearching = search_.isUnderWay();
  state.missesChanges = search_.hasUnwatchedFolders();
  state.unknown = waiting_;
  state.done = estimate_.done();
  state.secondsLeft = estimate_.secondsLeft(waiting_);
  state.version = version_;
  desk_.report(state);
  desk_.tellInTime();
}

void KeeperShift::wait() {
  std::vector<pollfd> descriptors = {{desk_.bell().descriptor(), POLLIN, 0},
                                     {watch_->descriptor(), POLLIN, 0},
                                     {watch_->mountsDescriptor(), POLLPRI, 0}};
  looking_.addTo(descriptors);
  ::poll(descriptors.data(), descriptors.size(), patience());
  desk_.bell().silence();
}

int KeeperShift::patience() const {
  if (search_.isUnderWay()) return 0;
  std::optional<Clock::time_point> next = looking_.deadline();
  const auto consider = [&](Clock::time_point time) { next = next ? std::min(*next, time) : time; };
  if (!changed_.empty()) consider(nextSearch_);
  if (recheck_) consider(*recheck_);
  if (!looking_.isIdle() || desk_.hasUntold()) consider(Clock::now() + reportInterval);
  if (!next) return -1;
  const auto left = std::chrono::ceil<milliseconds>(*next - Clock::now());
  return static_cast<int>(std::clamp(left, milliseconds::zero(), longestWait).count());
}

}  // namespace medialibrary
