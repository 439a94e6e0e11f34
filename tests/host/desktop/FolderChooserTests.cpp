#include "hosts/desktop/FolderChooser.h"

#include "tests/support/EnvironmentVariable.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace desktop {
namespace {

class FolderChooserTest : public testing::Test {
 protected:
  FolderChooserTest() {
    for (const auto* name : {"Films/Old", "films 2", ".hidden", "Music"})
      QDir(home.path()).mkpath(QLatin1String(name));
    QFile file(home.filePath(QStringLiteral("a file")));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    chooser.goHome();
  }

  QTemporaryDir home;
  const EnvironmentVariable variable{"HOME", home.path().toStdString()};
  FolderChooser chooser;
};

TEST_F(FolderChooserTest, BeginsAtHomeWithTheFoldersInIt) {
  EXPECT_EQ(chooser.path(), home.path());
  EXPECT_EQ(chooser.shownPath(), QStringLiteral("~"));
  EXPECT_EQ(QSet<QString>(chooser.folders().begin(), chooser.folders().end()),
            (QSet<QString>{QStringLiteral("Films"), QStringLiteral("films 2"), QStringLiteral("Music")}));
  EXPECT_EQ(chooser.folders().last(), QStringLiteral("Music"));
}

TEST_F(FolderChooserTest, GoesDownAndUp) {
  chooser.enter(QStringLiteral("Films"));
  EXPECT_EQ(chooser.shownPath(), QStringLiteral("~/Films"));
  EXPECT_EQ(chooser.folders(), QStringList{QStringLiteral("Old")});
  chooser.enter(QStringLiteral("Old"));
  EXPECT_TRUE(chooser.folders().isEmpty());
  chooser.goUp();
  chooser.goUp();
  EXPECT_EQ(chooser.path(), home.path());
}

TEST_F(FolderChooserTest, EntersOnlyWhatItShows) {
  for (const auto* name : {"..", ".hidden", "a file", "/", "Films/Old"}) chooser.enter(QLatin1String(name));
  EXPECT_EQ(chooser.path(), home.path());
}

TEST_F(FolderChooserTest, EndsAtTheRootWhichCannotBeChosen) {
  EXPECT_TRUE(chooser.canBeChosen());
  for (int step = 0; step < 50; ++step) chooser.goUp();
  EXPECT_EQ(chooser.path(), QStringLiteral("/"));
  EXPECT_FALSE(chooser.hasParent());
  EXPECT_FALSE(chooser.canBeChosen());
}

}  // namespace
}  // namespace desktop
