#pragma once

/// Points, from the upper left corner, x to the right and y down.
struct CGPoint {
  double x = 0;
  double y = 0;
  bool operator==(const CGPoint&) const = default;
};

struct CGSize {
  double width = 0;
  double height = 0;
  bool operator==(const CGSize&) const = default;
};

struct CGRect {
  CGPoint origin;
  CGSize size;
  bool operator==(const CGRect&) const = default;

  bool contains(CGPoint point) const {
    return point.x >= origin.x && point.x < origin.x + size.width && point.y >= origin.y &&
           point.y < origin.y + size.height;
  }
};

inline CGRect CGRectMake(double x, double y, double width, double height) {
  return {{x, y}, {width, height}};
}

inline constexpr CGRect CGRectZero{};
