#include "hosts/gstreamer/FactsCache.h"

#include "hosts/gstreamer/Instant.h"
#include "platform/foundation/Values.h"

#include <sys/stat.h>

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>
#include <tuple>

namespace gstreamer {

namespace {

/// What tells one state of a file from the next.
using Identity = std::tuple<dev_t, ino_t, off_t, time_t, long>;

std::optional<Identity> identityOf(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return std::nullopt;
  return Identity(status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec);
}

std::string pathOf(const std::string& url) {
  const auto parsed = NSURL::URLWithString(url);
  return parsed && parsed->isFileURL() ? parsed->path() : std::string();
}

}  // namespace

/// One look, or one check that an earlier look still holds. Even that check is not made on the caller's thread: a
/// network drive that is gone would block it.
struct FactsCache::Visit {
  bool done = false;
  host::MediaFacts facts;
};

struct FactsCache::State {
  struct Known {
    Identity identity;
    host::MediaFacts facts;
  };

  Look look;
  double deadline = 0.0;
  std::mutex mutex;
  std::condition_variable changed;
  std::map<std::string, Known> known;
  std::map<std::string, std::shared_ptr<Visit>> underWay;

  host::MediaFacts learn(const std::string& path) {
    const auto identity = identityOf(path);
    if (!identity) return {};
    {
      const std::lock_guard lock(mutex);
      const auto found = known.find(path);
      if (found != known.end() && found->second.identity == *identity) return found->second.facts;
    }
    const host::MediaFacts facts = look(path, deadline);
    // A file that was still being written to while it was looked into is looked into again next time.
    if (identityOf(path) == identity) {
      const std::lock_guard lock(mutex);
      known.insert_or_assign(path, Known{*identity, facts});
    }
    return facts;
  }

  void finish(const std::string& path, Visit& visit, host::MediaFacts facts) {
    const std::lock_guard lock(mutex);
    visit.facts = std::move(facts);
    visit.done = true;
    underWay.erase(path);
    changed.notify_all();
  }
};

FactsCache::FactsCache(Look look, double deadline) : state_(std::make_shared<State>()) {
  state_->look = std::move(look);
  state_->deadline = deadline;
}

FactsCache::~FactsCache() {
  std::unique_lock lock(state_->mutex);
  state_->changed.wait_for(lock, std::chrono::duration<double>(state_->deadline),
                           [this] { return state_->underWay.empty(); });
}

std::shared_ptr<FactsCache::Visit> FactsCache::visit(const std::string& path) {
  const std::lock_guard lock(state_->mutex);
  auto& visit = state_->underWay[path];
  if (visit) return visit;
  visit = std::make_shared<Visit>();
  std::thread([state = state_, visit, path] { state->finish(path, *visit, state->learn(path)); }).detach();
  return visit;
}

void FactsCache::expect(const std::string& url) {
  const std::string path = pathOf(url);
  if (!path.empty()) visit(path);
}

host::MediaFacts FactsCache::facts(const std::string& url) {
  const std::string path = pathOf(url);
  if (path.empty()) return {};
  const auto visited = visit(path);
  std::unique_lock lock(state_->mutex);
  state_->changed.wait_for(lock, std::chrono::duration<double>(state_->deadline), [&] { return visited->done; });
  return visited->done ? visited->facts : host::MediaFacts{};
}

}  // namespace gstreamer
