#include "hosts/medialibrary/IndexerWire.h"

#include "hosts/probe/Text.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <type_traits>

namespace medialibrary {

namespace {

using Length = std::uint32_t;

constexpr std::size_t longestFrame = 16 * 1024;
constexpr std::size_t longestText = 4096;

enum class Kind : std::uint8_t { Task = 1, Opening, Answer };

/// The beginning of a line of text, no character of it cut in two.
std::string shortened(const std::string& line) {
  if (line.size() <= longestText) return line;
  std::size_t end = longestText;
  while (end > 0 && (static_cast<unsigned char>(line[end]) & 0xC0U) == 0x80U) --end;
  return probe::lineOfText(std::string_view(line).substr(0, end));
}

class Writer {
 public:
  explicit Writer(Kind kind) { put(kind); }

  template <class Number>
  void put(Number number) {
    static_assert(std::is_trivially_copyable_v<Number>);
    const std::size_t begin = bytes_.size();
    bytes_.resize(begin + sizeof number);
    std::memcpy(&bytes_[begin], &number, sizeof number);
  }
  void put(const std::string& text) {
    put(static_cast<Length>(text.size()));
    bytes_ += text;
  }

  std::string frame() const {
    const auto length = static_cast<Length>(bytes_.size());
    std::string frame(sizeof length, '\0');
    std::memcpy(frame.data(), &length, sizeof length);
    return frame + bytes_;
  }

 private:
  std::string bytes_;
};

/// Takes fields from a frame. Once something is wrong, `isRight` stays false and all further fields are zero.
class Reader {
 public:
  explicit Reader(std::string_view bytes) : bytes_(bytes) {}

  template <class Number>
  Number take() {
    static_assert(std::is_trivially_copyable_v<Number>);
    Number number{};
    require(bytes_.size() >= sizeof number);
    if (!isRight_) return number;
    std::memcpy(&number, bytes_.data(), sizeof number);
    bytes_.remove_prefix(sizeof number);
    return number;
  }
  bool takeTruth() {
    const auto number = take<std::uint8_t>();
    require(number <= 1);
    return number == 1;
  }
  int takeCount() {
    const auto number = take<std::int32_t>();
    require(number >= 0);
    return number;
  }
  std::string takeBytes(std::size_t longest) {
    const std::size_t length = take<Length>();
    require(length <= longest && length <= bytes_.size());
    if (!isRight_) return {};
    std::string text(bytes_.substr(0, length));
    bytes_.remove_prefix(length);
    return text;
  }
  std::string takeLine() {
    std::string line = takeBytes(longestText);
    require(probe::lineOfText(line) == line);
    return line;
  }

  void require(bool condition) { isRight_ = isRight_ && condition; }
  /// Whether everything was right and nothing is left.
  bool isRight() const { return isRight_ && bytes_.empty(); }

 private:
  std::string_view bytes_;
  bool isRight_ = true;
};

std::string frame(const IndexerTask& task) {
  Writer writer(Kind::Task);
  writer.put(task.id);
  writer.put(static_cast<std::int32_t>(task.thumbnailSide));
  writer.put(task.path);
  return writer.frame();
}

std::string frame(const IndexerOpening& opening) {
  Writer writer(Kind::Opening);
  writer.put(opening.id);
  return writer.frame();
}

std::string frame(const IndexerAnswer& answer) {
  const Finding& finding = answer.finding;
  Writer writer(Kind::Answer);
  writer.put(answer.id);
  writer.put(static_cast<std::uint8_t>(finding.isReadable));
  writer.put(shortened(finding.reason));
  writer.put(finding.mediaType);
  writer.put(static_cast<std::uint8_t>(finding.title.has_value()));
  if (finding.title) writer.put(shortened(*finding.title));
  writer.put(finding.duration);
  writer.put(static_cast<std::int32_t>(finding.rotation));
  writer.put(static_cast<std::int32_t>(finding.soundTracks));
  writer.put(static_cast<std::int32_t>(finding.pictureTracks));
  writer.put(static_cast<std::uint8_t>(finding.hasPicture));
  writer.put(static_cast<std::uint8_t>(finding.isProtected));
  return writer.frame();
}

IndexerTask takeTask(Reader& reader) {
  IndexerTask task;
  task.id = reader.take<std::int64_t>();
  task.thumbnailSide = reader.takeCount();
  task.path = reader.takeBytes(longestPath);
  return task;
}

IndexerAnswer takeAnswer(Reader& reader) {
  IndexerAnswer answer;
  Finding& finding = answer.finding;
  answer.id = reader.take<std::int64_t>();
  finding.isReadable = reader.takeTruth();
  finding.reason = reader.takeLine();
  finding.mediaType = reader.take<std::uint64_t>();
  if (reader.takeTruth()) finding.title = reader.takeLine();
  finding.duration = reader.take<double>();
  reader.require(std::isfinite(finding.duration) && finding.duration >= 0.0);
  finding.rotation = reader.takeCount();
  reader.require(finding.rotation < 360 && finding.rotation % 90 == 0);
  finding.soundTracks = reader.takeCount();
  finding.pictureTracks = reader.takeCount();
  finding.hasPicture = reader.takeTruth();
  finding.isProtected = reader.takeTruth();
  return answer;
}

IndexerMessage takeMessage(Reader& reader) {
  switch (reader.take<Kind>()) {
    case Kind::Task:
      return takeTask(reader);
    case Kind::Opening:
      return IndexerOpening{reader.take<std::int64_t>()};
    case Kind::Answer:
      return takeAnswer(reader);
  }
  reader.require(false);
  return IndexerOpening{};
}

}  // namespace

std::string frameOf(const IndexerMessage& message) {
  return std::visit([](const auto& known) { return frame(known); }, message);
}

void IndexerStream::add(std::string_view bytes) {
  if (!isBroken_) bytes_ += bytes;
}

std::optional<IndexerMessage> IndexerStream::next() {
  Length length = 0;
  if (isBroken_ || bytes_.size() < sizeof length) return std::nullopt;
  std::memcpy(&length, bytes_.data(), sizeof length);
  isBroken_ = length > longestFrame;
  if (isBroken_ || bytes_.size() - sizeof length < length) return std::nullopt;
  Reader reader(std::string_view(bytes_).substr(sizeof length, length));
  IndexerMessage message = takeMessage(reader);
  isBroken_ = !reader.isRight();
  if (isBroken_) return std::nullopt;
  bytes_.erase(0, sizeof length + length);
  return message;
}

}  // namespace medialibrary
