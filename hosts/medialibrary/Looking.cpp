#include "hosts/medialibrary/Looking.h"

#include "hosts/medialibrary/Paths.h"

#include <sys/stat.h>

#include <algorithm>
#include <thread>
#include <utility>

namespace medialibrary {

namespace {

constexpr std::size_t tasksAhead = 8;  // of each process, so that none waits for the next one
constexpr std::size_t filesPerFetch = 64;
constexpr unsigned mostProcesses = 4;
constexpr int restsPerWork = 4;         // a fifth of one processor, at the gentle pace
constexpr int listedPictureSide = 256;  // pixels, enough for a row of the list on a dense screen

std::size_t processCount() {
  return std::clamp(std::thread::hardware_concurrency(), 1U, mostProcesses);
}

bool isStill(const VideoFile& file) {
  struct stat facts {};
  return ::stat(file.path.c_str(), &facts) == 0 && facts.st_size == file.size &&
         facts.st_mtim.tv_sec == file.modifiedSeconds && facts.st_mtim.tv_nsec == file.modifiedNanoseconds;
}

}  // namespace

Looking::Looking(Index& index, std::string program) : index_(index), program_(std::move(program)) {}

void Looking::feed() {
  if (!canLook_) return;
  if (next_.empty()) fetch();
  if (next_.empty() && underWay_.empty()) {
    processes_.clear();
  } else if (pace_ == Pace::Gentle) {
    giveGently();
  } else {
    start(processCount());
    for (const auto& process : processes_) give(*process, tasksAhead);
  }
}

void Looking::start(std::size_t count) {
  while (!next_.empty() && processes_.size() < count) {
    IndexerOptions options;
    options.program = program_;
    processes_.push_back(IndexerProcess::make(std::move(options)));
    give(*processes_.back(), 1);
  }
}

/// What the processes were given before, they finish.
void Looking::giveGently() {
  if (!underWay_.empty() || Clock::now() < restsUntil_) return;
  if (processes_.size() > 1) processes_.resize(1);
  givenAt_ = Clock::now();
  start(1);
  give(*processes_.front(), 1);
}

/// After a file that took long, longer: it is the share of the processor that counts.
void Looking::rest() {
  if (pace_ == Pace::Gentle) restsUntil_ = Clock::now() + restsPerWork * (Clock::now() - givenAt_);
}

void Looking::fetch() {
  std::vector<std::int64_t> except;
  for (const auto& [id, file] : underWay_) except.push_back(id);
  const auto files = index_.waiting(filesPerFetch, except);
  next_.assign(files.begin(), files.end());
}

void Looking::give(IndexerProcess& process, std::size_t most) {
  while (!next_.empty() && process.unanswered() < most) {
    IndexedFile file = std::move(next_.front());
    next_.pop_front();
    process.add({file.id, file.file.path, listedPictureSide});
    underWay_.insert_or_assign(file.id, std::move(file));
  }
}

std::size_t Looking::settle() {
  std::size_t count = 0;
  for (const auto& process : processes_) {
    const auto answers = process->answers();
    canLook_ = canLook_ && process->canRun();
    if (!process->canRun()) continue;
    for (const IndexerAnswer& answer : answers) settle(answer);
    count += answers.size();
  }
  if (!canLook_) {
    processes_.clear();
    underWay_.clear();
    next_.clear();
  }
  if (count > 0) rest();
  return count;
}

void Looking::settle(const IndexerAnswer& answer) {
  const auto place = underWay_.find(answer.id);
  if (place == underWay_.end()) return;
  const VideoFile file = place->second.file;
  underWay_.erase(place);
  if (isStill(file)) {
    index_.settle(answer.id, file, answer.finding);
  } else {
    outdatedFolders_.emplace(folderOf(file.path));
  }
}

void Looking::addTo(std::vector<pollfd>& descriptors) const {
  for (const auto& process : processes_) {
    if (process->descriptor() >= 0) descriptors.push_back({process->descriptor(), POLLIN, 0});
  }
}

std::optional<std::chrono::steady_clock::time_point> Looking::deadline() const {
  std::optional<std::chrono::steady_clock::time_point> first;
  for (const auto& process : processes_) {
    const auto deadline = process->deadline();
    if (deadline && (!first || *deadline < *first)) first = deadline;
  }
  const bool isResting = pace_ == Pace::Gentle && underWay_.empty() && !next_.empty();
  if (isResting && (!first || restsUntil_ < *first)) first = restsUntil_;
  return first;
}

}  // namespace medialibrary
