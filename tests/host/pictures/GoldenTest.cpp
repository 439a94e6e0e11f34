#include "tests/host/pictures/Golden.h"

#include <QPainter>

namespace {

constexpr QSize size(390, 844);

/// A screen with a button on it: a round one with a cross, as small as they get.
QImage screenWithButtonAt(QPointF place, QColor colour = QColor(0x39, 0x44, 0x4B)) {
  QImage image(size, QImage::Format_RGB32);
  image.fill(QColor(0x0B, 0x0E, 0x10));
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  painter.drawRoundedRect(QRectF(place, QSizeF(48, 48)), 12, 12);
  painter.setPen(QPen(Qt::white, 2.5));
  painter.drawLine(place + QPointF(17, 17), place + QPointF(31, 31));
  painter.drawLine(place + QPointF(17, 31), place + QPointF(31, 17));
  return image;
}

bool lookTheSame(const QImage& one, const QImage& other) {
  const auto difference = differenceOf(one, other);
  return difference && looksTheSame(*difference);
}

}  // namespace

TEST(Golden, APictureLooksAsItself) {
  EXPECT_TRUE(lookTheSame(screenWithButtonAt({20, 20}), screenWithButtonAt({20, 20})));
}

TEST(Golden, AnotherSmoothingOfTheEdgesPasses) {
  EXPECT_TRUE(lookTheSame(screenWithButtonAt({20, 20}), screenWithButtonAt({20.05, 20.05})));
}

TEST(Golden, AButtonThatMovedByAPointDoesNotPass) {
  EXPECT_FALSE(lookTheSame(screenWithButtonAt({20, 20}), screenWithButtonAt({21, 20})));
  EXPECT_FALSE(lookTheSame(screenWithButtonAt({20, 20}), screenWithButtonAt({20, 22})));
}

TEST(Golden, AnotherColourDoesNotPass) {
  EXPECT_FALSE(lookTheSame(screenWithButtonAt({20, 20}), screenWithButtonAt({20, 20}, QColor(0x3F, 0x4A, 0x51))));
}

TEST(Golden, AnotherSizeDoesNotPass) {
  EXPECT_FALSE(lookTheSame(screenWithButtonAt({20, 20}), screenWithButtonAt({20, 20}).copy(0, 0, 390, 840)));
}
