#include "hosts/medialibrary/Looks.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <iterator>

namespace medialibrary {

namespace {

constexpr int threadCount = 2;
/// Disks that have to start up first take this long.
constexpr double secondsPerLook = 10.0;

/// On Linux a nice value belongs to a thread. Where it cannot be set, nothing is lost but courtesy.
void giveWay() {
  constexpr int nice = 10;
  setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), nice);
}

}  // namespace

Looks::Looks(std::function<std::vector<VideoFile>()> firstFiles) {
  threads_.emplace_back([this, list = std::move(firstFiles)] {
    giveWay();
    const std::vector<VideoFile> files = list();
    {
      const std::lock_guard lock(mutex_);
      expect(files);
    }
    run();
  });
  while (threads_.size() < threadCount) {
    threads_.emplace_back([this] {
      giveWay();
      run();
    });
  }
}

Looks::~Looks() {
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
  }
  somethingWaits_.notify_all();
  for (auto& thread : threads_) thread.join();
}

void Looks::run() {
  std::unique_lock lock(mutex_);
  for (;;) {
    somethingWaits_.wait(lock, [this] { return ends_ || !waiting_.empty(); });
    if (ends_) return;
    const VideoFile file = std::move(waiting_.front());
    waiting_.pop_front();
    lock.unlock();
    auto facts = std::make_shared<const probe::FileFacts>(probe::look(file.path, secondsPerLook));
    lock.lock();
    known_[file] = std::move(facts);
    somethingIsKnown_.notify_all();
  }
}

void Looks::expect(const std::vector<VideoFile>& files) {
  for (const VideoFile& file : files) {
    if (known_.try_emplace(file).second) waiting_.push_back(file);
  }
  somethingWaits_.notify_all();
}

bool Looks::areKnown(const std::vector<VideoFile>& files) const {
  return std::all_of(files.begin(), files.end(),
                     [this](const VideoFile& file) { return known_.at(file) != nullptr; });
}

void Looks::keepOnly(const std::vector<VideoFile>& files) {
  std::map<VideoFile, Facts> kept;
  for (const VideoFile& file : files) {
    if (auto node = known_.extract(file)) kept.insert(std::move(node));
  }
  known_ = std::move(kept);
  std::erase_if(waiting_, [this](const VideoFile& file) { return !known_.contains(file); });
}

std::vector<Looks::Facts> Looks::facts(const std::vector<VideoFile>& files, double patience) {
  std::unique_lock lock(mutex_);
  keepOnly(files);
  expect(files);
  somethingIsKnown_.wait_for(lock, std::chrono::duration<double>(patience), [&] { return areKnown(files); });
  std::vector<Facts> facts;
  std::transform(files.begin(), files.end(), std::back_inserter(facts),
                 [this](const VideoFile& file) { return known_.at(file); });
  return facts;
}

}  // namespace medialibrary
