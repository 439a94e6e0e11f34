#include "hosts/probe/Text.h"

#include <cstddef>

namespace probe {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

bool isContinuation(unsigned char byte) {
  return byte >= 0x80 && byte <= 0xBF;
}

/// The length of the well-formed sequence that `bytes` begins with (The Unicode Standard, table 3-7), 0 if none.
std::size_t lengthOfCharacter(std::string_view bytes) {
  const auto at = [&](std::size_t i) { return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U; };
  const auto first = at(0);
  const auto second = at(1);
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first <= 0xDF) return isContinuation(static_cast<unsigned char>(second)) ? 2 : 0;
  const bool tooShort = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
  const bool outOfRange = (first == 0xED && second > 0x9F) || (first == 0xF4 && second > 0x8F);
  if (first < 0xE0 || first > 0xF4 || tooShort || outOfRange) return 0;
  const std::size_t length = first >= 0xF0 ? 4 : 3;
  for (std::size_t i = 1; i < length; ++i) {
    if (!isContinuation(static_cast<unsigned char>(at(i)))) return 0;
  }
  return length;
}

/// ASCII's own, and those of ISO 8859-1 and the line and paragraph separators, which would break a row as well.
bool isControl(std::string_view character) {
  if (character.size() == 1) {
    const auto byte = static_cast<unsigned char>(character[0]);
    return byte < 0x20 || byte == 0x7F;
  }
  if (character.size() == 2 && character[0] == '\xC2') return static_cast<unsigned char>(character[1]) < 0xA0;
  return character == "\xE2\x80\xA8" || character == "\xE2\x80\xA9";
}

std::string trimmed(const std::string& text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

std::string lineOfText(std::string_view bytes) {
  std::string text;
  while (!bytes.empty()) {
    const std::size_t length = lengthOfCharacter(bytes);
    const std::string_view character = bytes.substr(0, length == 0 ? 1 : length);
    if (length == 0) {
      text += replacement;
    } else if (isControl(character)) {
      text += ' ';
    } else {
      text += character;
    }
    bytes.remove_prefix(character.size());
  }
  return trimmed(text);
}

}  // namespace probe
