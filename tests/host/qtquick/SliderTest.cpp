#include "tests/host/qtquick/ScreenStage.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QTest>
#include <QWheelEvent>

namespace {

/// Records the values that a slider of its own on the main screen sends.
class Recorder final : public NSObject {
 public:
  void moved(const Strong<UIControl>& sender) {
    values.push_back(std::static_pointer_cast<UISlider>(sender)->value());
  }
  std::vector<float> values;
};

class SliderTest : public testing::Test {
 protected:
  SliderTest() {
    slider->setMaximumValue(100);
    slider->setStep(1);
    slider->setAccessibilityLabel("Amount");
    slider->setFrame({{200, 100}, {222, 48}});  // 200 points from one end of the handle's way to the other
    slider->addTarget_action_forControlEvents(recorder, &Recorder::moved, UIControlEvents::ValueChanged);
    stage.event([&] { stage.screen().view()->addSubview(slider); });
  }

  QQuickItem* item() { return stage.named("Amount"); }
  double shown() { return item()->property("value").toDouble(); }
  QPoint at(double value) const { return {static_cast<int>(200 + 11 + 2 * value), 124}; }
  /// 120 is one notch.
  void turnWheel(int angle) {
    const QPointF place = middleOf(*item());
    QWheelEvent wheel(place, place, {}, {0, angle}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&stage.window(), &wheel);
  }
  QAccessibleValueInterface* value() { return QAccessible::queryAccessibleInterface(item())->valueInterface(); }

  ScreenStage stage;
  Strong<Recorder> recorder = make<Recorder>();
  Strong<UISlider> slider = make<UISlider>();
};

}  // namespace

TEST_F(SliderTest, ShowsTheValueThatCodeSets) {
  stage.event([&] { slider->setValue(42); });
  EXPECT_DOUBLE_EQ(shown(), 42);
  EXPECT_TRUE(recorder->values.empty());
}

TEST_F(SliderTest, ADragSendsWhatItPassesAndTracksFromPressToRelease) {
  QTest::mousePress(&stage.window(), Qt::LeftButton, {}, at(0));
  EXPECT_TRUE(slider->isTracking());
  QTest::mouseMove(&stage.window(), at(30));
  QTest::mouseMove(&stage.window(), at(60));
  EXPECT_TRUE(slider->isTracking());
  QTest::mouseRelease(&stage.window(), Qt::LeftButton, {}, at(60));
  EXPECT_FALSE(slider->isTracking());
  EXPECT_EQ(slider->value(), 60);
  EXPECT_EQ(recorder->values, (std::vector<float>{30, 60}));
}

TEST_F(SliderTest, AFingerDragsIt) {
  const std::unique_ptr<QPointingDevice> finger(QTest::createTouchDevice());
  QTest::touchEvent(&stage.window(), finger.get()).press(0, at(0));
  for (const double value : {10.0, 20.0, 40.0}) QTest::touchEvent(&stage.window(), finger.get()).move(0, at(value));
  EXPECT_TRUE(slider->isTracking());
  QTest::touchEvent(&stage.window(), finger.get()).release(0, at(40));
  EXPECT_FALSE(slider->isTracking());
  EXPECT_EQ(slider->value(), 40);
}

TEST_F(SliderTest, ATouchOnTheTrackSetsItThere) {
  const std::unique_ptr<QPointingDevice> finger(QTest::createTouchDevice());
  QTest::touchEvent(&stage.window(), finger.get()).press(0, at(70));
  QTest::touchEvent(&stage.window(), finger.get()).release(0, at(70));
  EXPECT_EQ(slider->value(), 70);
  EXPECT_EQ(recorder->values, (std::vector<float>{70}));
}

TEST_F(SliderTest, OneThatIsNotContinuousSendsOnlyTheEnd) {
  slider->setContinuous(false);
  QTest::mousePress(&stage.window(), Qt::LeftButton, {}, at(0));
  QTest::mouseMove(&stage.window(), at(30));
  QTest::mouseMove(&stage.window(), at(60));
  EXPECT_TRUE(recorder->values.empty());
  QTest::mouseRelease(&stage.window(), Qt::LeftButton, {}, at(60));
  EXPECT_EQ(recorder->values, (std::vector<float>{60}));
}

TEST_F(SliderTest, StaysUnderTheFingerWhateverCodeSetsMeanwhile) {
  QTest::mousePress(&stage.window(), Qt::LeftButton, {}, at(0));
  QTest::mouseMove(&stage.window(), at(50));
  stage.event([&] { slider->setValue(7); });
  EXPECT_NEAR(shown(), 50, 0.5);
  QTest::mouseRelease(&stage.window(), Qt::LeftButton, {}, at(50));
  stage.settle();
  EXPECT_EQ(shown(), slider->value());
}

