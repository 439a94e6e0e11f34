#include "hosts/gstreamer/Conductor.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace gstreamer {

namespace {

/// Between the decision to start and the first sample and picture: long enough for every pipeline to be told, too
/// short to be noticed after a tap.
constexpr double upbeat = 0.02;

}  // namespace

Conductor::Conductor(std::shared_ptr<Surroundings> surroundings) : surroundings_(std::move(surroundings)) {}

void Conductor::perform(const Transaction& transaction) {
  if (ending_) return;
  leaveGroups(transaction);
  std::vector<std::shared_ptr<Deck>> starting;
  for (const auto& [deck, order] : transaction) {
    if (std::find(decks_.begin(), decks_.end(), deck) == decks_.end()) decks_.push_back(deck);
    deck->apply(order);
    if (order.concernsStart() && deck->waitsForStart()) starting.push_back(deck);
  }
  if (!starting.empty()) startTogether(std::move(starting));
}

void Conductor::setScrubbing(bool isScrubbing) {
  surroundings_->isScrubbing = isScrubbing;
  if (isScrubbing) return;
  const auto decks = decks_;
  for (const auto& deck : decks) deck->settle();
}

/// All of them before the rest of a group is looked at: the rest is not to start because its partner is about to
/// leave, too. Who is only told how loud to be goes on waiting with the others.
void Conductor::leaveGroups(const Transaction& transaction) {
  leaveGroups([&transaction](const Deck& member) {
    return std::any_of(transaction.begin(), transaction.end(), [&member](const auto& entry) {
      return entry.first.get() == &member && entry.second.concernsStart();
    });
  });
}

void Conductor::leaveGroups(const std::function<bool(const Deck&)>& leaves) {
  const auto old = groups_;
  for (const auto& group : old) {
    if (std::erase_if(group->decks, [&leaves](const auto& member) { return leaves(*member); }) > 0) tryStart(group);
  }
}

void Conductor::startTogether(std::vector<std::shared_ptr<Deck>> decks) {
  const auto group = std::make_shared<Group>(Group{now(), std::move(decks)});
  groups_.push_back(group);
  for (const double patience : {surroundings_->options.soundPatience, surroundings_->options.picturePatience}) {
    surroundings_->engine->postAt(group->made + nanoseconds(patience),
                                  [self = weak_from_this(), weak = std::weak_ptr(group)] {
                                    const auto conductor = self.lock();
                                    const auto waiting = weak.lock();
                                    if (conductor && waiting) conductor->tryStart(waiting);
                                  });
  }
  tryStart(group);
}

double Conductor::patienceWith(const Deck& deck) const {
  const Options& options = surroundings_->options;
  return deck.kind() == Deck::Kind::Sound ? options.soundPatience : options.picturePatience;
}

bool Conductor::isComplete(const Group& group) const {
  const double age = seconds(now() - group.made);
  return std::all_of(group.decks.begin(), group.decks.end(), [&](const auto& deck) {
    return deck->isReady() || !deck->waitsForStart() || age >= patienceWith(*deck);
  });
}

void Conductor::tryStart(const std::shared_ptr<Group>& group) {
  if (!isComplete(*group)) return;
  const Instant instant = now() + nanoseconds(upbeat);
  const auto decks = std::move(group->decks);
  group->decks.clear();
  std::erase(groups_, group);
  for (const auto& deck : decks) {
    if (deck->waitsForStart()) deck->start(instant);
  }
}

void Conductor::deckIsReady(Deck& deck) {
  const auto groups = groups_;
  for (const auto& group : groups) {
    const bool member = std::any_of(group->decks.begin(), group->decks.end(),
                                    [&deck](const auto& candidate) { return candidate.get() == &deck; });
    if (member) tryStart(group);
  }
}

void Conductor::deckLags(const Deck& sound, double lag) {
  for (const auto& deck : decks_) {
    if (deck->kind() == Deck::Kind::Picture && deck->url() == sound.url()) deck->followSound(lag);
  }
}

std::vector<std::shared_ptr<Deck>> Conductor::decksOf(const std::string& url) const {
  std::vector<std::shared_ptr<Deck>> found;
  std::copy_if(decks_.begin(), decks_.end(), std::back_inserter(found),
               [&url](const auto& deck) { return deck->url() == url; });
  return found;
}

/// The end of a film is the end of its longest track, so it is known once the end of each kind is. That is a fact of
/// the file, for every deck that plays it.
void Conductor::deckRanDry(const Deck& dry) {
  const auto decks = decksOf(dry.url());
  double end = 0.0;
  for (const auto kind : {Deck::Kind::Picture, Deck::Kind::Sound}) {
    std::optional<double> endOfKind;
    for (const auto& deck : decks) {
      const auto told = deck->endOf(kind);
      if (told && (!endOfKind || *told < *endOfKind)) endOfKind = told;
    }
    if (!endOfKind) return;
    end = std::max(end, *endOfKind);
  }
  for (const auto& deck : decks) deck->endAt(end);
}

void Conductor::deckIsRefused(const Deck& refused) {
  for (const auto& deck : decksOf(refused.url())) {
    if (deck.get() != &refused) deck->refuse();
  }
}

void Conductor::close(const std::shared_ptr<Deck>& deck) {
  leaveGroups([&deck](const Deck& member) { return &member == deck.get(); });
  std::erase(decks_, deck);
  closing_.push_back(deck);
  deck->close([self = weak_from_this(), weak = std::weak_ptr(deck)] {
    const auto conductor = self.lock();
    const auto closed = weak.lock();
    if (!conductor || !closed) return;
    std::erase(conductor->closing_, closed);
    if (conductor->ending_) conductor->closeAll();
  });
}

void Conductor::closeAll() {
  ending_ = true;
  const auto open = decks_;
  for (const auto& deck : open) close(deck);
  if (!closing_.empty()) return;
  const std::lock_guard lock(mutex_);
  allClosed_ = true;
  changed_.notify_all();
}

void Conductor::abandonClosing() {
  for (const auto& deck : closing_) deck->abandon();
  closing_.clear();
}

bool Conductor::waitUntilAllClosed(double patience) {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, std::chrono::nanoseconds(nanoseconds(patience)), [this] { return allClosed_; });
}

}  // namespace gstreamer
