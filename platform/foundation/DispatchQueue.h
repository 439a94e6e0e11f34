#pragma once

#include <functional>

/// The main dispatch queue: deferred work on the main thread. Blocks hold what they capture until they have run.
class DispatchQueue {
 public:
  static DispatchQueue main() { return {}; }

  /// Runs `block` in the next turn of the main loop, in order of submission.
  void async(std::function<void()> block) const;
  /// Runs `block` once `seconds` have passed.
  void asyncAfter(double seconds, std::function<void()> block) const;
};
