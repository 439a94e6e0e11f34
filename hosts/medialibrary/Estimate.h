#pragma once

#include <chrono>
#include <cstddef>
#include <optional>

namespace medialibrary {

/// Foretells how long a piece of work takes from how long it has taken so far.
class Estimate {
 public:
  /// `settled` more are done, `left` are to be done. Nothing of either: the work is over, and the next one begins at
  /// 0.
  void note(std::size_t settled, std::size_t left);
  std::size_t done() const { return done_; }
  /// None before there is enough to judge by.
  std::optional<double> secondsLeft(std::size_t left) const;

 private:
  std::size_t done_ = 0;
  std::chrono::steady_clock::time_point begin_;
};

}  // namespace medialibrary
