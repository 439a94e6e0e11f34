#pragma once

/// A colour; components from 0 to 1.
struct UIColor {
  double red = 0;
  double green = 0;
  double blue = 0;
  double alpha = 0;
  bool operator==(const UIColor&) const = default;

  static constexpr UIColor colorWithRed_green_blue_alpha(double red, double green, double blue, double alpha) {
    return {red, green, blue, alpha};
  }
  static constexpr UIColor colorWithWhite_alpha(double white, double alpha) { return {white, white, white, alpha}; }
  static constexpr UIColor blackColor() { return {0, 0, 0, 1}; }
  static constexpr UIColor whiteColor() { return {1, 1, 1, 1}; }
  static constexpr UIColor grayColor() { return {0.5, 0.5, 0.5, 1}; }
  static constexpr UIColor clearColor() { return {0, 0, 0, 0}; }
};
