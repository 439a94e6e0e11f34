#include "tests/host/qtquick/ScreenStage.h"
#include "tests/support/EnvironmentVariable.h"

#include <gtest/gtest.h>

#include <QTest>

namespace {

/// The screens of a desktop that asks for high contrast.
class ContrastTest : public testing::Test {
 protected:
  QRect placeOf(const QString& name) {
    const auto* const item = stage.named(name);
    return item->mapRectToScene({0, 0, item->width(), item->height()}).toRect();
  }
  static int count(const QImage& picture, QRgb colour) {
    int found = 0;
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) found += picture.pixel(x, y) == colour ? 1 : 0;
    }
    return found;
  }

  const EnvironmentVariable wish{"QUILLOP_HIGH_CONTRAST", "1"};
  ScreenStage stage;
  const QRgb white = QColor(Qt::white).rgb();
};

constexpr double marginOfOverlay = 8;

}  // namespace

TEST_F(ContrastTest, NothingShowsThroughTheControls) {
  stage.load(1);
  const QRect film = placeOf("Film 1");
  // On the free place between the volume slider and the words beside it.
  const QRect volume = placeOf("Volume of film 1");
  EXPECT_EQ(stage.grab().pixelColor(volume.right() + 6, volume.center().y()), QColor(Qt::black));
  const QImage edge = stage.grab().copy(film.left() + static_cast<int>(marginOfOverlay), volume.top() - 20, 2, 40);
  EXPECT_EQ(count(edge, white), 2 * 40);
}

TEST_F(ContrastTest, DetailsInTheListAreWhite) {
  stage.openList();
  const QRect row = placeOf("Video 0, 00:01:00");
  const QImage detail = stage.grab().copy(row.left() + 112, row.top() + 36, 100, 24);
  int light = 0;
  for (int y = 0; y < detail.height(); ++y) {
    for (int x = 0; x < detail.width(); ++x) light += qGray(detail.pixel(x, y)) > 230 ? 1 : 0;
  }
  EXPECT_GT(light, 20);
}

TEST_F(ContrastTest, RowsHaveEdges) {
  stage.openList();
  const QRect row = placeOf("Video 0, 00:01:00");
  const QImage top = stage.grab().copy(row.left() + 100, row.top(), 100, 1);
  EXPECT_EQ(count(top, white), 100);
}

TEST_F(ContrastTest, ButtonsOfASheetHaveEdges) {
  stage.openInfo();
  const QRect button = placeOf("Write to us");
  const QImage top = stage.grab().copy(button.left() + 40, button.top(), 100, 2);
  EXPECT_EQ(count(top, white), 200);
}

TEST_F(ContrastTest, TheFocusIsToldFromAllEdges) {
  stage.window().requestActivate();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&stage.window()));
  stage.named("Choose videos")->forceActiveFocus(Qt::TabFocusReason);
  const QRect button = placeOf("Choose videos");
  const QImage top = stage.grab().copy(button.left() + 40, button.top(), 60, 5);
  EXPECT_EQ(count(top, QColor(0xFF, 0xE1, 0x4D).rgb()), 300);
}
