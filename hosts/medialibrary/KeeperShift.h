#pragma once

#include "hosts/medialibrary/Estimate.h"
#include "hosts/medialibrary/FolderSearch.h"
#include "hosts/medialibrary/FolderWatch.h"
#include "hosts/medialibrary/Index.h"
#include "hosts/medialibrary/Keeper.h"
#include "hosts/medialibrary/KeeperDesk.h"
#include "hosts/medialibrary/Looking.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace medialibrary {

/// The keeper's work on one opened index: round after round of searching, looking, telling and waiting. The keeper's
/// thread; operations may throw `IndexError`.
class KeeperShift {
 public:
  KeeperShift(KeeperDesk& desk, Index& index, const Keeper::Options& options);

  /// Returns at the end, or because the index is to be rebuilt. `options` says then what was ordered last.
  void run(Keeper::Options& options);

 private:
  using Clock = std::chrono::steady_clock;

  void follow(const KeeperOrders& orders);
  void notice(const FolderChanges& changes);
  void searchOn();
  void endSearch();
  void look();
  void report();
  void wait();
  /// Milliseconds until there is something to do, though nothing happens; -1: never.
  int patience() const;

  KeeperDesk& desk_;
  Index& index_;
  std::unique_ptr<FolderWatch> watch_ = FolderWatch::make();
  FolderSearch search_;
  Looking looking_;
  Estimate estimate_;
  std::set<std::string> changed_;     // folders that wait for their search
  std::set<std::string> unfinished_;  // folders in which something is being written
  std::optional<Clock::time_point> recheck_;
  Clock::time_point nextSearch_;
  Clock::duration searchTime_{};
  std::size_t settled_ = 0;
  std::size_t waiting_ = 0;
  std::uint64_t version_ = 0;
  bool isDirty_ = true;
  bool hasComplained_ = false;
};

}  // namespace medialibrary
