#include "hosts/medialibrary/Estimate.h"

namespace medialibrary {

namespace {

constexpr double shortest = 1.0;  // seconds of work before the rest is foretold

}  // namespace

void Estimate::note(std::size_t settled, std::size_t left) {
  if (settled == 0 && left == 0) {
    done_ = 0;
    return;
  }
  if (done_ == 0) begin_ = std::chrono::steady_clock::now();
  done_ += settled;
}

std::optional<double> Estimate::secondsLeft(std::size_t left) const {
  const double spent = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin_).count();
  if (done_ == 0 || left == 0 || spent < shortest) return std::nullopt;
  return spent / static_cast<double>(done_) * static_cast<double>(left);
}

}  // namespace medialibrary
