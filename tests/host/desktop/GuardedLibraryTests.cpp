#include "hosts/desktop/GuardedLibrary.h"

#include "tests/host/desktop/FakeLibrary.h"
#include "tests/support/PostedWork.h"

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <utility>

namespace desktop {
namespace {

using host::LibraryAccess::Authorised;
using host::LibraryAccess::Denied;
using host::LibraryAccess::NotDetermined;
using host::LibraryAccess::Restricted;
using testing::ElementsAre;
using testing::IsEmpty;
using Answer = LibraryAccess::Answer;
using Folders = std::vector<std::string>;
using Contents = medialibrary::FolderLibrary::Contents;

using simulated::homeVideo;

class GuardedLibraryTest : public testing::Test {
 protected:
  void request() {
    library.requestAccess([this](host::LibraryAccess heard) { answers.push_back(heard); });
  }
  void reply(std::optional<Answer> answer) {
    ASSERT_EQ(questions.size(), 1U);
    std::exchange(questions, {}).front()(answer);
  }
  void prepare() {
    library.prepare([this](bool isReady) { prepared.push_back(isReady); });
  }
  void restrict() const {
    QDir().mkpath(folder.filePath(QStringLiteral("xdg/quillop")));
    QFile file(folder.filePath(QStringLiteral("xdg/quillop/policy.json")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(R"({"mediaLibrary": "restricted"})");
  }

  QTemporaryDir folder;
  PostedWork mainLoop;
  LibraryFacts facts;
  LibraryAccess access{folder.filePath(QStringLiteral("library.json")),
                       {folder.filePath(QStringLiteral("xdg"))},
                       folder.filePath(QStringLiteral("Videos"))};
  std::vector<std::function<void(std::optional<Answer>)>> questions;
  std::vector<std::function<void(bool)>> waits;
  std::vector<bool> prepared;
  std::vector<host::LibraryAccess> answers;
  GuardedLibrary library{
      mainLoop, access, [this](auto answered) { questions.push_back(std::move(answered)); },
      [this](GuardedLibrary&, auto answered) { waits.push_back(std::move(answered)); },
      [this](Folders folders) { return std::make_unique<FakeLibrary>(std::move(folders), facts); }};
};

TEST_F(GuardedLibraryTest, FirstRequestAsksAndHearsTheAnswerInALaterTurn) {
  request();
  mainLoop.turn();
  EXPECT_THAT(answers, IsEmpty());
  reply(Answer::Authorised);
  EXPECT_THAT(answers, IsEmpty());
  mainLoop.turn();
  EXPECT_THAT(answers, ElementsAre(Authorised));
  EXPECT_EQ(library.access(), Authorised);
}

TEST_F(GuardedLibraryTest, RefusalIsHeardAndRemembered) {
  request();
  reply(Answer::Denied);
  mainLoop.turn();
  EXPECT_THAT(answers, ElementsAre(Denied));
  EXPECT_EQ(library.access(), Denied);
}

TEST_F(GuardedLibraryTest, QuestionClosedWithoutAnAnswerLeavesItOpen) {
  request();
  reply(std::nullopt);
  mainLoop.turn();
  EXPECT_THAT(answers, ElementsAre(NotDetermined));
  EXPECT_EQ(library.access(), NotDetermined);
  request();
  EXPECT_EQ(questions.size(), 1U) << "asks again";
}

TEST_F(GuardedLibraryTest, RequestsWhileTheQuestionStandsShareItsAnswer) {
  request();
  request();
  mainLoop.turn();
  request();
  reply(Answer::Denied);
  mainLoop.turn();
  EXPECT_THAT(answers, ElementsAre(Denied, Denied, Denied));
}

TEST_F(GuardedLibraryTest, AnsweredRequestsAreAnsweredInALaterTurnWithoutAsking) {
  for (const Answer answer : {Answer::Denied, Answer::Authorised}) {
    access.setAnswer(answer);
    request();
    EXPECT_THAT(questions, IsEmpty());
    EXPECT_THAT(answers, IsEmpty());
    mainLoop.turn();
    EXPECT_THAT(std::exchange(answers, {}), ElementsAre(answer == Answer::Denied ? Denied : Authorised));
  }
}

TEST_F(GuardedLibraryTest, RestrictedRequestIsAnsweredWithoutAsking) {
  restrict();
  request();
  EXPECT_THAT(questions, IsEmpty());
  mainLoop.turn();
  EXPECT_THAT(answers, ElementsAre(Restricted));
}

TEST_F(GuardedLibraryTest, RestrictionThatComesWhileTheQuestionStandsIsWhatIsHeard) {
  request();
  restrict();
  reply(Answer::Authorised);
  mainLoop.turn();
  EXPECT_THAT(answers, ElementsAre(Restricted));
  EXPECT_EQ(facts.folders, std::nullopt);
}

TEST_F(GuardedLibraryTest, NobodyLooksIntoTheFoldersWithoutAccess) {
  EXPECT_EQ(facts.folders, std::nullopt);
  EXPECT_EQ(library.items(homeVideo)->count(), 0U);
  EXPECT_EQ(library.contents(homeVideo), std::nullopt);
  access.setAnswer(Answer::Denied);
  EXPECT_EQ(library.items(homeVideo)->count(), 0U);
  EXPECT_EQ(facts.folders, std::nullopt);
}

TEST_F(GuardedLibraryTest, ChangedAnswerTakesEffectAtOnce) {
  access.setAnswer(Answer::Authorised);
  EXPECT_EQ(facts.folders, access.folders());
  EXPECT_EQ(library.items(homeVideo)->count(), 1U);
  facts.contents = Contents{1, 2, 3, true};
  EXPECT_EQ(library.contents(homeVideo)->items, 1U);
  EXPECT_EQ(library.contents(homeVideo)->unknownFiles, 2U);
  access.setAnswer(Answer::Denied);
  EXPECT_EQ(facts.folders, std::nullopt);
  EXPECT_EQ(library.items(homeVideo)->count(), 0U);
}

TEST_F(GuardedLibraryTest, RestrictionWhileItIsOpenTakesEffectAtTheNextQuery) {
  access.setAnswer(Answer::Authorised);
  restrict();
  EXPECT_EQ(library.access(), Restricted);
  EXPECT_EQ(library.items(homeVideo)->count(), 0U);
  EXPECT_EQ(facts.folders, std::nullopt);
}

TEST_F(GuardedLibraryTest, ChangedFoldersTakeEffectAtOnce) {
  access.addFolder(QStringLiteral("/media/before"));
  EXPECT_EQ(facts.folders, std::nullopt);
  access.setAnswer(Answer::Authorised);
  EXPECT_EQ(facts.folders, access.folders());
  access.addFolder(QStringLiteral("/media/after"));
  EXPECT_EQ(facts.folders, access.folders());
  access.removeFolder(QStringLiteral("/media/before"));
  EXPECT_EQ(facts.folders, access.folders());
  EXPECT_EQ(facts.folders->back(), "/media/after");
}

TEST_F(GuardedLibraryTest, PreparedAtOnceWithoutAccess) {
  facts.contents = Contents{0, 5, 0, true};
  prepare();
  access.setAnswer(Answer::Denied);
  prepare();
  EXPECT_THAT(prepared, ElementsAre(true, true));
  EXPECT_THAT(waits, IsEmpty());
}

TEST_F(GuardedLibraryTest, PreparedAtOnceWhereEverythingIsKnown) {
  access.setAnswer(Answer::Authorised);
  for (const std::size_t items : {0U, 3U}) {
    facts.contents = Contents{items, 0, 2, false};
    prepare();
  }
  EXPECT_THAT(prepared, ElementsAre(true, true));
  EXPECT_THAT(waits, IsEmpty());
  EXPECT_EQ(facts.refreshes, 2) << "what cannot be watched is searched once more";
}

TEST_F(GuardedLibraryTest, WhatTheRefreshBeganIsWaitedFor) {
  access.setAnswer(Answer::Authorised);
  facts.refreshed = [this] { facts.contents.isSearching = true; };
  prepare();
  EXPECT_THAT(prepared, IsEmpty());
  EXPECT_EQ(waits.size(), 1U);
}

TEST_F(GuardedLibraryTest, WaitIsAnsweredInALaterTurn) {
  access.setAnswer(Answer::Authorised);
  facts.contents = Contents{3, 1, 0, false};
  prepare();
  ASSERT_EQ(waits.size(), 1U);
  waits.front()(true);
  EXPECT_THAT(prepared, IsEmpty());
  mainLoop.turn();
  EXPECT_THAT(prepared, ElementsAre(true));
  prepare();
  waits.back()(false);
  mainLoop.turn();
  EXPECT_THAT(prepared, ElementsAre(true, false));
}

TEST_F(GuardedLibraryTest, TellsOfChangesLater) {
  int changes = 0;
  QObject::connect(&library, &GuardedLibrary::changed, &library, [&] {
    ++changes;
    library.contents(homeVideo);
  });
  access.setAnswer(Answer::Authorised);
  QCoreApplication::processEvents();
  EXPECT_EQ(changes, 1) << "the access";
  facts.changed();
  EXPECT_EQ(changes, 1);
  restrict();
  QCoreApplication::processEvents();
  EXPECT_EQ(changes, 2);
  EXPECT_EQ(facts.folders, std::nullopt) << "whoever heard of it asked, which closed the library";
  QCoreApplication::processEvents();
  EXPECT_EQ(changes, 3) << "the restriction";
}

TEST_F(GuardedLibraryTest, GentlenessHoldsForEveryLibraryThatIsOpened) {
  library.setGentle(true);
  EXPECT_FALSE(facts.isGentle);
  access.setAnswer(Answer::Authorised);
  EXPECT_TRUE(facts.isGentle);
  library.setGentle(false);
  EXPECT_FALSE(facts.isGentle);
}

TEST_F(GuardedLibraryTest, ProgressAndUnreadableFilesAreTheLibrarysAndNoneWithoutAccess) {
  facts.progress = {120, 4000, 90.0};
  facts.unreadable = {{"/a.mp4", "broken"}, {"/b.mp4", "broken"}};
  EXPECT_EQ(library.progress().total, 0U);
  EXPECT_THAT(library.unreadableFiles(5), IsEmpty());
  library.rescan();
  access.setAnswer(Answer::Authorised);
  EXPECT_EQ(library.progress().total, 4000U);
  EXPECT_EQ(library.unreadableFiles(1).size(), 1U);
  EXPECT_EQ(facts.rescans, 0);
  library.rescan();
  EXPECT_EQ(facts.rescans, 1);
}

}  // namespace
}  // namespace desktop
