#include "hosts/desktop/UnreadableFiles.h"

#include "tests/support/EnvironmentVariable.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

QString textAt(const UnreadableFiles& files, int row, const QByteArray& role) {
  return files.data(files.index(row), files.roleNames().key(role)).toString();
}

TEST(UnreadableFilesTest, TellNameFolderAndReason) {
  const EnvironmentVariable home("HOME", "/home/somebody");
  UnreadableFiles files;
  files.setFiles({{"/home/somebody/Videos/Holiday.mp4", "The file ends too early."}, {"/Film.avi", "No picture."}});
  ASSERT_EQ(files.rowCount(), 2);
  EXPECT_EQ(textAt(files, 0, "name"), QStringLiteral("Holiday.mp4"));
  EXPECT_EQ(textAt(files, 0, "folder"), QStringLiteral("~/Videos"));
  EXPECT_EQ(textAt(files, 0, "reason"), QStringLiteral("The file ends too early."));
  EXPECT_EQ(textAt(files, 1, "name"), QStringLiteral("Film.avi"));
  EXPECT_EQ(textAt(files, 1, "folder"), QStringLiteral("/"));
}

TEST(UnreadableFilesTest, NameIsOneLineOfTextWhateverItsBytes) {
  UnreadableFiles files;
  files.setFiles({{"/a/two\nlines\xFF.mp4", "No picture."}});
  EXPECT_EQ(textAt(files, 0, "name"), QStringLiteral("two lines\uFFFD.mp4"));
}

TEST(UnreadableFilesTest, ViewsStartAnewOnlyWhereTheFilesAreOthers) {
  UnreadableFiles files;
  int resets = 0;
  QObject::connect(&files, &QAbstractItemModel::modelReset, &files, [&] { ++resets; });
  files.setFiles({{"/a.mp4", "No picture."}});
  files.setFiles({{"/a.mp4", "No picture."}});
  EXPECT_EQ(resets, 1);
  files.setFiles({{"/a.mp4", "The file ends too early."}});
  files.setFiles({});
  EXPECT_EQ(resets, 3);
  EXPECT_EQ(files.rowCount(), 0);
}

}  // namespace
}  // namespace desktop
