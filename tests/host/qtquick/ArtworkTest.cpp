#include "hosts/qtquick/ArtworkProvider.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <QSignalSpy>
#include <QTest>

#include <mutex>

using qtquick::ArtworkProvider;

namespace {

/// Red on the left, green in the middle, blue on the right, a third each.
QImage striped(int width, int height) {
  QImage image(width, height, QImage::Format_RGB32);
  QPainter painter(&image);
  painter.fillRect(0, 0, width / 3, height, Qt::red);
  painter.fillRect(width / 3, 0, width / 3, height, Qt::green);
  painter.fillRect(2 * width / 3, 0, width - 2 * width / 3, height, Qt::blue);
  return image;
}

}  // namespace

TEST(Artwork, FillsTheSizeThatIsAskedForAndCropsTheSides) {
  ArtworkProvider provider([](const std::string&, int) { return striped(300, 50); });
  const QImage image = provider.picture("wide", {96, 54});
  ASSERT_EQ(image.size(), QSize(96, 54));
  EXPECT_EQ(image.pixelColor(48, 27), QColor(Qt::green));
  EXPECT_EQ(image.pixelColor(4, 27), QColor(Qt::green));
}

TEST(Artwork, HasRoundedCorners) {
  ArtworkProvider provider([](const std::string&, int) { return striped(96, 54); });
  const QImage image = provider.picture("any", {96, 54});
  EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
  EXPECT_EQ(image.pixelColor(95, 53).alpha(), 0);
  EXPECT_EQ(image.pixelColor(0, 27).alpha(), 255);
}

TEST(Artwork, AsksForThePathAndThatSizeOnce) {
  std::mutex mutex;
  std::vector<std::pair<std::string, int>> asked;
  ArtworkProvider provider([&](const std::string& path, int side) {
    const std::scoped_lock lock(mutex);
    asked.emplace_back(path, side);
    return striped(96, 54);
  });
  const auto ask = [&] {
    auto* const response = provider.requestImageResponse("%2Fvideos%2Fa%20b.mp4", {96, 54});
    QSignalSpy finished(response, &QQuickImageResponse::finished);
    EXPECT_TRUE(finished.count() > 0 || finished.wait());
    response->deleteLater();
  };
  ask();
  ask();
  EXPECT_EQ(asked, (std::vector<std::pair<std::string, int>>{{"/videos/a b.mp4", 96}}));
}

TEST(Artwork, IsEmptyWhereThereIsNoPicture) {
  ArtworkProvider provider([](const std::string&, int) { return QImage(); });
  EXPECT_TRUE(provider.picture("none", {96, 54}).isNull());
}
