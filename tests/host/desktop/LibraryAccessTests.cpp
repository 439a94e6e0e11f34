#include "hosts/desktop/LibraryAccess.h"

#include "tests/support/OrdinaryUser.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <sys/stat.h>

namespace desktop {
namespace {

using host::LibraryAccess::Authorised;
using host::LibraryAccess::Denied;
using host::LibraryAccess::NotDetermined;
using host::LibraryAccess::Restricted;
using Answer = LibraryAccess::Answer;
using Restriction = LibraryAccess::Restriction;

class LibraryAccessTest : public testing::Test {
 protected:
  LibraryAccessTest() { QDir().mkpath(videos); }

  LibraryAccess access() const { return {path, {folder.filePath(QStringLiteral("xdg"))}, videos}; }
  void write(const QString& name, const QByteArray& contents) const {
    QDir().mkpath(QFileInfo(name).path());
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(contents);
  }
  void restrict() const {
    write(folder.filePath(QStringLiteral("xdg/quillop/policy.json")), R"({"mediaLibrary": "restricted"})");
  }
  QByteArray contentsOf(const QString& name) const {
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
  }

  QTemporaryDir folder;
  QString path = folder.filePath(QStringLiteral("library.json"));
  QString videos = folder.filePath(QStringLiteral("Videos"));
};

TEST_F(LibraryAccessTest, NothingIsDeterminedBeforeTheFirstAnswer) {
  EXPECT_EQ(access().status(), NotDetermined);
  EXPECT_FALSE(QFile::exists(path));
}

TEST_F(LibraryAccessTest, AnswerHoldsAtOnceAndInTheNextRun) {
  auto first = std::make_unique<LibraryAccess>(path, QStringList(), videos);
  first->setAnswer(Answer::Denied);
  EXPECT_EQ(first->status(), Denied);
  EXPECT_EQ(access().status(), Denied);
  first->setAnswer(Answer::Authorised);
  EXPECT_EQ(first->status(), Authorised);
  EXPECT_EQ(access().status(), Authorised);
}

TEST_F(LibraryAccessTest, AnotherAnswerIsToldAndTheSameIsNot) {
  LibraryAccess library(path, {}, videos);
  int told = 0;
  QObject::connect(&library, &LibraryAccess::answered, [&] { ++told; });
  library.setAnswer(Answer::Authorised);
  library.setAnswer(Answer::Authorised);
  EXPECT_EQ(told, 1);
  library.setAnswer(Answer::Denied);
  EXPECT_EQ(told, 2);
}

TEST_F(LibraryAccessTest, NothingButTheFileIsLeftAfterWriting) {
  LibraryAccess(path, {}, videos).setAnswer(Answer::Denied);
  EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("library.json")});
}

TEST_F(LibraryAccessTest, AnswerThatCannotBeWrittenHoldsForThisRun) {
  LibraryAccess library(folder.filePath(QStringLiteral("missing/library.json")), {}, videos);
  testing::internal::CaptureStderr();
  library.setAnswer(Answer::Authorised);
  EXPECT_NE(testing::internal::GetCapturedStderr().find("library.json"), std::string::npos);
  EXPECT_EQ(library.status(), Authorised);
}

TEST_F(LibraryAccessTest, DamagedFileIsSetAsideAndNothingIsDetermined) {
  for (const QByteArray& damage : {QByteArray("{\"access\": "), QByteArray("[1]"), QByteArray()}) {
    write(path, damage);
    testing::internal::CaptureStderr();
    EXPECT_EQ(access().status(), NotDetermined);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("library.json"), std::string::npos);
    EXPECT_EQ(contentsOf(path + QStringLiteral(".damaged")), damage);
    EXPECT_FALSE(QFile::exists(path));
  }
}

TEST_F(LibraryAccessTest, StrangeValuesCountAsNoAnswerAndNoFolder) {
  write(path, R"({"access": 3, "folders": ["relative", 5, "/there"]})");
  EXPECT_EQ(access().status(), NotDetermined);
  EXPECT_EQ(access().addedFolders(), QStringList{QStringLiteral("/there")});
}

TEST_F(LibraryAccessTest, PolicyComesBeforeEveryAnswerAndLeavesItAsItWas) {
  LibraryAccess(path, {}, videos).setAnswer(Answer::Authorised);
  restrict();
  EXPECT_EQ(access().status(), Restricted);
  EXPECT_EQ(access().restriction(), Restriction::Policy);
  QFile::remove(folder.filePath(QStringLiteral("xdg/quillop/policy.json")));
  EXPECT_EQ(access().status(), Authorised);
  EXPECT_EQ(access().restriction(), Restriction::None);
}

TEST_F(LibraryAccessTest, PolicyRestrictsAlsoWhomNobodyAsked) {
  restrict();
  EXPECT_EQ(access().status(), Restricted);
}

TEST_F(LibraryAccessTest, VideosFolderThatMayNotBeReadRestricts) {
  ASSERT_EQ(chmod(qPrintable(folder.path()), 0755), 0);
  for (const mode_t mode : {0000U, 0100U, 0400U}) {
    ASSERT_EQ(chmod(qPrintable(videos), mode), 0);
    const OrdinaryUser user;
    EXPECT_EQ(access().status(), Restricted) << mode;
    EXPECT_EQ(access().restriction(), Restriction::UnreadableFolder);
  }
  ASSERT_EQ(chmod(qPrintable(videos), 0755), 0);
  const OrdinaryUser user;
  EXPECT_EQ(access().restriction(), Restriction::None);
}

TEST_F(LibraryAccessTest, MissingVideosFolderRestrictsNobody) {
  QDir(videos).removeRecursively();
  EXPECT_EQ(access().status(), NotDetermined);
}

TEST_F(LibraryAccessTest, AddedFoldersComeAfterTheVideosFolderAndAreKept) {
  LibraryAccess library(path, {}, videos);
  int told = 0;
  QObject::connect(&library, &LibraryAccess::foldersChanged, [&] { ++told; });
  library.addFolder(QStringLiteral("/media/b/"));
  library.addFolder(QStringLiteral("/media/à"));
  EXPECT_EQ(told, 2);
  const std::vector<std::string> all{videos.toStdString(), "/media/b", "/media/à"};
  EXPECT_EQ(library.folders(), all);
  EXPECT_EQ(access().folders(), all);
}

TEST_F(LibraryAccessTest, FolderIsInTheLibraryOnce) {
  LibraryAccess library(path, {}, videos);
  library.addFolder(QStringLiteral("/media/b"));
  int told = 0;
  QObject::connect(&library, &LibraryAccess::foldersChanged, [&] { ++told; });
  for (const auto& again :
       {QStringLiteral("/media/b/"), QStringLiteral("/media/x/../b"), videos, QStringLiteral("relative")}) {
    library.addFolder(again);
  }
  EXPECT_EQ(told, 0);
  EXPECT_EQ(library.addedFolders(), QStringList{QStringLiteral("/media/b")});
}

TEST_F(LibraryAccessTest, RemovedFolderIsGone) {
  LibraryAccess library(path, {}, videos);
  library.setAnswer(Answer::Authorised);
  library.addFolder(QStringLiteral("/media/b"));
  library.removeFolder(QStringLiteral("/media/b"));
  library.removeFolder(videos);
  EXPECT_EQ(access().folders(), std::vector<std::string>{videos.toStdString()});
  EXPECT_EQ(access().status(), Authorised);
}

}  // namespace
}  // namespace desktop
