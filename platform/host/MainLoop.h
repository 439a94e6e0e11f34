#pragma once

#include <functional>

namespace host {

/// Time and wake-ups. Every operation but `post` is called on the main thread only.
class MainLoop {
 public:
  virtual ~MainLoop() = default;

  /// Seconds of a monotonic clock with any origin.
  virtual double now() const = 0;
  /// Asks for one call of `RunLoop::turn` on the main thread once `now()` has reached `time`, or as soon as
  /// possible when it has already. A later request replaces an earlier one.
  virtual void wakeAt(double time) = 0;
  /// Runs `work` on the main thread inside a `RunLoop::Turn`, never from within this call, in order of posting.
  /// May be called on any thread.
  virtual void post(std::function<void()> work) = 0;
};

}  // namespace host
