#include "hosts/qtquick/ArtworkProvider.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>

#include <memory>

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
  QSemaphore mayAnswer;
  std::vector<std::pair<std::string, int>> asked;  // one thread at a time: each answer is waited for
  ArtworkProvider provider([&](const std::string& path, int side) {
    mayAnswer.acquire();
    asked.emplace_back(path, side);
    return striped(96, 54);
  });
  const QString id = "%2Fvideos%2Fa%20b.mp4";
  const std::unique_ptr<QQuickImageResponse> response(provider.requestImageResponse(id, {96, 54}));
  QSignalSpy finished(response.get(), &QQuickImageResponse::finished);
  mayAnswer.release();
  ASSERT_TRUE(finished.wait());
  const std::unique_ptr<QQuickTextureFactory> texture(response->textureFactory());
  EXPECT_EQ(texture->image(), provider.picture(id, {96, 54}));
  EXPECT_EQ(asked, (std::vector<std::pair<std::string, int>>{{"/videos/a b.mp4", 96}}));
}

TEST(Artwork, IsEmptyWhereThereIsNoPicture) {
  ArtworkProvider provider([](const std::string&, int) { return QImage(); });
  EXPECT_TRUE(provider.picture("none", {96, 54}).isNull());
}
