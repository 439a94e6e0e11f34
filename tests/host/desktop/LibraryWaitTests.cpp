#include "hosts/desktop/LibraryWait.h"

#include "tests/host/desktop/LibraryStage.h"

#include <algorithm>

namespace desktop {
namespace {

using Contents = medialibrary::FolderLibrary::Contents;
using Progress = medialibrary::FolderLibrary::Progress;
using Answers = std::vector<bool>;

const auto title = QStringLiteral("Looking through your videos");
const auto cancel = QStringLiteral("Cancel");

class LibraryWaitTest : public testing::Test {
 protected:
  void prepare() {
    stage().settle();
    there.library.prepare([this](bool isReady) { answers.push_back(isReady); });
  }
  void prepareAndSeeIt() {
    prepare();
    EXPECT_TRUE(LibraryStage::waitFor([this] { return wait.isShown(); }));
    stage().settle();
  }
  void nowKnown(std::size_t items) {
    there.facts.contents = Contents{items, 0, 0, false};
    there.facts.progress = {};
    there.tellChange();
  }
  ScreenStage& stage() { return there.stage; }

  LibraryStage there{[this](GuardedLibrary& library, auto answered) { wait.begin(library, std::move(answered)); }};
  LibraryWait wait{there.layers};
  Answers answers;
};

TEST_F(LibraryWaitTest, EndsWhenEverythingIsKnown) {
  there.facts.contents = Contents{0, 4, 0, true};
  prepare();
  there.tellChange();
  EXPECT_TRUE(answers.empty());
  nowKnown(4);
  EXPECT_EQ(answers, Answers{true});
  EXPECT_FALSE(wait.isWaiting());
  EXPECT_FALSE(wait.isShown());
}

TEST_F(LibraryWaitTest, EndsWithNothingWhereNothingIsFound) {
  there.facts.contents = Contents{0, 0, 0, true};
  prepareAndSeeIt();
  nowKnown(0);
  EXPECT_EQ(answers, Answers{true});
  EXPECT_FALSE(wait.isShown());
}

TEST_F(LibraryWaitTest, GoesOnWithoutTheRestWhereSomethingIsListedAlready) {
  there.facts.contents = Contents{3, 1000, 0, true};
  prepare();
  EXPECT_TRUE(answers.empty());
  EXPECT_TRUE(LibraryStage::waitFor([this] { return !wait.isWaiting(); }));
  stage().settle();
  EXPECT_EQ(answers, Answers{true});
  EXPECT_FALSE(wait.isShown());
}

TEST_F(LibraryWaitTest, GoesOnWaitingWhereNothingWasListedAtFirst) {
  there.facts.contents = Contents{0, 1000, 0, false};
  there.facts.progress = {0, 1000, std::nullopt};
  prepareAndSeeIt();
  there.facts.contents = Contents{3, 997, 0, false};
  there.tellChange();
  QTest::qWait(1500);
  EXPECT_TRUE(answers.empty());
  EXPECT_TRUE(wait.isShown());
}

TEST_F(LibraryWaitTest, ShowsHowFarTheLibraryIs) {
  there.facts.contents = Contents{0, 0, 0, true};
  prepareAndSeeIt();
  EXPECT_EQ(wait.count(), QStringLiteral("Searching your folders"));
  EXPECT_EQ(wait.remaining(), QString());
  there.facts.contents = Contents{37, 3880, 0, false};
  there.facts.progress = {120, 4000, 118.0};
  there.tellChange();
  EXPECT_EQ(wait.count(), QStringLiteral("120 of 4,000"));
  EXPECT_EQ(wait.remaining(), QStringLiteral("about 2 minutes left"));
  auto* const dialog = there.accessible(title);
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(dialog->role(), QAccessible::Dialog);
  EXPECT_EQ(dialog->text(QAccessible::Description), QStringLiteral("120 of 4,000"));
}

TEST_F(LibraryWaitTest, HasAProgressBar) {
  there.facts.contents = Contents{0, 3, 0, false};
  there.facts.progress = {1, 4, 5.0};
  prepareAndSeeIt();
  QAccessibleInterface* bar = nullptr;
  auto* const dialog = there.accessible(title);
  ASSERT_NE(dialog, nullptr);
  for (int child = 0; child < dialog->childCount(); ++child) {
    if (dialog->child(child)->role() == QAccessible::ProgressBar) bar = dialog->child(child);
  }
  ASSERT_NE(bar, nullptr);
  EXPECT_EQ(bar->text(QAccessible::Name), title);
  EXPECT_EQ(bar->text(QAccessible::Description), QStringLiteral("1 of 4, about 5 seconds left"));
  EXPECT_EQ(bar->object()->property("value").toDouble(), 0.25);
}

TEST_F(LibraryWaitTest, ShowsWhatIsReadyAtOnceWhereThatIsWanted) {
  there.facts.contents = Contents{0, 40, 0, false};
  prepareAndSeeIt();
  EXPECT_EQ(stage().named(QStringLiteral("Show 0 videos")), nullptr);
  there.facts.contents = Contents{37, 3, 0, false};
  there.tellChange();
  there.click(QStringLiteral("Show 37 videos"));
  EXPECT_EQ(answers, Answers{true});
  EXPECT_FALSE(wait.isShown());
}

TEST_F(LibraryWaitTest, CanBeCancelled) {
  there.facts.contents = Contents{0, 40, 0, false};
  prepareAndSeeIt();
  there.click(cancel);
  EXPECT_EQ(answers, Answers{false});
  EXPECT_FALSE(wait.isShown());
  nowKnown(3);
  EXPECT_EQ(answers, Answers{false}) << "once";
  prepare();
  EXPECT_EQ(answers, (Answers{false, true}));
}

TEST_F(LibraryWaitTest, EscapeAndBackCancel) {
  there.facts.contents = Contents{0, 40, 0, false};
  for (const auto leave : {Qt::Key_Escape, Qt::Key_Back}) {
    prepareAndSeeIt();
    there.key(leave);
    EXPECT_FALSE(wait.isShown());
  }
  EXPECT_EQ(answers, (Answers{false, false}));
}

TEST_F(LibraryWaitTest, OnlyTheFirstOfTwoPressesCounts) {
  there.facts.contents = Contents{0, 40, 0, false};
  prepareAndSeeIt();
  there.facts.contents = Contents{2, 40, 0, false};
  there.tellChange();
  wait.goOn();
  wait.cancel();
  stage().settle();
  EXPECT_EQ(answers, Answers{true});
}

TEST_F(LibraryWaitTest, KeyThatWasMeantForTheAppCancelsNothing) {
  there.facts.contents = Contents{0, 40, 0, false};
  prepareAndSeeIt();
  there.key(Qt::Key_Return);
  there.key(Qt::Key_Space);
  EXPECT_TRUE(wait.isShown());
  there.key(Qt::Key_Tab);
  there.key(Qt::Key_Return);
  EXPECT_EQ(answers, Answers{false});
}

TEST_F(LibraryWaitTest, LostAccessEndsIt) {
  there.facts.contents = Contents{0, 40, 0, false};
  prepare();
  there.access.setAnswer(LibraryAccess::Answer::Denied);
  stage().settle();
  EXPECT_EQ(answers, Answers{true});
}

TEST_F(LibraryWaitTest, AnotherOneSharesItsEnd) {
  there.facts.contents = Contents{0, 40, 0, false};
  prepare();
  prepare();
  nowKnown(3);
  EXPECT_EQ(answers, (Answers{true, true}));
}

TEST_F(LibraryWaitTest, TellsOfItsBeginningAndEnd) {
  std::vector<bool> heard;
  QObject::connect(&wait, &LibraryWait::waitingChanged, &wait, [&] { heard.push_back(wait.isWaiting()); });
  there.facts.contents = Contents{0, 40, 0, false};
  prepare();
  nowKnown(3);
  EXPECT_EQ(heard, (std::vector<bool>{true, false}));
}

/// The app's own list, on a library that takes its time.
class LibraryWaitListTest : public LibraryWaitTest {
 protected:
  LibraryWaitListTest() {
    there.facts.contents = Contents{0, 40, 0, false};
    auto& asked = stage().simulatedHost().mediaLibrary;
    asked.holdsPreparations = true;
    there.click(QStringLiteral("Choose videos"));
    EXPECT_EQ(asked.preparations.size(), 1U);
    there.library.prepare([&asked](bool isReady) { asked.answerPreparations(isReady); });
    EXPECT_TRUE(LibraryStage::waitFor([this] { return wait.isShown(); }));
    stage().settle();
  }
};

TEST_F(LibraryWaitListTest, OpensAfterwards) {
  EXPECT_TRUE(stage().platformWindow()->presentations().empty());
  EXPECT_EQ(stage().named(QStringLiteral("Choose videos")), nullptr);
  nowKnown(3);
  stage().advance(UIWindow::transitionDuration);
  EXPECT_NE(stage().named(QStringLiteral("Videos for film 1")), nullptr);
}

TEST_F(LibraryWaitListTest, StaysAwayWhereItIsCancelled) {
  there.key(Qt::Key_Escape);
  stage().advance(UIWindow::transitionDuration);
  EXPECT_TRUE(stage().platformWindow()->presentations().empty());
  stage().simulatedHost().mediaLibrary.holdsPreparations = false;
  there.click(QStringLiteral("Choose videos"));
  EXPECT_EQ(stage().platformWindow()->presentations().size(), 1U) << "controls act again";
}

TEST_F(LibraryWaitTest, IsWholeAtEverySizeAndNothingMovesWhenAVideoIsFound) {
  for (const QSize size : {QSize(360, 360), QSize(390, 844), QSize(844, 390), QSize(1024, 640), QSize(1920, 1080)}) {
    SCOPED_TRACE(testing::Message() << size.width() << "x" << size.height());
    there.facts.contents = Contents{0, 4000, 0, false};
    there.facts.progress = {};
    stage().resize(size);
    prepareAndSeeIt();
    const QRectF cancelBefore = there.placeOf(cancel);
    there.facts.contents = Contents{3999, 1, 0, false};
    there.facts.progress = {3999, 4000, 3000.0};
    there.tellChange();
    EXPECT_EQ(there.placeOf(cancel), cancelBefore);
    const QRectF card = there.placeOf(title);
    EXPECT_TRUE(QRectF(QPointF(), size).contains(card));
    for (const auto& name : {cancel, QStringLiteral("Show 3,999 videos")}) {
      EXPECT_TRUE(card.contains(there.placeOf(name))) << qPrintable(name);
      EXPECT_GE(there.placeOf(name).height(), 44);
      EXPECT_LT(stage().named(name)->property("titleWidth").toReal(), there.placeOf(name).width() - 16);
    }
    there.key(Qt::Key_Escape);
  }
}

}  // namespace
}  // namespace desktop
