#include "hosts/desktop/WindowPlace.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

namespace desktop {
namespace {

TEST(WindowPlace, IsRememberedAcrossRuns) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("window.ini"));
  EXPECT_FALSE(WindowPlace(path).remembered());
  WindowPlace(path).remember({QRect(40, 50, 800, 600), true});
  const auto place = WindowPlace(path).remembered();
  ASSERT_TRUE(place);
  EXPECT_EQ(place->geometry, QRect(40, 50, 800, 600));
  EXPECT_TRUE(place->fullScreen);
}

TEST(WindowPlace, DamagedFileCountsAsNothingRemembered) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("window.ini"));
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("[window]\ngeometry=@Rect(1 2 banana)\n\0\1");
  file.close();
  EXPECT_FALSE(WindowPlace(path).remembered());
}

}  // namespace
}  // namespace desktop
