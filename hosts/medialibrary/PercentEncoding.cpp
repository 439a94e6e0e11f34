#include "hosts/medialibrary/PercentEncoding.h"

namespace medialibrary {

namespace {

constexpr std::string_view digits = "0123456789ABCDEF";

bool isLetterOrDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

int valueOf(char digit) {
  const char upper = digit >= 'a' && digit <= 'f' ? static_cast<char>(digit - 'a' + 'A') : digit;
  const auto value = digits.find(upper);
  return value == std::string_view::npos ? -1 : static_cast<int>(value);
}

}  // namespace

std::string percentEncoded(std::string_view bytes, std::string_view marks) {
  std::string text;
  for (const char c : bytes) {
    if (isLetterOrDigit(c) || marks.find(c) != std::string_view::npos) {
      text += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      text += {'%', digits[byte >> 4U], digits[byte & 0xFU]};
    }
  }
  return text;
}

std::string percentDecoded(std::string_view text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isEncoded =
        text[i] == '%' && i + 2 < text.size() && valueOf(text[i + 1]) >= 0 && valueOf(text[i + 2]) >= 0;
    bytes += isEncoded ? static_cast<char>(valueOf(text[i + 1]) * 16 + valueOf(text[i + 2])) : text[i];
    if (isEncoded) i += 2;
  }
  return bytes;
}

}  // namespace medialibrary
