#include "hosts/probe/LastBlock.h"

#include <algorithm>
#include <array>
#include <bit>
#include <optional>
#include <string>
#include <string_view>

namespace probe {

namespace {

// Matroska's elements (RFC 9559, section 5), by their identifiers.
constexpr std::string_view cluster = "\x1F\x43\xB6\x75";
constexpr std::uint64_t timestamp = 0xE7;
constexpr std::uint64_t simpleBlock = 0xA3;
constexpr std::uint64_t blockGroup = 0xA0;
constexpr std::uint64_t block = 0xA1;

/// How much of the end is searched for a cluster's beginning: one of a film of high quality may have several seconds.
constexpr std::array<std::int64_t, 3> searched = {1 << 20, 8 << 20, 32 << 20};  // bytes

/// Takes numbers and elements off the front of what is left of some bytes.
class Bytes {
 public:
  explicit Bytes(std::string_view left) : left_(left) {}

  /// Big-endian.
  std::optional<std::uint64_t> number(std::size_t count) {
    if (count > 8 || left_.size() < count) return std::nullopt;
    std::uint64_t value = 0;
    for (const char byte : take(count)) value = value << 8U | static_cast<unsigned char>(byte);
    return value;
  }

  /// One whose first byte tells its length; the bit that does so belongs to identifiers only.
  std::optional<std::uint64_t> variableNumber(bool keepsMarker) {
    if (left_.empty() || left_.front() == 0) return std::nullopt;
    const auto length = static_cast<unsigned>(std::countl_zero(static_cast<std::uint8_t>(left_.front()))) + 1;
    const auto value = number(length);
    const std::uint64_t digits = (std::uint64_t{1} << 7U * length) - 1;
    return !value || keepsMarker ? value : std::optional(*value & digits);
  }

  struct Element {
    std::uint64_t identifier = 0;
    std::string_view contents;  ///< as much of it as is left
  };
  std::optional<Element> element() {
    const auto identifier = variableNumber(true);
    if (!identifier) return std::nullopt;
    const auto length = variableNumber(false);
    if (!length) return std::nullopt;
    return Element{*identifier, take(static_cast<std::size_t>(std::min<std::uint64_t>(*length, left_.size())))};
  }

 private:
  std::string_view take(std::size_t count) {
    const std::string_view taken = left_.substr(0, count);
    left_.remove_prefix(count);
    return taken;
  }

  std::string_view left_;
};

/// Of a block, its time in the cluster.
std::optional<std::int64_t> timeInCluster(std::string_view contents) {
  Bytes bytes(contents);
  if (!bytes.variableNumber(false)) return std::nullopt;  // the track
  const auto time = bytes.number(2);
  return time ? std::optional<std::int64_t>(static_cast<std::int16_t>(*time)) : std::nullopt;
}

std::optional<std::int64_t> timeInCluster(const Bytes::Element& element) {
  if (element.identifier == simpleBlock) return timeInCluster(element.contents);
  if (element.identifier != blockGroup) return std::nullopt;
  Bytes group(element.contents);
  while (const auto inner = group.element()) {
    if (inner->identifier == block) return timeInCluster(inner->contents);
  }
  return std::nullopt;
}

/// The time of the last block of the cluster whose contents `bytes` begin with; none where that is no cluster.
std::optional<std::int64_t> lastTimeIn(Bytes bytes) {
  if (!bytes.variableNumber(false)) return std::nullopt;  // its length
  std::optional<std::uint64_t> begin;
  std::optional<std::int64_t> last;
  while (const auto element = bytes.element()) {
    if (element->identifier == timestamp) begin = Bytes(element->contents).number(element->contents.size());
    if (const auto time = timeInCluster(*element)) last = std::max(last.value_or(*time), *time);
  }
  if (!begin || !last) return std::nullopt;
  return static_cast<std::int64_t>(*begin) + *last;
}

std::optional<std::int64_t> lastTimeAmong(std::string_view bytes) {
  for (auto place = bytes.rfind(cluster); place != std::string_view::npos && place > 0;
       place = bytes.rfind(cluster, place - 1)) {
    if (const auto time = lastTimeIn(Bytes(bytes.substr(place + cluster.size())))) return time;
  }
  return std::nullopt;
}

std::string endOf(const MediaFile& file, std::int64_t length) {
  std::string bytes(static_cast<std::size_t>(std::min(length, file.size())), '\0');
  const std::int64_t got =
      file.readAt(file.size() - static_cast<std::int64_t>(bytes.size()), bytes.data(), bytes.size());
  bytes.resize(static_cast<std::size_t>(std::max<std::int64_t>(0, got)));
  return bytes;
}

}  // namespace

double timeOfLastBlock(OpenMedia& media) {
  if (!media.isContainer("matroska") || media.format().nb_streams == 0) return 0.0;
  for (const std::int64_t length : searched) {
    if (media.deadline().passed()) return 0.0;
    const auto time = lastTimeAmong(endOf(media.file(), length));
    // FFmpeg counts the tracks of these files in the unit of their clusters.
    if (time && *time > 0) return static_cast<double>(*time) * av_q2d(media.format().streams[0]->time_base);
    if (length >= media.file().size()) return 0.0;
  }
  return 0.0;
}

}  // namespace probe
