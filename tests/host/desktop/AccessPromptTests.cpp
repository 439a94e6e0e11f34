#include "hosts/desktop/AccessPrompt.h"

#include "platform/uikit/UIAlertController.h"
#include "tests/host/qtquick/ScreenStage.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QTemporaryDir>
#include <QTest>

namespace desktop {
namespace {

using Answer = LibraryAccess::Answer;

const auto question = QStringLiteral("\"Quillop\" would like to access your media library");

class AccessPromptTest : public testing::Test {
 protected:
  AccessPromptTest() {
    stage.window().requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&stage.window()));
  }

  void ask() {
    prompt.ask([this](std::optional<Answer> answer) { answers.push_back(answer); });
    stage.settle();
  }
  void key(Qt::Key key) {
    QTest::keyClick(&stage.window(), key);
    stage.settle();
  }
  void click(const QString& name) {
    QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, middleOf(*stage.named(name)));
    stage.settle();
  }
  void pressAsAssistiveTechnology(const QString& name) {
    QAccessible::queryAccessibleInterface(stage.named(name))
        ->actionInterface()
        ->doAction(QAccessibleActionInterface::pressAction());
    stage.settle();
  }
  void presentAlert() {
    const auto alert = UIAlertController::alertControllerWithTitle_message_preferredStyle(
        "Alert of the app", "Message", UIAlertControllerStyle::Alert);
    alert->addAction(UIAlertAction::actionWithTitle_style_handler("Understood", UIAlertActionStyle::Cancel, nullptr));
    stage.event([&] { stage.screen().presentViewController_animated_completion(alert, true); });
    stage.advance(UIWindow::transitionDuration);
  }

  QTemporaryDir folder;
  LibraryAccess access{folder.filePath(QStringLiteral("library.json")), {}, folder.path()};
  ScreenStage stage;
  Layers layers{stage.host()};
  AccessPrompt prompt{layers, access};
  std::vector<std::optional<Answer>> answers;
};

using Answers = std::vector<std::optional<Answer>>;

TEST_F(AccessPromptTest, SaysWhoAsksAndWhy) {
  ask();
  auto* const box = stage.named(question);
  ASSERT_NE(box, nullptr);
  auto* const interface = QAccessible::queryAccessibleInterface(box);
  EXPECT_EQ(interface->role(), QAccessible::Dialog);
  EXPECT_TRUE(interface->text(QAccessible::Description).contains(QStringLiteral("videos folder")));
  EXPECT_NE(stage.named(QStringLiteral("Allow")), nullptr);
  EXPECT_NE(stage.named(QStringLiteral("Don't Allow")), nullptr);
}

TEST_F(AccessPromptTest, AllowGrants) {
  ask();
  click(QStringLiteral("Allow"));
  EXPECT_EQ(answers, Answers{Answer::Authorised});
  EXPECT_FALSE(prompt.isShown());
  EXPECT_EQ(stage.named(question), nullptr);
}

TEST_F(AccessPromptTest, DontAllowRefuses) {
  ask();
  click(QStringLiteral("Don't Allow"));
  EXPECT_EQ(answers, Answers{Answer::Denied});
  EXPECT_FALSE(prompt.isShown());
}

TEST_F(AccessPromptTest, AssistiveTechnologyAnswers) {
  ask();
  pressAsAssistiveTechnology(QStringLiteral("Don't Allow"));
  ask();
  pressAsAssistiveTechnology(QStringLiteral("Allow"));
  EXPECT_EQ(answers, (Answers{Answer::Denied, Answer::Authorised}));
}

TEST_F(AccessPromptTest, KeyThatWasMeantForTheAppAnswersNothing) {
  ask();
  key(Qt::Key_Return);
  key(Qt::Key_Space);
  EXPECT_TRUE(prompt.isShown());
  EXPECT_TRUE(answers.empty());
}

TEST_F(AccessPromptTest, KeyboardAnswers) {
  ask();
  key(Qt::Key_Tab);
  key(Qt::Key_Return);
  ask();
  key(Qt::Key_Tab);
  key(Qt::Key_Tab);
  key(Qt::Key_Space);
  ask();
  key(Qt::Key_Tab);
  key(Qt::Key_Right);
  key(Qt::Key_Enter);
  EXPECT_EQ(answers, (Answers{Answer::Denied, Answer::Authorised, Answer::Authorised}));
}

TEST_F(AccessPromptTest, TabStaysInside) {
  ask();
  for (int step = 0; step < 6; ++step) {
    key(Qt::Key_Tab);
    const auto name =
        QAccessible::queryAccessibleInterface(stage.window().activeFocusItem())->text(QAccessible::Name);
    EXPECT_TRUE(name == QStringLiteral("Allow") || name == QStringLiteral("Don't Allow")) << qPrintable(name);
  }
}

