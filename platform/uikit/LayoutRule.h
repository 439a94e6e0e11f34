#pragma once

#include "platform/coregraphics/CGGeometry.h"

#include <optional>
#include <string_view>

/// A length as a fraction of the parent's plus points: "50% - 16" is {0.5, -16}.
struct LayoutLength {
  double fraction = 0;
  double points = 0;
  bool operator==(const LayoutLength&) const = default;

  double in(double parent) const { return fraction * parent + points; }
  /// Reads the form above ("0", "100%", "-8", "50% + 8"; blanks as one likes); none when it is not of that form.
  static std::optional<LayoutLength> parse(std::string_view text);
};

/// Where a view lies in its parent along one axis. Two of start, end and extent fix it; with the extent and a centre
/// it is centred.
struct LayoutAxis {
  std::optional<LayoutLength> start;  ///< from the parent's start
  std::optional<LayoutLength> end;    ///< from the parent's end, inwards
  std::optional<LayoutLength> extent;
  std::optional<LayoutLength> centre;  ///< from the parent's start
  bool operator==(const LayoutAxis&) const = default;

  struct Span {
    double start;
    double extent;
  };
  Span in(double parent) const;
};

/// The whole layout engine: where a view lies in its parent, in portrait and in landscape.
struct LayoutRule {
  struct Place {
    LayoutAxis horizontal;
    LayoutAxis vertical;
    bool operator==(const Place&) const = default;

    /// The frame in a parent of `size`, its edges on whole points, so that neighbours meet without a seam.
    CGRect in(CGSize size) const;
  };

  Place portrait;   ///< for a screen that is higher than wide
  Place landscape;  ///< for every other one
};
