#include "hosts/medialibrary/IndexerProcess.h"

#include "hosts/medialibrary/IndexerChild.h"
#include "hosts/medialibrary/IndexerWire.h"
#include "hosts/medialibrary/indexer/IndexerLoop.h"

#include <sys/wait.h>

#include <algorithm>
#include <csignal>
#include <deque>
#include <utility>

namespace medialibrary {

namespace {

using Clock = std::chrono::steady_clock;

/// So that the process never idles between two files. What is on its way when it dies is just sent again.
constexpr std::size_t tasksAhead = 4;
constexpr int mostVainStarts = 3;
constexpr std::chrono::seconds startInterval{1};  // while the system has no process or no memory to spare
/// In background priority, a busy machine may leave a process hardly any time.
constexpr int mostExtensions = 11;

constexpr const char* tookTooLong = "looking into it took too long";
constexpr const char* failed = "looking into it failed";
constexpr const char* tooMuchMemory = "looking into it takes too much memory";
constexpr const char* cannotRun = "the program that looks into files cannot be started";
constexpr const char* pathTooLong = "its path is too long";

IndexerAnswer unreadable(std::int64_t id, const char* reason) {
  IndexerAnswer answer{id, {}};
  answer.finding.reason = reason;
  return answer;
}

bool ranOutOfMemory(int status) {
  return WIFEXITED(status) && WEXITSTATUS(status) == exitOutOfMemory;
}

/// By the user, or by a system that is short of memory: no file sends these.
bool wasKilledFromOutside(int status) {
  if (!WIFSIGNALED(status)) return false;
  const int signal = WTERMSIG(status);
  return signal == SIGKILL || signal == SIGTERM || signal == SIGINT || signal == SIGQUIT || signal == SIGHUP;
}

class ReplacedProcess final : public IndexerProcess {
 public:
  explicit ReplacedProcess(IndexerOptions options) : options_(std::move(options)) {}

  void add(IndexerTask task) override {
    tasks_.push_back(std::move(task));
    advance();
  }
  std::size_t unanswered() const override { return tasks_.size() + answers_.size(); }
  int descriptor() const override { return child_ ? child_->descriptor() : -1; }
  std::optional<Clock::time_point> deadline() const override;
  std::vector<IndexerAnswer> answers() override;
  bool canRun() const override { return canRun_; }

 private:
  /// Settles what needs no process, starts one if one is needed, and gives it what it has room for.
  void advance();
  void start();
  void sendTasks();
  void receive();
  /// False when the process said what it has no reason to say.
  bool take(const IndexerMessage& message);
  bool take(const IndexerOpening& opening);
  bool take(IndexerAnswer answer);
  bool take(const IndexerTask&) { return false; }

  Clock::time_point endOfPatience() const;
  void watchDeadline();
  /// The process is gone, or has hung up and is going.
  void takeLeave();
  /// Whether the file under way is to be tried once more, as the first of a new process.
  bool deservesRetry(int status) const;
  void judge(int status);
  void dismiss(const char* reason);
  void forgetChild();
  void countVainStart();
  void giveUp();
  void answerFirst(IndexerAnswer answer);
  void beginWait();

  IndexerOptions options_;
  bool canRun_ = true;
  int vainStarts_ = 0;  // since the last one that opened a file
  Clock::time_point startsAgainAt_;

  std::deque<IndexerTask> tasks_;  // without an answer, oldest first
  std::vector<IndexerAnswer> answers_;

