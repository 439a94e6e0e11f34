#include "platform/uikit/UISlider.h"

#include "tests/unit/uikit/WindowFixture.h"

#include <gmock/gmock.h>

#include <limits>

using testing::ElementsAre;

namespace {

TEST(UISlider, RunsFromZeroToOneAndStandsAtZeroAtFirst) {
  const auto slider = make<UISlider>();
  EXPECT_EQ(slider->minimumValue(), 0);
  EXPECT_EQ(slider->maximumValue(), 1);
  EXPECT_EQ(slider->value(), 0);
  EXPECT_EQ(slider->step(), 0);
  EXPECT_TRUE(slider->isContinuous());
  EXPECT_FALSE(slider->isTracking());
}

TEST(UISlider, HoldsItsValueInsideItsRange) {
  const auto slider = make<UISlider>();
  slider->setMaximumValue(60);
  slider->setValue(61);
  EXPECT_EQ(slider->value(), 60);
  slider->setValue(-1);
  EXPECT_EQ(slider->value(), 0);
  slider->setValue(12.5F);
  EXPECT_EQ(slider->value(), 12.5F);
}

TEST(UISlider, WhatIsNotANumberIsItsMinimum) {
  const auto slider = make<UISlider>();
  slider->setMinimumValue(0.25F);
  slider->setValue(0.5F);
  slider->setValue(std::numeric_limits<float>::quiet_NaN());
  EXPECT_EQ(slider->value(), 0.25F);
}

TEST(UISlider, ALowerMaximumTakesMinimumAndValueAlong) {
  const auto slider = make<UISlider>();
  slider->setMaximumValue(60);
  slider->setMinimumValue(30);
  slider->setValue(50);
  slider->setMaximumValue(40);
  EXPECT_EQ(slider->value(), 40);
  slider->setMaximumValue(20);
  EXPECT_EQ(slider->minimumValue(), 20);
  EXPECT_EQ(slider->value(), 20);
}

TEST(UISlider, AHigherMinimumTakesMaximumAndValueAlong) {
  const auto slider = make<UISlider>();
  slider->setMinimumValue(0.5F);
  EXPECT_EQ(slider->value(), 0.5F);
  slider->setMinimumValue(3);
  EXPECT_EQ(slider->maximumValue(), 3);
  EXPECT_EQ(slider->value(), 3);
}

TEST(UISlider, ItsMaximumMayBeZero) {
  const auto slider = make<UISlider>();
  slider->setMaximumValue(0);
  slider->setValue(5);
  EXPECT_EQ(slider->value(), 0);
}

class UISliderTest : public WindowFixture {
 protected:
  UISliderTest() { launch(); }

