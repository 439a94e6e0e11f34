#include "hosts/desktop/Paths.h"

#include "tests/support/EnvironmentVariable.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <unistd.h>

namespace desktop {
namespace {

class RuntimeFolder : public testing::Test {
 protected:
  QTemporaryDir folder;
  EnvironmentVariable runtime{"XDG_RUNTIME_DIR", folder.path().toStdString()};
};

TEST_F(RuntimeFolder, IsTheAppsOwnInTheUsers) {
  const EnvironmentVariable noSandbox("FLATPAK_ID", std::nullopt);
  EXPECT_EQ(runtimeFolder(), folder.filePath("quillop"));
  EXPECT_TRUE(QFileInfo(runtimeFolder()).isDir());
}

TEST_F(RuntimeFolder, IsTheOneThatAllStartsOfASandboxedAppShare) {
  const EnvironmentVariable sandbox("FLATPAK_ID", "example.quillop.App");
  QDir(folder.path()).mkpath("app/example.quillop.App");
  EXPECT_EQ(runtimeFolder(), folder.filePath("app/example.quillop.App/quillop"));
  EXPECT_TRUE(isSandboxed());
}

TEST_F(RuntimeFolder, IsAmongTheTemporaryFilesWhereTheUserHasNone) {
  const EnvironmentVariable gone("XDG_RUNTIME_DIR", folder.filePath("no-such-folder").toStdString());
  EXPECT_EQ(runtimeFolder(), QDir::tempPath() + QStringLiteral("/quillop-%1").arg(getuid()));
}

TEST_F(RuntimeFolder, IsAnotherWhereSomebodyElseMayHaveMadeThatOne) {
  const EnvironmentVariable gone("XDG_RUNTIME_DIR", folder.filePath("no-such-folder").toStdString());
  const EnvironmentVariable temporary("TMPDIR", folder.path().toStdString());
  const QString usual = folder.filePath(QStringLiteral("quillop-%1").arg(getuid()));
  const QTemporaryDir elsewhere;
  ASSERT_TRUE(QFile::link(elsewhere.path(), usual));
  testing::internal::CaptureStderr();
  const QString taken = runtimeFolder();
  EXPECT_NE(testing::internal::GetCapturedStderr().find(usual.toStdString()), std::string::npos);
  EXPECT_NE(taken, usual);
  EXPECT_TRUE(QFileInfo(taken).isDir());
  EXPECT_EQ(QFileInfo(taken).ownerId(), getuid());
  EXPECT_EQ(runtimeFolder(), taken) << "all of a start's files lie together";
}

}  // namespace
}  // namespace desktop