TEST_F(SliderTest, AFingerOnOneThatTakesNoInputMovesNothing) {
  const QPoint start = at(0);
  QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, middleOf(*stage.named("Choose videos")));
  stage.simulatedHost().mainLoop.turn();  // the list is on its way
  QTest::mousePress(&stage.window(), Qt::LeftButton, {}, start);
  QTest::mouseMove(&stage.window(), at(50));
  QTest::mouseRelease(&stage.window(), Qt::LeftButton, {}, at(50));
  EXPECT_EQ(slider->value(), 0);
  EXPECT_TRUE(recorder->values.empty());
}

TEST_F(SliderTest, KeysMoveItByStepsPagesAndToTheEnds) {
  item()->forceActiveFocus(Qt::TabFocusReason);
  const std::vector<std::pair<Qt::Key, float>> keys{{Qt::Key_Right, 1}, {Qt::Key_Up, 2},      {Qt::Key_Left, 1},
                                                    {Qt::Key_Down, 0},  {Qt::Key_PageUp, 10}, {Qt::Key_PageDown, 0},
                                                    {Qt::Key_End, 100}, {Qt::Key_Home, 0}};
  for (const auto& [key, expected] : keys) {
    QTest::keyClick(&stage.window(), key);
    stage.settle();
    EXPECT_EQ(slider->value(), expected);
    EXPECT_EQ(shown(), expected);
  }
  EXPECT_EQ(recorder->values.size(), keys.size());
}

TEST_F(SliderTest, TheWheelMovesIt) {
  turnWheel(120);
  EXPECT_EQ(slider->value(), 5);
  EXPECT_EQ(recorder->values, (std::vector<float>{5}));
}

TEST_F(SliderTest, ATouchpadMovesItAsFarAsAWheelHoweverSlowly) {
  for (int part = 0; part < 24; ++part) turnWheel(10);
  EXPECT_EQ(slider->value(), 10);
  for (int part = 0; part < 12; ++part) turnWheel(-10);
  EXPECT_EQ(slider->value(), 5);
}

TEST_F(SliderTest, ATouchpadMovesOneWithoutStepsByAnyDistance) {
  slider->setStep(0);
  turnWheel(12);
  EXPECT_FLOAT_EQ(slider->value(), 1);
}

TEST_F(SliderTest, AssistiveTechnologyReadsAndSetsIt) {
  stage.event([&] { slider->setValue(25); });
  ASSERT_NE(value(), nullptr);
  EXPECT_EQ(value()->currentValue().toDouble(), 25);
  EXPECT_EQ(value()->maximumValue().toDouble(), 100);
  EXPECT_EQ(value()->minimumValue().toDouble(), 0);
  value()->setCurrentValue(33.4);
  stage.settle();
  EXPECT_EQ(slider->value(), 33);
  EXPECT_EQ(value()->currentValue().toDouble(), 33);
  EXPECT_EQ(recorder->values, (std::vector<float>{33}));
}

TEST_F(SliderTest, AssistiveTechnologyStepsIt) {
  auto* const actions = QAccessible::queryAccessibleInterface(item())->actionInterface();
  actions->doAction(QAccessibleActionInterface::increaseAction());
  actions->doAction(QAccessibleActionInterface::increaseAction());
  actions->doAction(QAccessibleActionInterface::decreaseAction());
  EXPECT_EQ(slider->value(), 1);
}

TEST(PositionSlider, TellsTheTime) {
  ScreenStage stage;
  stage.load(1);
  stage.event([&] {
    stage.screen().progressSlider1->setMaximumValue(3600);
    stage.screen().progressSlider1->setValue(65);
  });
  auto* const item = stage.named("Position in film 1");
  ASSERT_NE(item, nullptr);
  EXPECT_EQ(QAccessible::queryAccessibleInterface(item)->text(QAccessible::Description),
            "1 minute 5 seconds of 1 hour");
}

TEST(PositionSlider, ElapsedTimeIsTheNearestSecondAndNeverBeyondTheLength) {
  ScreenStage stage;
  stage.load(1);
  const auto slider = stage.screen().progressSlider1;
  const auto elapsed = [&] {
    auto* const node = stage.named("Position in film 1")->property("node").value<QObject*>();
    return node->property("elapsed").toString();
  };
  stage.event([&] { slider->setValue(2.95F); });
  EXPECT_EQ(elapsed(), "0:03");
  stage.event([&] { slider->setMaximumValue(12.4F); });
  stage.event([&] { slider->setValue(12.4F); });
  EXPECT_EQ(elapsed(), "0:12");
}
