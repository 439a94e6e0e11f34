#include "hosts/medialibrary/Keeper.h"

#include "hosts/medialibrary/Index.h"
#include "hosts/medialibrary/KeeperDesk.h"
#include "hosts/medialibrary/KeeperShift.h"
#include "hosts/medialibrary/Order.h"

#include <poll.h>
#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <thread>
#include <utility>

namespace medialibrary {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds retryInterval{10'000};  // after the disk was full, for example
constexpr milliseconds damageInterval{200};
constexpr milliseconds slice{50};
constexpr milliseconds longestEnd{2000};

/// On Linux a nice value belongs to a thread. Where it cannot be set, nothing is lost but courtesy.
void giveWayToOtherThreads() {
  constexpr int nice = 10;
  setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), nice);
}

void complain(const IndexError& error) {
  std::fprintf(stderr, "the index of the media library: %s\n", error.what());
}

void pause(const KeeperDesk& desk, milliseconds duration) {
  const auto end = std::chrono::steady_clock::now() + duration;
  while (!desk.ends() && std::chrono::steady_clock::now() < end) std::this_thread::sleep_for(slice);
}

void work(KeeperDesk& desk, Keeper::Options& options) {
  const Order order(options.locale);
  auto contents = Index::Contents::Kept;
  while (!desk.ends()) {
    try {
      const auto index = Index::open(options.index, order, std::exchange(contents, Index::Contents::Kept));
      desk.open(options.index);
      KeeperShift(desk, *index, options).run(options);
      desk.close();
      contents = Index::Contents::SetAside;
    } catch (const IndexError& error) {
      complain(error);
      if (error.isDamaged()) {
        desk.close();
        contents = Index::Contents::SetAside;
        pause(desk, damageInterval);
      } else if (!options.spare.empty() && options.index != options.spare) {
        // A full disk or a folder that may not be written to costs the memory of what was found, not the library.
        desk.close();
        options.index = options.spare;
      } else {
        pause(desk, retryInterval);
      }
    }
  }
}

}  // namespace

/// What the thread uses belongs to the thread too, which is left to itself when the disk does not let it end.
class Keeper::Thread {
 public:
  Thread(Options options, std::function<void()> changed) : desk_(std::make_shared<KeeperDesk>(std::move(changed))) {
    std::thread([desk = desk_, ended = ended_, options = std::move(options)]() mutable {
      giveWayToOtherThreads();
      work(*desk, options);
      ended->ring();
    }).detach();
  }

  ~Thread() {
    desk_->end();
    pollfd descriptor{ended_->descriptor(), POLLIN, 0};
    ::poll(&descriptor, 1, static_cast<int>(longestEnd.count()));
  }

  Thread(const Thread&) = delete;
  Thread& operator=(const Thread&) = delete;

  KeeperDesk& desk() const { return *desk_; }

 private:
  std::shared_ptr<KeeperDesk> desk_;
  std::shared_ptr<Bell> ended_ = std::make_shared<Bell>();
};

Keeper::Keeper(Options options, std::function<void()> changed)
    : thread_(std::make_unique<Thread>(std::move(options), std::move(changed))) {}

Keeper::~Keeper() = default;

Keeper::State Keeper::state() const {
  return thread_->desk().state();
}

std::optional<Keeper::Opening> Keeper::openIndex(double seconds) const {
  return thread_->desk().openIndex(seconds);
}

void Keeper::setFolders(std::vector<std::string> folders) {
  thread_->desk().order([&](KeeperOrders& orders) { orders.folders = std::move(folders); });
}

void Keeper::rescan() {
  thread_->desk().order([](KeeperOrders& orders) { orders.searchAll = orders.lookAgain = true; });
}

void Keeper::refresh() {
  if (!state().missesChanges) return;
  thread_->desk().order([](KeeperOrders& orders) { orders.searchAll = true; });
}

void Keeper::setPace(Pace pace) {
  thread_->desk().order([=](KeeperOrders& orders) { orders.pace = pace; });
}

void Keeper::rebuild() {
  thread_->desk().order([](KeeperOrders& orders) { orders.rebuild = true; });
}

}  // namespace medialibrary
