#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <functional>
#include <stdexcept>
#include <string>

/// Another process that runs a part of a test, and tells of its progress by single characters.
class ChildProcess {
 public:
  using Say = std::function<void(char)>;

  /// Runs `work` there, which says things by calling what it is given. Its end is the end of the process.
  explicit ChildProcess(const std::function<void(const Say&)>& work) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) throw std::runtime_error("no pipe");
    id_ = fork();
    if (id_ < 0) throw std::runtime_error("no process");
    if (id_ == 0) run(work, ends[1]);
    close(ends[1]);
    said_ = ends[0];
  }
  ~ChildProcess() {
    kill();
    close(said_);
  }
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// The next thing that it says; 0 when it has ended.
  char next() const {
    char said = 0;
    return read(said_, &said, 1) == 1 ? said : '\0';
  }
  /// Everything else that it says until its end.
  std::string rest() const {
    std::string all;
    while (const char said = next()) all += said;
    return all;
  }
  /// Ends it at once, as a crash would.
  void kill() {
    if (id_ < 0) return;
    ::kill(id_, SIGKILL);
    waitpid(id_, nullptr, 0);
    id_ = -1;
  }

 private:
  [[noreturn]] static void run(const std::function<void(const Say&)>& work, int end) {
    const auto say = [end](char what) {
      if (write(end, &what, 1) != 1) _exit(1);
    };
    try {
      work(say);
    } catch (const std::exception&) {
      say('!');
    }
    _exit(0);
  }

  pid_t id_ = -1;
  int said_ = -1;
};
