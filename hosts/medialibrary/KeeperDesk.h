#pragma once

#include "hosts/medialibrary/Bell.h"
#include "hosts/medialibrary/Keeper.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace medialibrary {

/// What the keeper's thread is to do.
struct KeeperOrders {
  std::optional<std::vector<std::string>> folders;
  bool searchAll = false;
  bool lookAgain = false;
  bool rebuild = false;
  std::optional<Pace> pace;

  bool areSearches() const { return folders || searchAll || rebuild; }
};

/// Where the keeper's thread and everybody else leave word for each other. Any thread.
class KeeperDesk {
 public:
  /// `changed` is called on the keeper's thread.
  explicit KeeperDesk(std::function<void()> changed) : changed_(std::move(changed)) {}

  // For everybody else.

  /// Adds to the orders.
  void order(const std::function<void(KeeperOrders&)>& write);
  /// The thread is to end; nothing is told any more.
  void end();
  Keeper::State state() const;
  std::optional<Keeper::Opening> openIndex(double patience) const;

  // For the thread.

  KeeperOrders takeOrders();
  bool ends() const;
  /// Rings for each order.
  const Bell& bell() const { return bell_; }
  void open(const std::string& index);
  void close();
  /// What came of the orders so far; those that came in since count as well.
  void report(Keeper::State state);
  /// Tells what has not been told yet, unless that was done a moment ago.
  void tellInTime();
  bool hasUntold() const;

 private:
  static Keeper::State atFirst();
  void tell();

  const Bell bell_;
  mutable std::mutex mutex_;
  mutable std::condition_variable stateChanged_;
  std::function<void()> changed_;
  KeeperOrders orders_;
  Keeper::State state_ = atFirst();
  Keeper::Opening opening_;
  bool ends_ = false;
  bool isTold_ = true;
  std::chrono::steady_clock::time_point toldAt_;
};

}  // namespace medialibrary
