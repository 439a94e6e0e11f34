#include "platform/uikit/LayoutRule.h"

#include <charconv>
#include <cmath>
#include <string>

namespace {

std::string withoutBlanks(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (c != ' ' && c != '\t') result += c;
  }
  return result;
}

}  // namespace

std::optional<LayoutLength> LayoutLength::parse(std::string_view text) {
  const std::string packed = withoutBlanks(text);
  const char* next = packed.data();
  const char* const end = next + packed.size();
  LayoutLength length;
  if (next == end) return std::nullopt;
  while (next != end) {
    double sign = 1;
    if (*next == '+' || *next == '-') {
      sign = *next == '-' ? -1 : 1;
      ++next;
    } else if (next != packed.data()) {
      return std::nullopt;
    }
    if (next != end && *next == '-') return std::nullopt;  // a number would be read with a sign of its own
    double number = 0;
    const auto read = std::from_chars(next, end, number, std::chars_format::fixed);
    if (read.ec != std::errc{} || !std::isfinite(number)) return std::nullopt;
    next = read.ptr;
    if (next != end && *next == '%') {
      length.fraction += sign * number / 100.0;
      ++next;
    } else {
      length.points += sign * number;
    }
  }
  return length;
}

LayoutAxis::Span LayoutAxis::in(double parent) const {
  if (centre && extent) return {centre->in(parent)-extent->in(parent) / 2, extent->in(parent)};
  if (start && extent) return {start->in(parent), extent->in(parent)};
  if (end && extent) return {parent - end->in(parent)-extent->in(parent), extent->in(parent)};
  const double from = start ? start->in(parent) : 0;
  const double to = parent - (end ? end->in(parent) : 0);
  return {from, to - from};
}

CGRect LayoutRule::Place::in(CGSize size) const {
  const auto across = horizontal.in(size.width);
  const auto down = vertical.in(size.height);
  const double left = std::round(across.start);
  const double top = std::round(down.start);
  const double right = std::round(across.start + across.extent);
  const double bottom = std::round(down.start + down.extent);
  return CGRectMake(left, top, std::fmax(right - left, 0), std::fmax(bottom - top, 0));
}
