#pragma once

#include "platform/foundation/NSObject.h"

#include <functional>

/// Fires once or repeatedly on the main run loop. Main thread only.
///
/// A scheduled timer is kept by the run loop, and keeps its target (or what its block captured), until it has
/// fired for the last time or is invalidated. A repeating timer fires at whole multiples of its interval after
/// it was scheduled; times that were missed are skipped, not made up for.
class NSTimer final : public NSObject {
 public:
  using Block = std::function<void(const Strong<NSTimer>&)>;

  /// Schedules a timer that sends `selector` to `target` with itself as the argument. `target` is held strongly.
  /// `interval` in seconds; `userInfo` may be none.
  template <class Target>
  static Strong<NSTimer> scheduledTimerWithTimeInterval_target_selector_userInfo_repeats(
      double interval, const Strong<Target>& target, void (Target::*selector)(const Strong<NSTimer>&),
      const Strong<NSObject>& userInfo, bool repeats) {
    return scheduled(interval, repeats, userInfo,
                     [target, selector](const Strong<NSTimer>& timer) { (target.get()->*selector)(timer); });
  }

  /// Schedules a timer that calls `block` with itself.
  static Strong<NSTimer> scheduledTimerWithTimeInterval_repeats_block(double interval, bool repeats, Block block) {
    return scheduled(interval, repeats, nullptr, std::move(block));
  }

  /// A timer that is not scheduled; for tests and for `fire`.
  NSTimer(double interval, bool repeats, Strong<NSObject> userInfo, Block block)
      : interval_(interval), repeats_(repeats), userInfo_(std::move(userInfo)), block_(std::move(block)) {}

  /// Takes the timer off the run loop for good and lets go of target and block. Again: nothing.
  void invalidate();
  bool isValid() const { return valid_; }
  double timeInterval() const { return interval_; }
  bool repeats() const { return repeats_; }
  const Strong<NSObject>& userInfo() const { return userInfo_; }
  /// Runs the timer's action now; a timer that does not repeat is invalid afterwards.
  void fire();

 private:
  static Strong<NSTimer> scheduled(double interval, bool repeats, Strong<NSObject> userInfo, Block block);

  double interval_;
  bool repeats_;
  Strong<NSObject> userInfo_;
  Block block_;
  bool valid_ = true;
};
