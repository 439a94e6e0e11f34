#include "hosts/medialibrary/PercentEncoding.h"

namespace medialibrary {

namespace {

constexpr std::string_view digits = "0123456789ABCDEF";

bool isLetterOrDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
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

}  // namespace medialibrary