TEST_F(AccessPromptTest, EscapeAndBackCloseItUnanswered) {
  for (const auto leave : {Qt::Key_Escape, Qt::Key_Back}) {
    ask();
    key(Qt::Key_Tab);
    key(leave);
    EXPECT_FALSE(prompt.isShown());
  }
  EXPECT_EQ(answers, (Answers{std::nullopt, std::nullopt}));
}

TEST_F(AccessPromptTest, SecondQuestionWhileItIsShownIsNotAsked) {
  ask();
  ask();
  key(Qt::Key_Escape);
  EXPECT_EQ(answers, Answers{std::nullopt});
  EXPECT_FALSE(prompt.isShown());
}

TEST_F(AccessPromptTest, OnlyTheFirstOfTwoPressesCounts) {
  ask();
  prompt.allow();
  prompt.deny();
  stage.settle();
  EXPECT_EQ(answers, Answers{Answer::Authorised});
}

TEST_F(AccessPromptTest, ClosesUnansweredWhereTheAnswerIsGivenElsewhere) {
  ask();
  access.setAnswer(Answer::Denied);
  stage.settle();
  EXPECT_FALSE(prompt.isShown());
  EXPECT_EQ(answers, Answers{std::nullopt});
}

TEST_F(AccessPromptTest, NothingBeneathTakesInput) {
  const QPoint choose = middleOf(*stage.named(QStringLiteral("Choose videos")));
  auto* const button = QAccessible::queryAccessibleInterface(stage.named(QStringLiteral("Choose videos")));
  ask();
  EXPECT_EQ(stage.named(QStringLiteral("Choose videos")), nullptr);
  QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, choose);
  auto* const finger = QTest::createTouchDevice();
  QTest::touchEvent(&stage.window(), finger).press(0, choose);
  QTest::touchEvent(&stage.window(), finger).release(0, choose);
  ASSERT_TRUE(button->isValid());
  button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  stage.settle();
  EXPECT_TRUE(stage.takeLines().empty());
  key(Qt::Key_Escape);
  QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, choose);
  stage.settle();
  EXPECT_FALSE(stage.takeLines().empty());
}

TEST_F(AccessPromptTest, LiesOverAnAlertWhichEscapeDoesNotClose) {
  presentAlert();
  ask();
  EXPECT_EQ(stage.named(QStringLiteral("Understood")), nullptr);
  key(Qt::Key_Escape);
  EXPECT_FALSE(prompt.isShown());
  EXPECT_EQ(stage.platformWindow()->presentations().size(), 1U);
  EXPECT_NE(stage.named(QStringLiteral("Understood")), nullptr);
}

TEST_F(AccessPromptTest, AlertThatComesMeanwhileIsThereAfterwardsAndHasTheFocus) {
  ask();
  presentAlert();
  EXPECT_EQ(stage.named(QStringLiteral("Understood")), nullptr);
  key(Qt::Key_Tab);
  key(Qt::Key_Tab);
  key(Qt::Key_Return);
  EXPECT_EQ(answers, Answers{Answer::Authorised});
  EXPECT_NE(stage.named(QStringLiteral("Understood")), nullptr);
  key(Qt::Key_Return);
  stage.advance(UIWindow::transitionDuration);
  EXPECT_TRUE(stage.platformWindow()->presentations().empty());
}

TEST_F(AccessPromptTest, KeyboardGoesOnWhereItWas) {
  const auto list = stage.openList();
  auto* const before = stage.window().activeFocusItem();
  ask();
  EXPECT_NE(stage.window().activeFocusItem(), before);
  key(Qt::Key_Escape);
  EXPECT_EQ(stage.window().activeFocusItem(), before);
}

TEST_F(AccessPromptTest, FilmsGoOnBeneathIt) {
  stage.load(1);
  stage.takeLines();
  ask();
  stage.advance(3);
  key(Qt::Key_Escape);
  EXPECT_NE(stage.named(QStringLiteral("Pause film 1")), nullptr);
}

TEST_F(AccessPromptTest, IsWholeAtEverySize) {
  for (const QSize size : {QSize(360, 360), QSize(390, 844), QSize(844, 390), QSize(1920, 1080)}) {
    stage.resize(size);
    ask();
    auto* const box = stage.named(question);
    ASSERT_NE(box, nullptr);
    const QRectF there = box->mapRectToScene(box->boundingRect());
    EXPECT_TRUE(QRectF(QPointF(), size).contains(there)) << size.width() << "x" << size.height();
    for (const auto& name : {QStringLiteral("Allow"), QStringLiteral("Don't Allow")}) {
      EXPECT_GE(stage.named(name)->height(), 44);
      EXPECT_TRUE(there.contains(stage.named(name)->mapRectToScene(stage.named(name)->boundingRect())));
    }
    key(Qt::Key_Escape);
  }
}

}  // namespace
}  // namespace desktop
