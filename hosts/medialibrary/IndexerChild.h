#pragma once

#include "hosts/medialibrary/FileDescriptor.h"
#include "hosts/medialibrary/IndexerProcess.h"

#include <sys/types.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace medialibrary {

/// Whether the program starts.
enum class IndexerStart { Started, FailedForNow, FailedForGood };

/// One running process of the indexer's program, and the one connection to it, on which both sides write and read.
/// It is a socket and not two pipes, so that writing to a process that is gone raises no signal in the app.
class IndexerChild {
 public:
  /// None when it could not be started, for the reason in `start`.
  static std::unique_ptr<IndexerChild> start(const IndexerOptions& options, IndexerStart& start);

  /// Kills the process and waits until it is gone.
  ~IndexerChild();
  IndexerChild(const IndexerChild&) = delete;
  IndexerChild& operator=(const IndexerChild&) = delete;

  /// The connection, until the process has hung up; then what becomes readable when the process has ended, or
  /// negative where the kernel has no such thing.
  int descriptor() const { return (hasHungUp_ ? processDescriptor_ : connection_).number(); }

  /// Sends as much of the beginning of `bytes` as goes without waiting; how much that was.
  std::size_t send(std::string_view bytes);

  enum class Reception { Came, NothingYet, HungUp };
  /// Appends what has come in, up to some kilobytes, to `bytes`.
  Reception receive(std::string& bytes);

  /// Never waits, unlike the destructor.
  void kill();
  /// The wait status of the process once it has ended. Does not wait.
  std::optional<int> status();
  /// Whether the process, in spite of having wanted to, has hardly worked since it had done `workBefore`: others took
  /// all of the processor.
  bool isStarved(double workBefore, double wantedWork) const;
  /// Seconds of processor time that it has taken so far; 0 if that cannot be told.
  double work() const;

 private:
  IndexerChild(pid_t process, FileDescriptor connection, FileDescriptor processDescriptor)
      : process_(process), connection_(std::move(connection)), processDescriptor_(std::move(processDescriptor)) {}

  pid_t process_;
  FileDescriptor connection_;
  FileDescriptor processDescriptor_;
  bool hasHungUp_ = false;
  std::optional<int> status_;
};

}  // namespace medialibrary
