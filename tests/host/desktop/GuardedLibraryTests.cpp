#include "hosts/desktop/GuardedLibrary.h"

#include <gmock/gmock.h>

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

constexpr std::uint64_t homeVideo = 8192;

/// Runs what was posted when it is told to.
class PostedWork final : public host::MainLoop {
 public:
  double now() const override { return 0.0; }
  void wakeAt(double) override {}
  void post(std::function<void()> work) override { work_.push_back(std::move(work)); }
  void turn() {
    for (auto work = std::exchange(work_, {}); auto& each : work) each();
  }

 private:
  std::vector<std::function<void()>> work_;
};

class OneItem final : public host::LibraryItems {
 public:
  std::size_t count() const override { return 1; }
  host::LibraryItem item(std::size_t) const override { return {"file:///film.mp4", "Film", 60, "/film.mp4"}; }
};

/// A library of one video. It tells of what folders it was last.
class OneVideo final : public medialibrary::FolderLibrary {
 public:
  OneVideo(Folders folders, std::optional<Folders>& current) : current_(current) { current_ = std::move(folders); }
  ~OneVideo() override { current_ = std::nullopt; }

  host::LibraryAccess access() const override { return Authorised; }
  void requestAccess(std::function<void(host::LibraryAccess)>) override { ADD_FAILURE() << "asks the wrong one"; }
  std::shared_ptr<const host::LibraryItems> items(std::uint64_t) override {
    return std::make_shared<const OneItem>();
  }
  void setFolders(Folders folders) override { current_ = std::move(folders); }
  Contents contents(std::uint64_t mediaType) override { return {mediaType == homeVideo ? 1U : 0U, 2}; }

 private:
  std::optional<Folders>& current_;
};

class GuardedLibraryTest : public testing::Test {
 protected:
  void request() {
    library.requestAccess([this](host::LibraryAccess heard) { answers.push_back(heard); });
  }
  void reply(std::optional<Answer> answer) {
    ASSERT_EQ(questions.size(), 1U);
    std::exchange(questions, {}).front()(answer);
  }
  void restrict() const {
    QDir().mkpath(folder.filePath(QStringLiteral("xdg/quillop")));
    QFile file(folder.filePath(QStringLiteral("xdg/quillop/policy.json")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(R"({"mediaLibrary": "restricted"})");
  }

  QTemporaryDir folder;
  PostedWork mainLoop;
  LibraryAccess access{folder.filePath(QStringLiteral("library.json")),
                       {folder.filePath(QStringLiteral("xdg"))},
                       folder.filePath(QStringLiteral("Videos"))};
  std::vector<std::function<void(std::optional<Answer>)>> questions;
  std::optional<Folders> opened;
  std::vector<host::LibraryAccess> answers;
  GuardedLibrary library{mainLoop, access, [this](auto answered) { questions.push_back(std::move(answered)); },
                         [this](Folders folders) { return std::make_unique<OneVideo>(std::move(folders), opened); }};
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
  EXPECT_EQ(opened, std::nullopt);
}

TEST_F(GuardedLibraryTest, NobodyLooksIntoTheFoldersWithoutAccess) {
  EXPECT_EQ(opened, std::nullopt);
  EXPECT_EQ(library.items(homeVideo)->count(), 0U);
  EXPECT_EQ(library.contents(homeVideo), std::nullopt);
  access.setAnswer(Answer::Denied);
  EXPECT_EQ(library.items(homeVideo)->count(), 0U);
  EXPECT_EQ(opened, std::nullopt);
}

TEST_F(GuardedLibraryTest, ChangedAnswerTakesEffectAtOnce) {
  access.setAnswer(Answer::Authorised);
  EXPECT_EQ(opened, access.folders());
  EXPECT_EQ(library.items(homeVideo)->count(), 1U);
  EXPECT_EQ(library.contents(homeVideo)->items, 1U);
  EXPECT_EQ(library.contents(homeVideo)->unknownFiles, 2U);
  access.setAnswer(Answer::Denied);
  EXPECT_EQ(opened, std::nullopt);
  EXPECT_EQ(library.items(homeVideo)->count(), 0U);
}

TEST_F(GuardedLibraryTest, RestrictionWhileItIsOpenTakesEffectAtTheNextQuery) {
  access.setAnswer(Answer::Authorised);
  restrict();
  EXPECT_EQ(library.access(), Restricted);
  EXPECT_EQ(library.items(homeVideo)->count(), 0U);
  EXPECT_EQ(opened, std::nullopt);
}

TEST_F(GuardedLibraryTest, ChangedFoldersTakeEffectAtOnce) {
  access.addFolder(QStringLiteral("/media/before"));
  EXPECT_EQ(opened, std::nullopt);
  access.setAnswer(Answer::Authorised);
  EXPECT_EQ(opened, access.folders());
  access.addFolder(QStringLiteral("/media/after"));
  EXPECT_EQ(opened, access.folders());
  access.removeFolder(QStringLiteral("/media/before"));
  EXPECT_EQ(opened, access.folders());
  EXPECT_EQ(opened->back(), "/media/after");
}

}  // namespace
}  // namespace desktop
