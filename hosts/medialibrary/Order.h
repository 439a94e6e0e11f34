#pragma once

#include <memory>
#include <string>

namespace medialibrary {

/// The order of titles in a language. Numbers count by their value: "Film 2" stands before "Film 10". One thread.
class Order {
 public:
  /// As in the locale `locale` ("it_IT.UTF-8"); as the environment says where it is empty; by the Unicode collation
  /// algorithm alone for "C", "POSIX" and languages that are not known.
  explicit Order(const std::string& locale);
  ~Order();

  /// Negative, zero or positive: `left` stands before `right`, counts the same, or stands after it. UTF-8.
  int compare(const std::string& left, const std::string& right) const;

  /// Bytes that stand in the order of titles when they are compared as numbers without sign, the first difference
  /// deciding and the shorter one first: `compare` for those who store it. Only good beside keys of an order with the
  /// same `name`.
  std::string key(const std::string& title) const;

  /// Changes whenever keys do: with the language's rules, and with the version of the library that makes them. Two
  /// locales with the same rules have the same name.
  std::string name() const;

 private:
  struct Collation;
  std::unique_ptr<Collation> collation_;
};

}  // namespace medialibrary
