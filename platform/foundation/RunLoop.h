#pragma once

#include "platform/foundation/NSObject.h"

#include <cstdint>
#include <functional>
#include <map>
#include <vector>

class NSTimer;

/// The main run loop: the main queue's blocks and the scheduled timers, in the order of their times.
///
/// The loop never waits. The host's main loop calls `turn` at the time that the loop asked for (port `MainLoop`),
/// and wraps everything else that reaches the app from outside (input, facts posted by an engine) in a `Turn`.
/// At the end of the outermost turn the views are laid out, the media commands given in it take effect together,
/// and the next wake-up is ordered. Main thread only.
class RunLoop {
 public:
  /// One turn of the main loop, from construction to destruction. Turns nest; only the outermost one ends.
  class Turn {
   public:
    explicit Turn(RunLoop& runLoop) : runLoop_(runLoop) { ++runLoop_.depth_; }
    ~Turn() {
      if (runLoop_.depth_ == 1) runLoop_.finishTurn();
      --runLoop_.depth_;
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

   private:
    RunLoop& runLoop_;
  };

  RunLoop() = default;
  ~RunLoop();
  RunLoop(const RunLoop&) = delete;
  RunLoop& operator=(const RunLoop&) = delete;

  static RunLoop& main();

  /// Runs what is due now: first the blocks that were queued before this turn, in order of submission, then the
  /// timers and delayed blocks whose time has come, earliest first, equal times in order of scheduling.
  void turn();

  /// Seconds of the host's monotonic clock.
  double now() const;

  void enqueue(std::function<void()> block);
  /// Runs `block` once `delay` seconds have passed; a delay of zero or less means the next turn.
  void enqueueAfter(double delay, std::function<void()> block);
  /// Keeps the timer, and through it its target, until it has fired for the last time or was invalidated.
  void schedule(const Strong<NSTimer>& timer);
  void unschedule(const NSTimer& timer);
  bool isScheduled(const NSTimer& timer) const;
  /// Lets go of everything that is queued or scheduled, without running it.
  void clear();
  /// `told` is called at the end of each outermost turn, once views are laid out and media commands have taken
  /// effect: for a host that follows the app's state. It must not act on the app. An empty one takes the listener
  /// away.
  void setTurnEnded(std::function<void()> told) { turnEnded_ = std::move(told); }

 private:
  struct Due {
    std::function<void()> block;  // empty for a timer
    Strong<NSTimer> timer;
  };
  using Order = std::pair<double, std::uint64_t>;  // when, then first come first served

  void finishTurn();
  void runDue(double until);
  void orderWakeUp();

  std::vector<std::function<void()>> queue_;
  std::map<Order, Due> agenda_;
  std::function<void()> turnEnded_;
  std::uint64_t nextNumber_ = 0;
  int depth_ = 0;
};
