#pragma once

#include "hosts/medialibrary/IndexerProcess.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace medialibrary {

/// The indexer's note that it opens the file of a task next. Whatever happens from then on is this file's fault.
struct IndexerOpening {
  std::int64_t id = 0;
};

/// What an indexer and the process that started it tell each other, both on the same machine and of the same build.
///
/// On the wire a message is one frame: the length of the rest as 4 bytes, one byte for the kind, then the fields of
/// the message in turn, numbers as this machine has them in memory, texts as their length in 4 bytes and their bytes.
using IndexerMessage = std::variant<IndexerTask, IndexerOpening, IndexerAnswer>;

/// The kernel opens nothing longer than this; tasks with a longer path cannot be sent.
inline constexpr std::size_t longestPath = 4096;

/// `message` as a frame. Of a title or a reason of more than 4096 bytes, only the beginning is sent.
std::string frameOf(const IndexerMessage& message);

/// The messages in a stream of bytes that comes in in pieces. The other end is not believed: a frame that is too
/// long, ends before its fields do or after them, or has a value that no field of ours can have, breaks the stream
/// for good.
class IndexerStream {
 public:
  void add(std::string_view bytes);
  /// The next whole message; none while more bytes are needed, and once the stream is broken.
  std::optional<IndexerMessage> next();
  bool isBroken() const { return isBroken_; }

 private:
  std::string bytes_;
  bool isBroken_ = false;
};

}  // namespace medialibrary
