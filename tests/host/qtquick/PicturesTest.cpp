#include "hosts/qtquick/Pictures.h"

#include <gtest/gtest.h>

#include <QByteArray>

using qtquick::pictureUrl;

TEST(Pictures, UrlsAreTakenAsTheyAre) {
  EXPECT_EQ(pictureUrl(make<UIImage>("qrc:/images/play.svg", CGSize{28, 28})).toString(), "qrc:/images/play.svg");
  EXPECT_TRUE(pictureUrl(nullptr).isEmpty());
  EXPECT_TRUE(pictureUrl(make<UIImage>("", CGSize{})).isEmpty());
}

TEST(Pictures, PathsKeepEveryByteOnTheirWayThroughTheUrl) {
  const std::string path = "/videos/50% off/a?b#c %41 \xC3\xA8 \xFF.mp4";
  const QUrl url = pictureUrl(make<UIImage>(path, CGSize{}));
  ASSERT_TRUE(url.isValid());
  EXPECT_EQ(url.host(), "artwork");
  // How Qt Quick makes the identifier for an image provider out of the URL.
  const QString identifier = url.toString(QUrl::RemoveScheme | QUrl::RemoveAuthority).mid(1);
  EXPECT_EQ(QByteArray::fromPercentEncoding(identifier.toUtf8()).toStdString(), path);
}
