#pragma once

#include "hosts/medialibrary/Finding.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace medialibrary {

/// How an indexer is run.
struct IndexerOptions {
  std::string program;  ///< absolute path of `quillop-indexer`
  /// For one file, from its opening on. Up to twelve times as long for a process that wants to work but hardly gets
  /// the processor, as it may happen in the background.
  std::chrono::milliseconds patience{10'000};
  std::uint64_t mostMemory = 1ULL << 30U;  ///< bytes of data that the process may hold
  bool isUrgent = false;                   ///< at the app's own priority, because somebody waits for it
};

/// One file to be looked into.
struct IndexerTask {
  std::int64_t id = 0;
  std::string path;
  int thumbnailSide = 0;  ///< makes sure that the thumbnail cache holds a picture of this size; none at 0
};

/// The answer to one task.
struct IndexerAnswer {
  std::int64_t id = 0;
  Finding finding;
};

/// A process of its own that looks into files, so that a file which crashes it, hangs it or wants too much memory
/// costs that file alone: the process is stopped, its file comes back as unreadable with the reason, and a new
/// process goes on with the next one. The process ends with whoever started it.
///
/// One thread at a time. Nothing here waits, except the destructor, which waits until the process is gone, after
/// killing it.
class IndexerProcess {
 public:
  static std::unique_ptr<IndexerProcess> make(IndexerOptions options);
  virtual ~IndexerProcess() = default;

  /// Puts a task at the end of the queue, and starts the process where there is none.
  virtual void add(IndexerTask task) = 0;
  /// How many tasks have no answer yet.
  virtual std::size_t unanswered() const = 0;
  /// To be polled for reading; changes when the process is replaced. Negative while there is none, because there
  /// was no task yet or because none can be started at the moment.
  virtual int descriptor() const = 0;
  /// When `answers` has to be called at the latest though the descriptor is silent; none while nothing is under way.
  virtual std::optional<std::chrono::steady_clock::time_point> deadline() const = 0;
  /// The answers that have come in, in the order of the tasks; looks after the process, stopping it at its deadline
  /// and replacing it as needed. A program that cannot be started at all answers every task as unreadable with that
  /// reason and `canRun` says so; one that cannot be started at the moment, for lack of memory for example, is
  /// waited for.
  virtual std::vector<IndexerAnswer> answers() = 0;
  /// False once the program turned out not to start. What it was given is no fault of the files then.
  virtual bool canRun() const = 0;
};

}  // namespace medialibrary
