#include "hosts/medialibrary/indexer/IndexerLoop.h"

#include "hosts/medialibrary/FileDescriptor.h"
#include "hosts/medialibrary/IndexerWire.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <new>

namespace medialibrary {

namespace {

enum class Reading { Came, Ended, Failed };

Reading readSome(int input, IndexerStream& stream) {
  std::array<char, 16 * 1024> bytes{};
  for (;;) {
    const ssize_t count = ::read(input, bytes.data(), bytes.size());
    if (count > 0) stream.add({bytes.data(), static_cast<std::size_t>(count)});
    if (count >= 0) return count > 0 ? Reading::Came : Reading::Ended;
    if (errno != EINTR) return Reading::Failed;
  }
}

bool doTask(int output, const IndexerTask& task, const LookInto& look) {
  return writeAll(output, frameOf(IndexerOpening{task.id})) &&
         writeAll(output, frameOf(IndexerAnswer{task.id, look(task)}));
}

}  // namespace

int runIndexerLoop(int input, int output, const LookInto& look) try {
  IndexerStream stream;
  for (;;) {
    while (const auto message = stream.next()) {
      const auto* task = std::get_if<IndexerTask>(&*message);
      if (task == nullptr || !doTask(output, *task, look)) return 1;
    }
    if (stream.isBroken()) return 1;
    const Reading reading = readSome(input, stream);
    if (reading != Reading::Came) return reading == Reading::Ended ? 0 : 1;
  }
} catch (const std::bad_alloc&) {
  return exitOutOfMemory;
}

}  // namespace medialibrary
