#include "platform/coreanimation/CALayer.h"

#include "platform/uikit/UIView.h"
#include "tests/unit/foundation/BarePlatform.h"

#include <gmock/gmock.h>

using testing::ElementsAre;

namespace {

class CALayerTest : public BarePlatform {
 protected:
  const Strong<CALayer> layer = make<CALayer>();
  const Strong<CALayer> first = make<CALayer>();
  const Strong<CALayer> second = make<CALayer>();
  const Strong<CALayer> third = make<CALayer>();
};

TEST_F(CALayerTest, HasNoListBeforeItsFirstSublayer) {
  EXPECT_EQ(layer->sublayers(), std::nullopt);
}

TEST_F(CALayerTest, LaterSublayersLieAboveEarlierOnes) {
  layer->addSublayer(first);
  layer->addSublayer(second);
  EXPECT_THAT(*layer->sublayers(), ElementsAre(first, second));
  EXPECT_EQ(first->superlayer(), layer);
}

TEST_F(CALayerTest, TakesASublayerAtAPlaceCountedFromTheBottom) {
  layer->addSublayer(first);
  layer->insertSublayer_atIndex(second, 0);
  layer->insertSublayer_atIndex(third, 1);
  EXPECT_THAT(*layer->sublayers(), ElementsAre(second, third, first));
}

TEST_F(CALayerTest, APlaceBeyondTheTopIsTheTop) {
  layer->addSublayer(first);
  layer->insertSublayer_atIndex(second, 17);
  EXPECT_THAT(*layer->sublayers(), ElementsAre(first, second));
}

TEST_F(CALayerTest, ASublayerIsInOnePlaceOnly) {
  const auto other = make<CALayer>();
  layer->addSublayer(first);
  layer->addSublayer(second);
  layer->addSublayer(first);
  EXPECT_THAT(*layer->sublayers(), ElementsAre(second, first));
  other->addSublayer(first);
  EXPECT_THAT(*layer->sublayers(), ElementsAre(second));
  EXPECT_EQ(first->superlayer(), other);
}

TEST_F(CALayerTest, LosesARemovedSublayer) {
  layer->addSublayer(first);
  layer->addSublayer(second);
  first->removeFromSuperlayer();
  EXPECT_THAT(*layer->sublayers(), ElementsAre(second));
  EXPECT_EQ(first->superlayer(), nullptr);
}

TEST_F(CALayerTest, RemovedAgainNothingHappens) {
  layer->addSublayer(first);
  first->removeFromSuperlayer();
  first->removeFromSuperlayer();
  EXPECT_EQ(first->superlayer(), nullptr);
}

TEST_F(CALayerTest, AListThatWasAskedForMayBeRemovedWhileItIsWalked) {
  for (const auto& sublayer : {first, second, third}) layer->addSublayer(sublayer);
  const auto sublayers = layer->sublayers();
  for (const auto& sublayer : *sublayers) sublayer->removeFromSuperlayer();
  EXPECT_EQ(layer->sublayers(), std::nullopt);
}

TEST_F(CALayerTest, KeepsItsSublayersButNotItsSuperlayer) {
  auto above = make<CALayer>();
  const Weak<CALayer> weak = above;
  above->addSublayer(first);
  above = nullptr;
  EXPECT_TRUE(weak.expired());
  EXPECT_EQ(first->superlayer(), nullptr);
}

TEST_F(CALayerTest, IsSeeThroughUnlessColoured) {
  EXPECT_EQ(layer->backgroundColor(), UIColor::clearColor());
  layer->setBackgroundColor(UIColor::grayColor());
  EXPECT_EQ(layer->backgroundColor(), UIColor::grayColor());
}

TEST_F(CALayerTest, HoldsItsCornersAndItsBorder) {
  layer->setCornerRadius(8);
  layer->setBorderWidth(2);
  layer->setBorderColor(UIColor::whiteColor());
  EXPECT_EQ(layer->cornerRadius(), 8);
  EXPECT_EQ(layer->borderWidth(), 2);
  EXPECT_EQ(layer->borderColor(), UIColor::whiteColor());
}

TEST_F(CALayerTest, KnowsTheViewThatDrawsThroughItWhileThereIsOne) {
  auto view = make<UIView>();
  const auto itsLayer = view->layer();
  EXPECT_EQ(itsLayer->view(), view.get());
  view = nullptr;
  EXPECT_EQ(itsLayer->view(), nullptr);
  EXPECT_EQ(layer->view(), nullptr);
}

}  // namespace
