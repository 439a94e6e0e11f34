#include "hosts/qtquick/Pictures.h"

#include <gtest/gtest.h>

#include <QByteArray>

using qtquick::clockText;
using qtquick::pictureUrl;
using qtquick::spokenTime;

TEST(Pictures, ClockTextsCutFractionsOffAndShowHoursOnlyWhereThereAreAny) {
  EXPECT_EQ(clockText(0), "0:00");
  EXPECT_EQ(clockText(7.99), "0:07");
  EXPECT_EQ(clockText(725), "12:05");
  EXPECT_EQ(clockText(3600), "1:00:00");
  EXPECT_EQ(clockText(3723.5), "1:02:03");
}

TEST(Pictures, ClockTextsOfWhatIsNoTimeAreZero) {
  EXPECT_EQ(clockText(-3), "0:00");
  EXPECT_EQ(clockText(std::numeric_limits<double>::quiet_NaN()), "0:00");
  EXPECT_EQ(clockText(std::numeric_limits<double>::infinity()), "0:00");
}

TEST(Pictures, TimesAreSpokenWithoutEmptyParts) {
  EXPECT_EQ(spokenTime(0), "0 seconds");
  EXPECT_EQ(spokenTime(1), "1 second");
  EXPECT_EQ(spokenTime(60), "1 minute");
  EXPECT_EQ(spokenTime(3723), "1 hour 2 minutes 3 seconds");
}

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
