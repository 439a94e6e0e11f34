#include "hosts/medialibrary/Paths.h"

#include "tests/host/probe/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

using medialibrary::folderOf;
using medialibrary::isInOrBelow;
using medialibrary::makeFolder;
using medialibrary::withoutSlashAtEnd;

TEST(Paths, FolderIsWhatStandsBeforeTheLastSlash) {
  EXPECT_EQ(folderOf("/a/b/c.mp4"), "/a/b");
  EXPECT_EQ(folderOf("/c.mp4"), "");
}

TEST(Paths, OnlyWholeNamesMakeAFolder) {
  EXPECT_TRUE(isInOrBelow("/a/b", "/a/b"));
  EXPECT_TRUE(isInOrBelow("/a/b/c/d", "/a/b"));
  EXPECT_FALSE(isInOrBelow("/a/bc", "/a/b"));
  EXPECT_FALSE(isInOrBelow("/a", "/a/b"));
  EXPECT_TRUE(isInOrBelow("/a", "/"));
}

TEST(Paths, RootAloneEndsWithASlash) {
  EXPECT_EQ(withoutSlashAtEnd("/a/b//"), "/a/b");
  EXPECT_EQ(withoutSlashAtEnd("/a"), "/a");
  EXPECT_EQ(withoutSlashAtEnd("//"), "/");
}

TEST(Paths, FoldersAreMadeForTheUserAlone) {
  const TemporaryFolder folder;
  makeFolder(folder / "a/b");
  makeFolder(folder / "a/b");
  EXPECT_EQ(std::filesystem::status(folder / "a/b").permissions(), std::filesystem::perms(0700));
}

}  // namespace
