#pragma once

#include "hosts/gstreamer/Deck.h"

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace gstreamer {

/// The orders of one turn, one for each player, in the order in which the players were first addressed.
using Transaction = std::vector<std::pair<std::shared_ptr<Deck>, Order>>;

/// Lets the decks of a transaction start on one instant. Everything but `waitUntilAllClosed` runs on the engine's
/// thread.
class Conductor final : public std::enable_shared_from_this<Conductor> {
 public:
  explicit Conductor(std::shared_ptr<Surroundings> surroundings);

  void perform(const Transaction& transaction);
  void setScrubbing(bool isScrubbing);
  void deckIsReady(Deck& deck);
  void deckLags(const Deck& sound, double lag);
  void deckRanDry(const Deck& deck);
  void deckIsRefused(const Deck& deck);
  void close(const std::shared_ptr<Deck>& deck);
  void closeAll();
  /// Leaves to themselves the threads that are stuck closing.
  void abandonClosing();
  /// False when `patience` seconds after `closeAll` was posted something was still open. Not on the engine's thread.
  bool waitUntilAllClosed(double patience);

 private:
  /// Decks that wait for each other.
  struct Group {
    Instant made = 0;
    std::vector<std::shared_ptr<Deck>> decks;
  };

  std::vector<std::shared_ptr<Deck>> decksOf(const std::string& url) const;
  void leaveGroups(const Transaction& transaction);
  void leaveGroups(const std::function<bool(const Deck&)>& leaves);
  void startTogether(std::vector<std::shared_ptr<Deck>> decks);
  bool isComplete(const Group& group) const;
  double patienceWith(const Deck& deck) const;
  void tryStart(const std::shared_ptr<Group>& group);

  std::shared_ptr<Surroundings> surroundings_;
  std::vector<std::shared_ptr<Deck>> decks_;
  std::vector<std::shared_ptr<Group>> groups_;
  std::vector<std::shared_ptr<Deck>> closing_;
  bool ending_ = false;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool allClosed_ = false;
};

}  // namespace gstreamer
