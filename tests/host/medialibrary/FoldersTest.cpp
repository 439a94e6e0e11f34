#include "hosts/medialibrary/Folders.h"

#include "tests/host/probe/TemporaryFolder.h"
#include "tests/support/EnvironmentVariable.h"

#include <gtest/gtest.h>

namespace {

using medialibrary::cacheFolder;
using medialibrary::videosFolder;

class VideosFolder : public testing::Test {
 protected:
  void configure(const std::string& text) { folder_.write(".config/user-dirs.dirs", text); }
  std::string home() const { return folder_.path().string(); }

 private:
  TemporaryFolder folder_;
  EnvironmentVariable homeVariable_{"HOME", folder_.path().string()};
  EnvironmentVariable configuration_{"XDG_CONFIG_HOME", std::nullopt};
  EnvironmentVariable cache_{"XDG_CACHE_HOME", std::nullopt};
};

TEST_F(VideosFolder, IsVideosWithoutAnyConfiguration) {
  EXPECT_EQ(videosFolder(), home() + "/Videos");
}

TEST_F(VideosFolder, IsTheOneThatTheUserNamed) {
  configure("# comment\nXDG_MUSIC_DIR=\"$HOME/Musica\"\nXDG_VIDEOS_DIR=\"$HOME/I miei video\"\n");
  EXPECT_EQ(videosFolder(), home() + "/I miei video");
}

TEST_F(VideosFolder, MayBeOutsideTheHomeFolder) {
  configure("XDG_VIDEOS_DIR=\"/media/disk/Video/\"\n");
  EXPECT_EQ(videosFolder(), "/media/disk/Video");
}

TEST_F(VideosFolder, MayHaveEscapedCharacters) {
  configure("  XDG_VIDEOS_DIR=\"$HOME/a\\\"b\\$c\\\\d\"\n");
  EXPECT_EQ(videosFolder(), home() + "/a\"b$c\\d");
}

TEST_F(VideosFolder, IsTheLastOneNamed) {
  configure("XDG_VIDEOS_DIR=\"$HOME/a\"\nXDG_VIDEOS_DIR=\"$HOME/b\"\n");
  EXPECT_EQ(videosFolder(), home() + "/b");
}

TEST_F(VideosFolder, IsNotTheWholeHomeFolder) {
  configure("XDG_VIDEOS_DIR=\"$HOME/\"\n");
  EXPECT_EQ(videosFolder(), home() + "/Videos");
  configure("XDG_VIDEOS_DIR=\"$HOME\"\n");
  EXPECT_EQ(videosFolder(), home() + "/Videos");
}

TEST_F(VideosFolder, IsNotTakenFromLinesThatAreNotWellFormed) {
  for (const char* line :
       {"XDG_VIDEOS_DIR=$HOME/a", "XDG_VIDEOS_DIR=\"$HOME/a", "XDG_VIDEOS_DIR=\"a\"", "XDG_VIDEOS_DIR=\"$HOMES/a\"",
        "XDG_VIDEOS_DIRS=\"/a\"", "XDG_VIDEOS_DIR=", "#XDG_VIDEOS_DIR=\"/a\""}) {
    configure(line);
    EXPECT_EQ(videosFolder(), home() + "/Videos") << line;
  }
}

TEST_F(VideosFolder, IsConfiguredWhereTheConfigurationIs) {
  const TemporaryFolder other;
  const EnvironmentVariable configuration("XDG_CONFIG_HOME", other.path().string());
  other.write("user-dirs.dirs", "XDG_VIDEOS_DIR=\"$HOME/there\"\n");
  EXPECT_EQ(videosFolder(), home() + "/there");
}

TEST_F(VideosFolder, IsFoundWithoutTheHomeVariable) {
  const EnvironmentVariable none("HOME", std::nullopt);
  EXPECT_TRUE(videosFolder().starts_with("/"));
}

TEST_F(VideosFolder, HasACacheFolderBesideIt) {
  EXPECT_EQ(cacheFolder(), home() + "/.cache");
  const EnvironmentVariable elsewhere("XDG_CACHE_HOME", "/var/tmp/cache");
  EXPECT_EQ(cacheFolder(), "/var/tmp/cache");
  const EnvironmentVariable relative("XDG_CACHE_HOME", "cache");
  EXPECT_EQ(cacheFolder(), home() + "/.cache");
}

}  // namespace
