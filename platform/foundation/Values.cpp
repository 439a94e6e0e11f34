#include "platform/foundation/Values.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace {

constexpr std::string_view hexDigits = "0123456789ABCDEF";

std::int64_t truncated(double value) {
  if (std::isnan(value)) return 0;
  constexpr double limit = 9223372036854775808.0;  // 2^63
  if (value >= limit) return std::numeric_limits<std::int64_t>::max();
  if (value < -limit) return std::numeric_limits<std::int64_t>::min();
  return static_cast<std::int64_t>(value);
}

bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

/// What may stand in a path unencoded (RFC 3986, 2.3, and the slash).
bool isPlainInPath(char c) {
  return isLetter(c) || isDigit(c) || c == '-' || c == '.' || c == '_' || c == '~' || c == '/';
}

int hexValue(char c) {
  if (isDigit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

}  // namespace

NSNumber::NSNumber(double value) : double_(value), integer_(truncated(value)), isInteger_(false) {}

Strong<NSURL> NSURL::URLWithString(std::string_view text) {
  const auto colon = text.find(':');
  if (colon == std::string_view::npos || colon == 0 || !isLetter(text[0])) return nullptr;
  for (const char c : text.substr(0, colon)) {
    if (!isLetter(c) && !isDigit(c) && c != '+' && c != '-' && c != '.') return nullptr;
  }
  for (const char c : text) {
    if (static_cast<unsigned char>(c) <= 0x20 || c == 0x7F || c == '<' || c == '>' || c == '"') return nullptr;
  }
  return make<NSURL>(std::string(text));
}

Strong<NSURL> NSURL::fileURLWithPath(std::string_view path) {
  std::string text = "file://";
  for (const char c : path) {
    if (isPlainInPath(c)) {
      text += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      text += '%';
      text += hexDigits[byte >> 4U];
      text += hexDigits[byte & 0xFU];
    }
  }
  return make<NSURL>(std::move(text));
}

bool NSURL::isFileURL() const {
  return absoluteString_.starts_with("file:///");
}

std::string NSURL::path() const {
  if (!isFileURL()) return {};
  std::string_view encoded = absoluteString_;
  encoded.remove_prefix(7);
  std::string decoded;
  for (std::size_t i = 0; i < encoded.size(); ++i) {
    if (encoded[i] == '%' && i + 2 < encoded.size() && hexValue(encoded[i + 1]) >= 0 &&
        hexValue(encoded[i + 2]) >= 0) {
      decoded += static_cast<char>(hexValue(encoded[i + 1]) * 16 + hexValue(encoded[i + 2]));
      i += 2;
    } else {
      decoded += encoded[i];
    }
  }
  return decoded;
}

Strong<NSObject> NSDictionary::objectForKey(const std::string& key) const {
  const auto found = entries_.find(key);
  return found == entries_.end() ? nullptr : found->second;
}

std::string textOf(double value) {
  std::array<char, 64> buffer{};
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  std::string text(buffer.data(), result.ptr);
  if (text.find_first_not_of("-0123456789") == std::string::npos) text += ".0";
  return text;
}