  UISlider& slider() const { return *root().slider; }
  void coverWithASheet() {
    event([this] { root().performSegueWithIdentifier_sender("toSheet", nullptr); });
    takeLines();
  }
};

TEST_F(UISliderTest, CodeThatSetsTheValueSendsNoAction) {
  slider().setValue(50);
  EXPECT_THAT(takeLines(), ElementsAre());
}

TEST_F(UISliderTest, AFingerMovesItAndSendsEachNewValue) {
  slider().beginTracking();
  EXPECT_TRUE(slider().isTracking());
  slider().track(10);
  slider().track(10);
  slider().track(20.5F);
  slider().endTracking();
  EXPECT_FALSE(slider().isTracking());
  EXPECT_THAT(takeLines(), ElementsAre("Root moved to 10.0", "Root moved to 20.5"));
}

TEST_F(UISliderTest, TheMediaEngineKnowsForHowLongFingersHoldSliders) {
  const auto other = make<UISlider>();
  root().view()->addSubview(other);
  slider().beginTracking();
  EXPECT_TRUE(host.mediaEngine.scrubbing);
  other->beginTracking();
  slider().endTracking();
  EXPECT_TRUE(host.mediaEngine.scrubbing);
  other->endTracking();
  EXPECT_FALSE(host.mediaEngine.scrubbing);
}

TEST_F(UISliderTest, OneThatGoesAwayUnderAFingerIsNotHeldAnyMore) {
  auto other = make<UISlider>();
  root().view()->addSubview(other);
  other->beginTracking();
  EXPECT_TRUE(host.mediaEngine.scrubbing);
  other->removeFromSuperview();
  other = nullptr;
  EXPECT_FALSE(host.mediaEngine.scrubbing);
}

TEST_F(UISliderTest, ATouchThatDoesNotMoveItSendsNothing) {
  slider().beginTracking();
  slider().endTracking();
  EXPECT_THAT(takeLines(), ElementsAre());
}

TEST_F(UISliderTest, ASliderThatIsNotContinuousSendsItsValueWhenTheFingerIsLifted) {
  slider().setContinuous(false);
  slider().beginTracking();
  slider().track(10);
  slider().track(20);
  EXPECT_THAT(takeLines(), ElementsAre());
  slider().endTracking();
  EXPECT_THAT(takeLines(), ElementsAre("Root moved to 20.0"));
  slider().beginTracking();
  slider().endTracking();
  EXPECT_THAT(takeLines(), ElementsAre());
}

TEST_F(UISliderTest, WithoutAFingerNothingIsTracked) {
  slider().track(10);
  slider().endTracking();
  EXPECT_EQ(slider().value(), 0);
  EXPECT_THAT(takeLines(), ElementsAre());
}

TEST_F(UISliderTest, APersonMovesItByWholeStepsAndCodeByAnyValue) {
  slider().setStep(1);
  slider().beginTracking();
  slider().track(12.4F);
  slider().track(12.6F);
  slider().endTracking();
  EXPECT_THAT(takeLines(), ElementsAre("Root moved to 12.0", "Root moved to 13.0"));
  slider().setValue(3.7F);
  EXPECT_EQ(slider().value(), 3.7F);
}

TEST_F(UISliderTest, TheLastStepEndsAtTheMaximum) {
  slider().setMaximumValue(12.5F);
  slider().setStep(1);
  slider().adjust(12.5F);
  EXPECT_EQ(slider().value(), 12.5F);
}

TEST_F(UISliderTest, AKeySetsItAtOnce) {
  slider().adjust(30);
  slider().adjust(30);
  EXPECT_FALSE(slider().isTracking());
  EXPECT_THAT(takeLines(), ElementsAre("Root moved to 30.0"));
}

TEST_F(UISliderTest, AKeySendsTheActionOfASliderThatIsNotContinuousToo) {
  slider().setContinuous(false);
  slider().adjust(30);
  EXPECT_THAT(takeLines(), ElementsAre("Root moved to 30.0"));
}

TEST_F(UISliderTest, AFingerStaysInsideTheRange) {
  slider().beginTracking();
  slider().track(500);
  slider().track(-500);
  EXPECT_THAT(takeLines(), ElementsAre("Root moved to 100.0", "Root moved to 0.0"));
}

TEST_F(UISliderTest, BeneathAnotherScreenItCannotBeMoved) {
  coverWithASheet();
  slider().beginTracking();
  EXPECT_FALSE(slider().isTracking());
  slider().adjust(30);
  EXPECT_EQ(slider().value(), 0);
  EXPECT_THAT(takeLines(), ElementsAre());
}

TEST_F(UISliderTest, AFingerThatIsOnItWhenAScreenComesMovesItNoFurtherButIsLifted) {
  slider().beginTracking();
  slider().track(10);
  coverWithASheet();
  slider().track(20);
  EXPECT_EQ(slider().value(), 10);
  EXPECT_TRUE(slider().isTracking());
  slider().endTracking();
  EXPECT_FALSE(slider().isTracking());
  EXPECT_THAT(takeLines(), ElementsAre());
}

TEST_F(UISliderTest, HiddenItCannotBeMoved) {
  slider().setHidden(true);
  slider().adjust(30);
  EXPECT_EQ(slider().value(), 0);
}

TEST_F(UISliderTest, EveryChangeThatIsDrawnIsNoted) {
  const auto isNoted = [this](const std::function<void()>& change) {
    window()->takeChanges();
    change();
    return window()->takeChanges() == std::vector<Strong<UIView>>{root().slider};
  };
  EXPECT_TRUE(isNoted([this] { slider().setValue(50); }));
  EXPECT_TRUE(isNoted([this] { slider().setMaximumValue(90); }));
  EXPECT_TRUE(isNoted([this] { slider().setMinimumValue(10); }));
  EXPECT_TRUE(isNoted([this] { slider().setTintColor(UIColor::grayColor()); }));
  EXPECT_TRUE(isNoted([this] { slider().beginTracking(); }));
  EXPECT_TRUE(isNoted([this] { slider().endTracking(); }));
}

}  // namespace
