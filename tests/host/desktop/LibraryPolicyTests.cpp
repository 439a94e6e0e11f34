#include "hosts/desktop/LibraryPolicy.h"

#include "tests/support/EnvironmentVariable.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <string>

namespace desktop {
namespace {

class LibraryPolicyTest : public testing::Test {
 protected:
  /// The folder `name` of the system's configuration, with this policy in it.
  QString folderWith(const QString& name, const QByteArray& policy) const {
    const QString path = folder.filePath(name);
    QDir().mkpath(path + QStringLiteral("/quillop"));
    QFile file(path + QStringLiteral("/quillop/policy.json"));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(policy);
    return path;
  }
  bool restricts(const QByteArray& policy) const {
    return policyRestrictsLibrary({folderWith(QStringLiteral("only"), policy)});
  }

  QTemporaryDir folder;
};

TEST_F(LibraryPolicyTest, NobodyIsRestrictedWithoutAPolicy) {
  EXPECT_FALSE(policyRestrictsLibrary({}));
  EXPECT_FALSE(policyRestrictsLibrary({folder.path(), folder.filePath(QStringLiteral("missing"))}));
}

TEST_F(LibraryPolicyTest, OnlyTheWordRestrictedRestricts) {
  EXPECT_TRUE(restricts(R"({"mediaLibrary": "restricted"})"));
  EXPECT_TRUE(restricts(R"({"other": 1, "mediaLibrary": "restricted"})"));
  EXPECT_FALSE(restricts(R"({"mediaLibrary": "allowed"})"));
  EXPECT_FALSE(restricts(R"({"other": "restricted"})"));
  EXPECT_FALSE(restricts("{}"));
}

TEST_F(LibraryPolicyTest, PolicyThatCannotBeUnderstoodRestricts) {
  int number = 0;
  for (const QByteArray& damage : {QByteArray("{\"mediaLibrary\": "), QByteArray("[]"), QByteArray("restricted"),
                                   QByteArray(), QByteArray("\0\1", 2)}) {
    testing::internal::CaptureStderr();
    const auto path = folderWith(QString::number(number++), damage);
    EXPECT_TRUE(policyRestrictsLibrary({path})) << damage.toStdString();
    EXPECT_NE(testing::internal::GetCapturedStderr().find("policy.json"), std::string::npos);
  }
}

TEST_F(LibraryPolicyTest, PolicyThatCannotBeUnderstoodIsToldOfOnce) {
  testing::internal::CaptureStderr();
  for (int call = 0; call < 3; ++call) EXPECT_TRUE(restricts("{"));
  const std::string told = testing::internal::GetCapturedStderr();
  EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 1) << told;
}

TEST_F(LibraryPolicyTest, FirstFolderThatSaysAnythingDecides) {
  const auto silent = folderWith(QStringLiteral("silent"), "{}");
  const auto open = folderWith(QStringLiteral("open"), R"({"mediaLibrary": "allowed"})");
  const auto closed = folderWith(QStringLiteral("closed"), R"({"mediaLibrary": "restricted"})");
  EXPECT_TRUE(policyRestrictsLibrary({silent, closed, open}));
  EXPECT_FALSE(policyRestrictsLibrary({silent, open, closed}));
}

TEST_F(LibraryPolicyTest, PolicyIsReadAnewAtEachCall) {
  const auto path = folderWith(QStringLiteral("only"), R"({"mediaLibrary": "restricted"})");
  EXPECT_TRUE(policyRestrictsLibrary({path}));
  QFile::remove(path + QStringLiteral("/quillop/policy.json"));
  EXPECT_FALSE(policyRestrictsLibrary({path}));
}

TEST(SystemConfigurationFolders, AreThoseOfTheEnvironmentInItsOrder) {
  const EnvironmentVariable variable("XDG_CONFIG_DIRS", "/etc/first:relative::/etc/second");
  EXPECT_EQ(systemConfigurationFolders(), (QStringList{QStringLiteral("/etc/first"), QStringLiteral("/etc/second")}));
}

TEST(SystemConfigurationFolders, AreThatOfTheStandardWhereTheEnvironmentNamesNone) {
  for (const auto& value :
       {std::optional<std::string>(), std::optional<std::string>(""), std::optional<std::string>("relative")}) {
    const EnvironmentVariable variable("XDG_CONFIG_DIRS", value);
    EXPECT_EQ(systemConfigurationFolders(), QStringList{QStringLiteral("/etc/xdg")});
  }
}

}  // namespace
}  // namespace desktop
