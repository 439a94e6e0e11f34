#include "hosts/medialibrary/IndexerChild.h"

#include "hosts/medialibrary/Folders.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <vector>

namespace medialibrary {

namespace {

class FileActions {
 public:
  FileActions() { posix_spawn_file_actions_init(&actions_); }
  ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }
  FileActions(const FileActions&) = delete;
  FileActions& operator=(const FileActions&) = delete;

  /// `connection` as standard input and output, no other descriptor of ours, nothing on standard error.
  void useOnly(int connection) {
    posix_spawn_file_actions_adddup2(&actions_, connection, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions_, STDIN_FILENO, STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1);
  }
  const posix_spawn_file_actions_t* get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_{};
};

class Attributes {
 public:
  Attributes() { posix_spawnattr_init(&attributes_); }
  ~Attributes() { posix_spawnattr_destroy(&attributes_); }
  Attributes(const Attributes&) = delete;
  Attributes& operator=(const Attributes&) = delete;

  /// Signals as in a fresh process, and a process group of its own: Ctrl+C in a terminal is meant for the app.
  void startAfresh() {
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes_, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes_, &signals);
    posix_spawnattr_setpgroup(&attributes_, 0);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP);
  }
  const posix_spawnattr_t* get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_{};
};

/// The indexer needs to know where the thumbnails are, and how to find its libraries where they are in unusual
/// places.
std::vector<std::string> environmentOfIndexer() {
  std::vector<std::string> environment = {"HOME=" + homeFolder(), "XDG_CACHE_HOME=" + cacheFolder()};
  for (const char* name : {"LD_LIBRARY_PATH", "TSAN_OPTIONS", "ASAN_OPTIONS"}) {
    const char* value = std::getenv(name);
    if (value != nullptr) environment.push_back(std::string(name) + "=" + value);
  }
  return environment;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (auto& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

/// 0, or the number of the error.
int spawn(const IndexerOptions& options, int connection, pid_t& process) {
  FileActions actions;
  actions.useOnly(connection);
  Attributes attributes;
  attributes.startAfresh();
  std::vector<std::string> arguments = {options.program, std::to_string(::getpid()),
                                        std::to_string(options.mostMemory),
                                        options.isUrgent ? "urgent" : "background"};
  std::vector<std::string> environment = environmentOfIndexer();
  return ::posix_spawn(&process, options.program.c_str(), actions.get(), attributes.get(),
                       pointersTo(arguments).data(), pointersTo(environment).data());
}

bool isTemporary(int error) {
  return error == EAGAIN || error == ENOMEM || error == EMFILE || error == ENFILE || error == ETXTBSY;
}

}  // namespace

std::unique_ptr<IndexerChild> IndexerChild::start(const IndexerOptions& options, IndexerStart& start) {
  std::array<int, 2> ends{};
  start = IndexerStart::FailedForNow;
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) return nullptr;
  FileDescriptor connection(ends[0]);
  const FileDescriptor itsEnd(ends[1]);
  pid_t process = 0;
  const int error = spawn(options, itsEnd.number(), process);
  if (error != 0) {
    if (!isTemporary(error)) start = IndexerStart::FailedForGood;
    return nullptr;
  }
  start = IndexerStart::Started;
  FileDescriptor processDescriptor(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));  // closed on exec
  return std::unique_ptr<IndexerChild>(
      new IndexerChild(process, std::move(connection), std::move(processDescriptor)));
}

IndexerChild::~IndexerChild() {
  kill();
  int status = 0;
  while (!status_ && ::waitpid(process_, &status, 0) < 0 && errno == EINTR) {
  }
}

std::size_t IndexerChild::send(std::string_view bytes) {
  const ssize_t count = ::send(connection_.number(), bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
  return count > 0 ? static_cast<std::size_t>(count) : 0;
}

IndexerChild::Reception IndexerChild::receive(std::string& bytes) {
  std::array<char, 16 * 1024> piece{};
  if (hasHungUp_) return Reception::HungUp;
  const ssize_t count = ::recv(connection_.number(), piece.data(), piece.size(), MSG_DONTWAIT);
  if (count > 0) {
    bytes.append(piece.data(), static_cast<std::size_t>(count));
    return Reception::Came;
  }
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) return Reception::NothingYet;
  hasHungUp_ = true;
  return Reception::HungUp;
}

void IndexerChild::kill() {
  if (!status_) ::kill(process_, SIGKILL);
}

std::optional<int> IndexerChild::status() {
  int status = 0;
  if (status_) return status_;
  const pid_t ended = ::waitpid(process_, &status, WNOHANG);
  // Somebody else's wait for any child may have taken it, and with it how it ended.
  if (ended == process_ || (ended < 0 && errno == ECHILD)) status_ = status;
  return status_;
}

double IndexerChild::work() const {
  clockid_t clock = 0;
  timespec time{};
  if (::clock_getcpuclockid(process_, &clock) != 0 || ::clock_gettime(clock, &time) != 0) return 0.0;
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

bool IndexerChild::isStarved(double workBefore, double wantedWork) const {
  std::ifstream file("/proc/" + std::to_string(process_) + "/stat");
  std::string line;
  std::getline(file, line);
  const auto name = line.rfind(") ");  // what is before may hold anything
  const bool wantsToRun = name != std::string::npos && line.compare(name + 2, 1, "R") == 0;
  return wantsToRun && work() - workBefore < wantedWork;
}

}  // namespace medialibrary