  std::unique_ptr<IndexerChild> child_;
  std::vector<std::unique_ptr<IndexerChild>> dying_;  // killed; not waited for before they are gone
  IndexerStream stream_;                              // from the process
  std::string unsent_;
  std::size_t sent_ = 0;       // of the first tasks, how many the process has been given
  std::size_t answered_ = 0;   // by this process
  bool isOpened_ = false;      // the first task's file, by this process
  bool hasOpenedAny_ = false;  // this process
  bool isHangingUp_ = false;
  bool isRetried_ = false;        // the first task
  Clock::time_point waitsSince_;  // for the process to open the first task's file, or to answer
  double workBefore_ = 0.0;       // of the process, at that time
  int extensions_ = 0;
};

void ReplacedProcess::advance() {
  while (!tasks_.empty() && sent_ == 0 && tasks_.front().path.size() > longestPath) {
    answerFirst(unreadable(tasks_.front().id, pathTooLong));
  }
  if (!canRun_) giveUp();
  if (!tasks_.empty() && !child_) start();
  if (child_ && !isHangingUp_) sendTasks();
}

void ReplacedProcess::start() {
  if (Clock::now() < startsAgainAt_) return;
  IndexerStart result{};
  child_ = IndexerChild::start(options_, result);
  if (result == IndexerStart::FailedForNow) startsAgainAt_ = Clock::now() + startInterval;
  if (result == IndexerStart::FailedForGood) {
    canRun_ = false;
    giveUp();
  }
}

void ReplacedProcess::countVainStart() {
  ++vainStarts_;
  canRun_ = vainStarts_ < mostVainStarts;
  if (!canRun_) giveUp();
}

void ReplacedProcess::giveUp() {
  while (!tasks_.empty()) answerFirst(unreadable(tasks_.front().id, cannotRun));
}

void ReplacedProcess::sendTasks() {
  const bool wasIdle = sent_ == 0;
  while (sent_ < std::min(tasks_.size(), tasksAhead) && tasks_[sent_].path.size() <= longestPath) {
    unsent_ += frameOf(tasks_[sent_]);
    ++sent_;
  }
  unsent_.erase(0, child_->send(unsent_));
  if (wasIdle && sent_ > 0) beginWait();
}

void ReplacedProcess::beginWait() {
  waitsSince_ = Clock::now();
  workBefore_ = child_->work();
  extensions_ = 0;
}

std::optional<Clock::time_point> ReplacedProcess::deadline() const {
  constexpr std::chrono::milliseconds soon{20};
  if (!answers_.empty()) return Clock::now();
  if (!child_) return tasks_.empty() ? std::nullopt : std::optional(startsAgainAt_);
  if (isHangingUp_ || !unsent_.empty()) return Clock::now() + soon;
  if (sent_ == 0) return std::nullopt;
  return endOfPatience();
}

Clock::time_point ReplacedProcess::endOfPatience() const {
  return waitsSince_ + (extensions_ + 1) * options_.patience;
}

std::vector<IndexerAnswer> ReplacedProcess::answers() {
  std::erase_if(dying_, [](const auto& child) { return child->status().has_value(); });
  receive();
  if (child_ && isHangingUp_) takeLeave();
  if (child_ && !isHangingUp_) watchDeadline();
  advance();
  return std::exchange(answers_, {});
}

void ReplacedProcess::receive() {
  while (child_ && !isHangingUp_) {
    std::string bytes;
    const auto reception = child_->receive(bytes);
    if (reception == IndexerChild::Reception::NothingYet) return;
    isHangingUp_ = reception == IndexerChild::Reception::HungUp;
    stream_.add(bytes);
    while (const auto message = stream_.next()) {
      if (!take(*message)) return dismiss(failed);
    }
    if (stream_.isBroken()) return dismiss(failed);
    advance();
  }
}

bool ReplacedProcess::take(const IndexerMessage& message) {
  return std::visit([this](const auto& known) { return take(known); }, message);
}

bool ReplacedProcess::take(const IndexerOpening& opening) {
  if (sent_ == 0 || isOpened_ || opening.id != tasks_.front().id) return false;
  isOpened_ = true;
  hasOpenedAny_ = true;
  vainStarts_ = 0;
  beginWait();
  return true;
}

bool ReplacedProcess::take(IndexerAnswer answer) {
  if (!isOpened_ || answer.id != tasks_.front().id) return false;
  ++answered_;
  --sent_;
  answerFirst(std::move(answer));
  beginWait();
  return true;
}

void ReplacedProcess::answerFirst(IndexerAnswer answer) {
  answers_.push_back(std::move(answer));
  tasks_.pop_front();
  isOpened_ = false;
  isRetried_ = false;
}

void ReplacedProcess::watchDeadline() {
  if (sent_ == 0 || Clock::now() < endOfPatience()) return;
  const double patience = std::chrono::duration<double>(options_.patience).count();
  if (extensions_ < mostExtensions && child_->isStarved(workBefore_, patience / 2)) {
    ++extensions_;
    return;
  }
  dismiss(tookTooLong);
}

void ReplacedProcess::takeLeave() {
  child_->kill();  // it may have closed its end and live on; how it ended, if it did, stays as it is
  if (const auto status = child_->status()) judge(*status);
}

bool ReplacedProcess::deservesRetry(int status) const {
  if (isRetried_) return false;
  return wasKilledFromOutside(status) || (ranOutOfMemory(status) && answered_ > 0);
}

void ReplacedProcess::judge(int status) {
  if (isOpened_ && deservesRetry(status)) {
    isRetried_ = true;
    forgetChild();
  } else {
    dismiss(ranOutOfMemory(status) ? tooMuchMemory : failed);
  }
}

/// Ends the process, and answers the file that it had opened, if any, with `reason`.
void ReplacedProcess::dismiss(const char* reason) {
  if (isOpened_) answerFirst(unreadable(tasks_.front().id, reason));
  const bool wasInVain = !hasOpenedAny_;
  forgetChild();
  if (wasInVain) countVainStart();
}

void ReplacedProcess::forgetChild() {
  child_->kill();
  dying_.push_back(std::move(child_));
  stream_ = {};
  unsent_.clear();
  sent_ = 0;
  answered_ = 0;
  isOpened_ = false;
  hasOpenedAny_ = false;
  isHangingUp_ = false;
}

}  // namespace

std::unique_ptr<IndexerProcess> IndexerProcess::make(IndexerOptions options) {
  return std::make_unique<ReplacedProcess>(std::move(options));
}

}  // namespace medialibrary
