#include "tests/host/qtquick/ScreenStage.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QTest>

namespace {

/// Counts what a button of its own on the main screen sends.
class Counter final : public NSObject {
 public:
  void pressed() { ++presses; }
  int presses = 0;
};

class ButtonTest : public testing::Test {
 protected:
  ButtonTest() {
    button->setTitle_forState("Count", UIControlState::Normal);
    button->setFrame({{300, 100}, {120, 48}});
    button->addTarget_action_forControlEvents(counter, &Counter::pressed, UIControlEvents::TouchUpInside);
    stage.event([&] { stage.screen().view()->addSubview(button); });
  }

  QQuickItem* item() { return stage.named("Count"); }

  ScreenStage stage;
  Strong<Counter> counter = make<Counter>();
  Strong<UIButton> button = make<UIButton>();
};

}  // namespace

TEST_F(ButtonTest, AClickSendsItsActionOnce) {
  QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, middleOf(*item()));
  EXPECT_EQ(counter->presses, 1);
}

TEST_F(ButtonTest, ATouchSendsItsActionOnce) {
  const std::unique_ptr<QPointingDevice> finger(QTest::createTouchDevice());
  QTest::touchEvent(&stage.window(), finger.get()).press(0, middleOf(*item()));
  EXPECT_EQ(counter->presses, 0);
  QTest::touchEvent(&stage.window(), finger.get()).release(0, middleOf(*item()));
  EXPECT_EQ(counter->presses, 1);
}

TEST_F(ButtonTest, AFingerThatLeavesItSendsNothing) {
  const std::unique_ptr<QPointingDevice> finger(QTest::createTouchDevice());
  const QPoint outside = middleOf(*item()) + QPoint(0, 120);
  QTest::touchEvent(&stage.window(), finger.get()).press(0, middleOf(*item()));
  QTest::touchEvent(&stage.window(), finger.get()).move(0, outside);
  QTest::touchEvent(&stage.window(), finger.get()).release(0, outside);
  EXPECT_EQ(counter->presses, 0);
}

TEST_F(ButtonTest, AFingerThatIsLiftedLeavesNothingHovered) {
  const auto isHovered = [this] { return item()->property("hovered").toBool(); };
  QTest::mouseMove(&stage.window(), {1, 1});
  QTest::mouseMove(&stage.window(), middleOf(*item()));
  ASSERT_TRUE(isHovered());
  const std::unique_ptr<QPointingDevice> finger(QTest::createTouchDevice());
  QTest::touchEvent(&stage.window(), finger.get()).press(0, middleOf(*item()));
  QTest::touchEvent(&stage.window(), finger.get()).release(0, middleOf(*item()));
  EXPECT_FALSE(isHovered());
  QTest::mouseMove(&stage.window(), middleOf(*item()) + QPoint(1, 0));
  EXPECT_TRUE(isHovered());
}

TEST_F(ButtonTest, SpaceReturnAndEnterSendItsActionOnceEach) {
  item()->forceActiveFocus(Qt::TabFocusReason);
  int expected = 0;
  for (const auto key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
    QTest::keyClick(&stage.window(), key);
    EXPECT_EQ(counter->presses, ++expected);
  }
}

TEST_F(ButtonTest, AssistiveTechnologySendsItsActionOnce) {
  auto* const interface = QAccessible::queryAccessibleInterface(item());
  ASSERT_NE(interface->actionInterface(), nullptr);
  interface->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(counter->presses, 1);
}

TEST_F(ButtonTest, APressIsATurnOfItsOwn) {
  stage.load(1);
  auto& engine = stage.engine().recorded();
  engine.takeCalls();
  QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, middleOf(*stage.named("Pause film 1")));
  EXPECT_EQ(engine.takeCalls(), (std::vector<std::string>{"film.mp4 audio pause", "film.mp4 video pause", "commit"}));
}

TEST_F(ButtonTest, BeneathASheetNothingReachesIt) {
  auto* const before = item();
  const QPoint place = middleOf(*before);
  ASSERT_TRUE(stage.openList());
  EXPECT_EQ(item(), nullptr);
  QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, place);
  QAccessible::queryAccessibleInterface(before)->actionInterface()->doAction(
      QAccessibleActionInterface::pressAction());
  EXPECT_EQ(counter->presses, 0);
}

TEST_F(ButtonTest, WhileAScreenIsOnItsWayNothingReachesIt) {
  const QPoint place = middleOf(*item());
  auto* const choose = stage.named("Choose videos");
  QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, middleOf(*choose));
  stage.simulatedHost().mainLoop.turn();
  QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, place);
  EXPECT_EQ(counter->presses, 0);
}

TEST_F(ButtonTest, AHiddenOneIsGoneForEveryone) {
  const QPoint place = middleOf(*item());
  stage.event([&] { button->setHidden(true); });
  EXPECT_EQ(item(), nullptr);
  QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, place);
  EXPECT_EQ(counter->presses, 0);
}
