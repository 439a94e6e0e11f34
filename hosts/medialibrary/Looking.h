#pragma once

#include "hosts/medialibrary/Index.h"
#include "hosts/medialibrary/IndexerProcess.h"

#include <poll.h>

#include <chrono>
#include <cstddef>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace medialibrary {

/// How much of the machine looking into files may take.
enum class Pace {
  Full,   ///< as many processes as there are processors, four at most, all the time
  Gentle  ///< one process, which rests most of the time: something that must not falter is going on
};

/// Has the files that wait in the index looked into by processes of their own. One thread; operations that touch the
/// index may throw `IndexError`.
class Looking {
 public:
  /// `program` is the indexer's.
  Looking(Index& index, std::string program);

  void setPace(Pace pace) { pace_ = pace; }
  /// Gives the processes as much to do as the pace allows.
  void feed();
  /// Writes into the index what has been found since the last call; how many files that were.
  std::size_t settle();
  /// Folders with files that were not what the index says any more, since the last call: to be searched again.
  std::set<std::string> outdatedFolders() { return std::exchange(outdatedFolders_, {}); }
  bool isIdle() const { return underWay_.empty(); }
  /// False where the indexer cannot be started, so that nothing can be looked into.
  bool canLook() const { return canLook_; }
  /// Adds what has to be polled.
  void addTo(std::vector<pollfd>& descriptors) const;
  /// When `settle` and `feed` have to be called at the latest.
  std::optional<std::chrono::steady_clock::time_point> deadline() const;

 private:
  using Clock = std::chrono::steady_clock;

  void fetch();
  void start(std::size_t count);
  void give(IndexerProcess& process, std::size_t most);
  void giveGently();
  void rest();
  void settle(const IndexerAnswer& answer);

  Index& index_;
  std::string program_;
  bool canLook_ = true;
  Pace pace_ = Pace::Full;
  Clock::time_point givenAt_;  // the last task, at the gentle pace
  Clock::time_point restsUntil_;
  std::vector<std::unique_ptr<IndexerProcess>> processes_;
  std::deque<IndexedFile> next_;
  std::map<std::int64_t, IndexedFile> underWay_;
  std::set<std::string> outdatedFolders_;
};

}  // namespace medialibrary
