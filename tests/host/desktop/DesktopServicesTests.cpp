#include "hosts/desktop/DesktopServices.h"

#include <gtest/gtest.h>

#include <QDesktopServices>
#include <QObject>
#include <QUrl>

namespace desktop {
namespace {

/// Stands in for the user's browser.
class Browser : public QObject {
  Q_OBJECT

 public:
  Browser() {
    for (const auto& scheme : schemes) QDesktopServices::setUrlHandler(scheme, this, "open");
  }
  ~Browser() override {
    for (const auto& scheme : schemes) QDesktopServices::unsetUrlHandler(scheme);
  }

  QList<QUrl> opened;

 public slots:
  void open(const QUrl& url) { opened.append(url); }

 private:
  const QStringList schemes{QStringLiteral("https"), QStringLiteral("file")};
};

TEST(DesktopServices, AddressIsGivenToTheBrowserAsItIs) {
  Browser browser;
  EXPECT_TRUE(DesktopServices().open("https://example.org/a%20b?c=d"));
  ASSERT_EQ(browser.opened.size(), 1);
  EXPECT_EQ(browser.opened[0].toEncoded(), "https://example.org/a%20b?c=d");
}

TEST(DesktopServices, SettingsAddressOpensTheSettingsPage) {
  Browser browser;
  int opened = 0;
  EXPECT_TRUE(DesktopServices([&] { ++opened; }).open("app-settings:"));
  EXPECT_EQ(opened, 1);
  EXPECT_TRUE(browser.opened.isEmpty());
}

TEST(DesktopServices, SettingsAddressIsNotTakenWithoutASettingsPage) {
  EXPECT_FALSE(DesktopServices().open("app-settings:"));
}

TEST(DesktopServices, HelpPageThatDoesNotExistIsNotOpened) {
  Browser browser;
  EXPECT_FALSE(DesktopServices().open("quillop-help:no-such-page"));
  EXPECT_TRUE(browser.opened.isEmpty());
}

}  // namespace
}  // namespace desktop

#include "DesktopServicesTests.moc"
