#include "hosts/probe/Protection.h"

#include <array>
#include <bit>
#include <cstdint>
#include <optional>
#include <string_view>

namespace probe {

namespace {

constexpr int mostElements = 50'000;

struct Range {
  std::int64_t begin = 0;
  std::int64_t end = 0;
};

/// Reads a file's elements one after the other, as long as it is worth the trouble.
class Walk {
 public:
  Walk(const MediaFile& file, const Deadline& deadline) : file_(file), deadline_(deadline) {}

  /// True while another element may be looked at.
  bool goesOn() {
    ++elements_;
    return elements_ <= mostElements && !(elements_ % 256 == 0 && deadline_.passed());
  }

  /// The big-endian number of `count` bytes at `offset`, if they lie inside `range`.
  std::optional<std::uint64_t> number(Range range, std::int64_t offset, int count) const {
    std::array<unsigned char, 8> bytes{};
    if (offset < range.begin || range.end - offset < count) return std::nullopt;
    if (file_.readAt(offset, bytes.data(), static_cast<std::size_t>(count)) != count) return std::nullopt;
    std::uint64_t value = 0;
    for (int i = 0; i < count; ++i) value = value << 8U | bytes[static_cast<std::size_t>(i)];
    return value;
  }

 private:
  const MediaFile& file_;
  const Deadline& deadline_;
  int elements_ = 0;
};

Range inside(Range parent, std::int64_t begin, std::uint64_t length) {
  const auto room = static_cast<std::uint64_t>(parent.end - begin);
  return {begin, length < room ? begin + static_cast<std::int64_t>(length) : parent.end};
}

// ISO base media files

constexpr std::uint32_t name(std::string_view letters) {
  std::uint32_t value = 0;
  for (const char letter : letters) value = value << 8U | static_cast<unsigned char>(letter);
  return value;
}

struct Box {
  std::uint32_t type = 0;
  Range contents;
};

std::optional<Box> boxAt(const Walk& walk, Range parent, std::int64_t offset) {
  const auto head = walk.number(parent, offset, 8);
  if (!head) return std::nullopt;
  std::uint64_t length = *head >> 32U;
  std::int64_t headLength = 8;
  if (length == 1) {  // the length follows, in 64 bits
    const auto longLength = walk.number(parent, offset + 8, 8);
    if (!longLength) return std::nullopt;
    length = *longLength;
    headLength = 16;
  } else if (length == 0) {  // up to the end
    length = static_cast<std::uint64_t>(parent.end - offset);
  }
  if (length < static_cast<std::uint64_t>(headLength)) return std::nullopt;
  const Range whole = inside(parent, offset, length);
  return Box{static_cast<std::uint32_t>(*head), {offset + headLength, whole.end}};
}

bool isEncryptedEntry(std::uint32_t type) {
  return type == name("encv") || type == name("enca") || type == name("drmi") || type == name("drms");
}

constexpr std::array<std::uint32_t, 6> pathToEntries = {name("moov"), name("trak"), name("mdia"),
                                                        name("minf"), name("stbl"), name("stsd")};

bool holdsEncryptedEntry(Walk& walk, Range parent, std::size_t depth) {
  std::int64_t offset = parent.begin;
  while (walk.goesOn()) {
    const auto box = boxAt(walk, parent, offset);
    if (!box) return false;
    offset = box->contents.end;
    if (depth == pathToEntries.size()) {
      if (isEncryptedEntry(box->type)) return true;
    } else if (box->type == pathToEntries[depth]) {
      Range children = box->contents;
      if (box->type == name("stsd")) children.begin += 8;  // version, flags, number of entries
      if (holdsEncryptedEntry(walk, children, depth + 1)) return true;
    }
  }
  return false;
}

// Matroska

namespace ebml {
constexpr std::uint64_t segment = 0x18538067;
constexpr std::uint64_t cluster = 0x1F43B675;
constexpr std::uint64_t tracks = 0x1654AE6B;
constexpr std::uint64_t trackEntry = 0xAE;
constexpr std::uint64_t contentEncodings = 0x6D80;
constexpr std::uint64_t contentEncoding = 0x6240;
constexpr std::uint64_t contentEncodingType = 0x5033;
constexpr std::uint64_t contentEncryption = 0x5035;
}  // namespace ebml

struct Element {
  std::uint64_t identifier = 0;
  bool hasLength = true;
  Range contents;
};

struct VariableNumber {
  std::uint64_t value = 0;  ///< with the marker bit
  int length = 0;           ///< bytes
};

std::optional<VariableNumber> variableNumber(const Walk& walk, Range parent, std::int64_t offset) {
  const auto first = walk.number(parent, offset, 1);
  if (!first || *first == 0) return std::nullopt;
  const int length = std::countl_zero(static_cast<std::uint8_t>(*first)) + 1;
  const auto value = walk.number(parent, offset, length);
  if (!value) return std::nullopt;
  return VariableNumber{*value, length};
}

std::optional<Element> elementAt(const Walk& walk, Range parent, std::int64_t offset) {
  const auto identifier = variableNumber(walk, parent, offset);
  if (!identifier) return std::nullopt;
  const auto length = variableNumber(walk, parent, offset + identifier->length);
  if (!length) return std::nullopt;
  const std::uint64_t unknown = (std::uint64_t{1} << (7U * static_cast<unsigned>(length->length))) - 1;
  const std::uint64_t value = length->value & unknown;
  const std::int64_t begin = offset + identifier->length + length->length;
  const bool hasLength = value != unknown;
  return Element{identifier->value, hasLength, hasLength ? inside(parent, begin, value) : Range{begin, parent.end}};
}

bool isEncryption(Walk& walk, Range contentEncoding) {
  std::int64_t offset = contentEncoding.begin;
  while (walk.goesOn()) {
    const auto element = elementAt(walk, contentEncoding, offset);
    if (!element) return false;
    offset = element->contents.end;
    if (element->identifier == ebml::contentEncryption) return true;
    if (element->identifier == ebml::contentEncodingType && element->contents.end - element->contents.begin == 1 &&
        walk.number(element->contents, element->contents.begin, 1) == 1U) {
      return true;
    }
  }
  return false;
}

constexpr std::array<std::uint64_t, 3> pathToEncodings = {ebml::trackEntry, ebml::contentEncodings,
                                                          ebml::contentEncoding};

bool holdsEncryption(Walk& walk, Range parent, std::size_t depth) {
  std::int64_t offset = parent.begin;
  while (walk.goesOn()) {
    const auto element = elementAt(walk, parent, offset);
    if (!element) return false;
    offset = element->contents.end;
    if (element->identifier != pathToEncodings[depth]) continue;
    const bool isLast = depth + 1 == pathToEncodings.size();
    if (isLast ? isEncryption(walk, element->contents) : holdsEncryption(walk, element->contents, depth + 1)) {
      return true;
    }
  }
  return false;
}

}  // namespace

bool isProtected(const OpenMedia& media) {
  if (media.isContainer("mp4")) return isProtectedBoxFile(media.file(), media.deadline());
  return media.isContainer("matroska") && isProtectedMatroska(media.file(), media.deadline());
}

bool isProtectedBoxFile(const MediaFile& file, const Deadline& deadline) {
  Walk walk(file, deadline);
  return holdsEncryptedEntry(walk, {0, file.size()}, 0);
}

bool isProtectedMatroska(const MediaFile& file, const Deadline& deadline) {
  Walk walk(file, deadline);
  const Range whole{0, file.size()};
  std::int64_t offset = 0;
  while (walk.goesOn()) {
    const auto element = elementAt(walk, whole, offset);
    if (!element) return false;
    if (element->identifier == ebml::tracks) return holdsEncryption(walk, element->contents, 0);
    // Recordings under way have clusters of unknown length: their end shows only by what follows.
    const bool goesDown =
        element->identifier == ebml::segment || (element->identifier == ebml::cluster && !element->hasLength);
    offset = goesDown ? element->contents.begin : element->contents.end;
  }
  return false;
}

}  // namespace probe
