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

}  // namespace
}  // namespace desktop
