#include "platform/foundation/RunLoop.h"

#include "platform/Platform.h"
#include "platform/foundation/NSTimer.h"

#include <algorithm>
#include <cmath>

RunLoop::~RunLoop() = default;

RunLoop& RunLoop::main() {
  return Platform::current().runLoop();
}

double RunLoop::now() const {
  return Platform::current().ports().mainLoop.now();
}

void RunLoop::turn() {
  const Turn turn(*this);
  const double until = now();
  const auto blocks = std::exchange(queue_, {});
  for (const auto& block : blocks) block();
  runDue(until);
}

void RunLoop::runDue(double until) {
  const std::uint64_t bound = nextNumber_;  // what is scheduled meanwhile waits for another turn
  while (true) {
    const auto due =
        std::find_if(agenda_.begin(), agenda_.end(), [&](const auto& entry) { return entry.first.second < bound; });
    if (due == agenda_.end() || due->first.first > until) return;
    const double date = due->first.first;
    const Due work = std::move(due->second);
    agenda_.erase(due);
    if (!work.timer) {
      work.block();
      continue;
    }
    if (work.timer->repeats()) {
      const double interval = std::max(work.timer->timeInterval(), 0.0001);
      const double next = date + interval * (std::floor((until - date) / interval) + 1.0);
      agenda_.emplace(Order{next, nextNumber_++}, Due{nullptr, work.timer});
    }
    work.timer->fire();
  }
}

void RunLoop::enqueue(std::function<void()> block) {
  queue_.push_back(std::move(block));
  if (depth_ == 0) orderWakeUp();
}

void RunLoop::enqueueAfter(double delay, std::function<void()> block) {
  if (delay <= 0.0) {
    enqueue(std::move(block));
    return;
  }
  agenda_.emplace(Order{now() + delay, nextNumber_++}, Due{std::move(block), nullptr});
  if (depth_ == 0) orderWakeUp();
}

void RunLoop::schedule(const Strong<NSTimer>& timer) {
  agenda_.emplace(Order{now() + std::max(timer->timeInterval(), 0.0001), nextNumber_++}, Due{nullptr, timer});
  if (depth_ == 0) orderWakeUp();
}

void RunLoop::unschedule(const NSTimer& timer) {
  std::erase_if(agenda_, [&](const auto& entry) { return entry.second.timer.get() == &timer; });
}

bool RunLoop::isScheduled(const NSTimer& timer) const {
  return std::any_of(agenda_.begin(), agenda_.end(),
                     [&](const auto& entry) { return entry.second.timer.get() == &timer; });
}

void RunLoop::clear() {
  // What is let go may invalidate timers of its own, so both lists are empty by then.
  const auto blocks = std::exchange(queue_, {});
  const auto due = std::exchange(agenda_, {});
  // A timer and the screen that keeps it hold each other until the timer is invalid.
  for (const auto& [order, work] : due) {
    if (work.timer) work.timer->invalidate();
  }
}

void RunLoop::finishTurn() {
  Platform::current().finishTurn();
  if (turnEnded_) turnEnded_();
  orderWakeUp();
}

void RunLoop::orderWakeUp() {
  auto& mainLoop = Platform::current().ports().mainLoop;
  if (!queue_.empty()) {
    mainLoop.wakeAt(now());
  } else if (!agenda_.empty()) {
    mainLoop.wakeAt(agenda_.begin()->first.first);
  }
}
