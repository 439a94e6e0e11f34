#pragma once

#include <gtest/gtest.h>

#include <QImage>
#include <QString>

#include <optional>

/// How much two pictures of one size differ.
struct Difference {
  int changed = 0;  ///< pixels that are another thing now: an edge that has moved
  int tinted = 0;   ///< pixels that have another colour, if only a little
  QImage shown;     ///< the first picture, dark, with what is changed in red and what is tinted in yellow
};

/// None where the sizes differ.
std::optional<Difference> differenceOf(const QImage& golden, const QImage& now);

/// Whether they look the same: what another way of smoothing edges makes of a picture passes, a control that has
/// moved by one point does not, nor a surface with a colour that can be told from the one before.
bool looksTheSame(const Difference& difference);

/// Whether `now` looks as the picture `name` of golden/. Where it does not, what it looks like and what has changed
/// are left in out/pictures/. With the environment variable QUILLOP_RENEW_PICTURES it becomes that picture instead.
testing::AssertionResult looksAs(const QString& name, const QImage& now);
