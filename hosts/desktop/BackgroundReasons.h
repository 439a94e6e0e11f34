#pragma once

#include <bitset>
#include <functional>

namespace desktop {

/// Why the app cannot be seen.
enum class BackgroundReason { WindowHidden, SessionLocked, ScreenSaver, Asleep };

/// Adds up why the app cannot be seen: it is in the background from the first reason that holds to the end of the
/// last. Minimised and then locked is one entry. Main thread only.
class BackgroundReasons final {
 public:
  /// `entered` is called when the first reason begins to hold, `left` when none does any more.
  BackgroundReasons(std::function<void()> entered, std::function<void()> left);

  /// Told twice, a reason counts once.
  void set(BackgroundReason reason, bool holds);

 private:
  std::function<void()> entered_;
  std::function<void()> left_;
  std::bitset<4> holding_;
};

}  // namespace desktop
