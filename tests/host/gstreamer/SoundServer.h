#pragma once

#include "tests/support/EnvironmentVariable.h"

#include <sys/types.h>

#include <array>
#include <filesystem>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace gstreamer {

/// A child process of the test, which ends with it.
class Process {
 public:
  Process() = default;
  /// `output`: a descriptor for its standard output, closed here; its errors go nowhere.
  Process(const std::vector<std::string>& command, int output = -1);
  ~Process() { kill(); }
  Process(Process&& other) noexcept : id_(std::exchange(other.id_, -1)) {}
  Process& operator=(Process&& other) noexcept;

  bool runs() const { return id_ > 0; }
  void signal(int number) const;
  /// At once, without its having a say; returns when it is gone.
  void kill();
  /// Returns when it has ended by itself.
  void wait();

 private:
  pid_t id_ = -1;
};

/// A sound server of the test's own that plays to nobody. Its sinks swallow what they are given, and hand it to
/// whoever listens. As long as it exists, programs of this process find it without being told where.
class SoundServer {
 public:
  /// Does not start it.
  SoundServer();
  ~SoundServer();
  SoundServer(const SoundServer&) = delete;
  SoundServer& operator=(const SoundServer&) = delete;

  /// With one sink, called "first", unless `sinks` names others. False when it does not come up.
  bool start(const std::vector<std::string>& sinks = {"first"});
  void kill() { process_.kill(); }
  void signal(int number) const { process_.signal(number); }
  /// What clients connect to; the same after each start.
  std::string address() const { return "unix:" + (folder_ / "socket").string(); }
  /// Has `pactl` carry out a command, and returns when it has.
  void command(std::vector<std::string> arguments) const;
  void addSink(const std::string& name, int channels = 2) const;
  void removeSink(const std::string& name) const;

 private:
  bool listens() const;

  std::filesystem::path folder_;
  EnvironmentVariable configuration_;
  EnvironmentVariable server_;
  Process process_;
};

/// What a sink of a sound server plays, as it plays it.
class Listener {
 public:
  Listener(const SoundServer& server, const std::string& sink);
  ~Listener();
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  using Sample = std::array<float, 2>;
  /// The newest frame; silence before the first one.
  Sample newest() const;
  std::vector<Sample> everything() const;

 private:
  void read();

  int pipe_ = -1;
  Process process_;
  mutable std::mutex mutex_;
  std::vector<Sample> heard_;
  std::thread thread_;
};

}  // namespace gstreamer
