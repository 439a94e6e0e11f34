#pragma once

#include "platform/foundation/NSObject.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A text as an object. UTF-8.
class NSString final : public NSObject {
 public:
  explicit NSString(std::string text) : text_(std::move(text)) {}
  const std::string& text() const { return text_; }

 private:
  std::string text_;
};

/// A number as an object; it remembers whether it was made from a whole number.
class NSNumber final : public NSObject {
 public:
  static Strong<NSNumber> numberWithBool(bool value) { return make<NSNumber>(std::int64_t{value}); }
  static Strong<NSNumber> numberWithInteger(std::int64_t value) { return make<NSNumber>(value); }
  static Strong<NSNumber> numberWithDouble(double value) { return make<NSNumber>(value); }

  explicit NSNumber(std::int64_t value) : double_(static_cast<double>(value)), integer_(value), isInteger_(true) {}
  explicit NSNumber(double value);

  bool isInteger() const { return isInteger_; }
  bool boolValue() const { return double_ != 0.0; }
  /// The number without its fraction (towards zero), held inside the 64-bit range; 0 for what is not a number.
  std::int64_t integerValue() const { return integer_; }
  double doubleValue() const { return double_; }

 private:
  double double_;
  std::int64_t integer_;
  bool isInteger_;
};

/// An address in its text form (RFC 3986), always with a scheme.
class NSURL final : public NSObject {
 public:
  /// None when `text` is not an absolute URL: a scheme and a colon, then anything but blanks and control characters.
  static Strong<NSURL> URLWithString(std::string_view text);
  /// The `file:` URL of an absolute path. File names are bytes: every byte outside the unreserved set is
  /// percent-encoded, so that `path` gives back exactly the same bytes.
  static Strong<NSURL> fileURLWithPath(std::string_view path);

  explicit NSURL(std::string absoluteString) : absoluteString_(std::move(absoluteString)) {}

  const std::string& absoluteString() const { return absoluteString_; }
  bool isFileURL() const;
  /// The decoded path of a `file:` URL, byte for byte; empty for every other URL.
  std::string path() const;

 private:
  std::string absoluteString_;
};

/// A dictionary from texts to objects.
class NSDictionary final : public NSObject {
 public:
  using Entries = std::map<std::string, Strong<NSObject>>;

  explicit NSDictionary(Entries entries) : entries_(std::move(entries)) {}
  /// The object under `key`, or none.
  Strong<NSObject> objectForKey(const std::string& key) const;
  const Entries& entries() const { return entries_; }

 private:
  Entries entries_;
};

/// Why something failed, in words for a log.
class NSError final : public NSObject {
 public:
  explicit NSError(std::string reason) : reason_(std::move(reason)) {}
  const std::string& localizedDescription() const { return reason_; }

 private:
  std::string reason_;
};

/// A row of a table. Counted from 0.
struct NSIndexPath {
  long section = 0;
  long row = 0;
};

/// The shortest text that reads back as the same double, always with a fraction and never dependent on the
/// locale: 26 becomes "26.0".
std::string textOf(double value);
