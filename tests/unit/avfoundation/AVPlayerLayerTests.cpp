#include "platform/avfoundation/AVPlayerLayer.h"

#include "tests/unit/foundation/BarePlatform.h"

#include <gmock/gmock.h>

using testing::IsEmpty;
using testing::SizeIs;

namespace {

class AVPlayerLayerTest : public BarePlatform {
 protected:
  AVPlayerLayerTest() { layer->setFrame({{0, 0}, {320, 240}}); }

  Strong<CALayer> content() const { return layer->sublayers()->front(); }

  Strong<AVPlayer> player = AVPlayer::playerWithURL(NSURL::URLWithString("file:///videos/a.mp4"));
  const Strong<AVPlayerLayer> layer = AVPlayerLayer::playerLayerWithPlayer(player);
};

TEST_F(AVPlayerLayerTest, HasOneContentLayerOpaqueAndBlackOverItsBounds) {
  ASSERT_TRUE(layer->sublayers());
  ASSERT_THAT(*layer->sublayers(), SizeIs(1));
  EXPECT_EQ(content()->backgroundColor(), UIColor::blackColor());
  EXPECT_EQ(content()->frame(), CGRectMake(0, 0, 320, 240));
}

TEST_F(AVPlayerLayerTest, ItsContentFollowsItsSizeButNotItsPlace) {
  layer->setFrame(CGRectMake(10, 20, 640, 480));
  EXPECT_EQ(layer->frame(), CGRectMake(10, 20, 640, 480));
  EXPECT_EQ(content()->frame(), CGRectMake(0, 0, 640, 480));
}

TEST_F(AVPlayerLayerTest, LeavesTheFramesOfOtherSublayersAlone) {
  const auto mark = make<CALayer>();
  mark->setFrame(CGRectMake(1, 2, 3, 4));
  layer->addSublayer(mark);
  layer->setFrame(CGRectMake(0, 0, 640, 480));
  EXPECT_EQ(mark->frame(), CGRectMake(1, 2, 3, 4));
}

TEST_F(AVPlayerLayerTest, ItsContentShowsThePicturesOfThePlayer) {
  const auto shown = std::dynamic_pointer_cast<AVPlayerContentLayer>(content());
  ASSERT_TRUE(shown);
  EXPECT_EQ(shown->pictures(), player->pictures());
}

TEST_F(AVPlayerLayerTest, KeepsThePlayer) {
  const Weak<AVPlayer> weak = player;
  player = nullptr;
  EXPECT_FALSE(weak.expired());
  EXPECT_EQ(layer->player(), weak.lock());
}

TEST_F(AVPlayerLayerTest, EmptiedItHasAnEmptyListAndNotNone) {
  content()->removeFromSuperlayer();
  ASSERT_TRUE(layer->sublayers());
  EXPECT_THAT(*layer->sublayers(), IsEmpty());
}

TEST_F(AVPlayerLayerTest, EmptiedItReleasesThePlayer) {
  const Weak<AVPlayer> weak = player;
  player = nullptr;
  content()->removeFromSuperlayer();
  EXPECT_EQ(layer->player(), nullptr);
  EXPECT_TRUE(weak.expired());
  EXPECT_EQ(host.mediaEngine.player("a.mp4 video"), nullptr);
}

TEST_F(AVPlayerLayerTest, EmptiedItHoldsNoPictures) {
  const Weak<host::PictureStream> pictures = player->pictures();
  player = nullptr;
  content()->removeFromSuperlayer();
  EXPECT_TRUE(pictures.expired());
}

TEST_F(AVPlayerLayerTest, AnotherSublayerDoesNotKeepThePlayerOnceTheContentIsGone) {
  layer->addSublayer(make<CALayer>());
  content()->removeFromSuperlayer();
  EXPECT_THAT(*layer->sublayers(), SizeIs(1));
  EXPECT_EQ(layer->player(), nullptr);
}

TEST_F(AVPlayerLayerTest, RemovingAnotherSublayerLeavesThePicture) {
  const auto mark = make<CALayer>();
  layer->addSublayer(mark);
  mark->removeFromSuperlayer();
  EXPECT_EQ(layer->player(), player);
}

TEST_F(AVPlayerLayerTest, TheEndOfThePictureIsForGood) {
  const auto removed = content();
  removed->removeFromSuperlayer();
  layer->addSublayer(removed);
  EXPECT_EQ(layer->player(), nullptr);
}

TEST_F(AVPlayerLayerTest, MovedToAnotherPlaceItKeepsThePicture) {
  const auto above = make<CALayer>();
  above->addSublayer(layer);
  above->insertSublayer_atIndex(layer, 0);
  layer->removeFromSuperlayer();
  EXPECT_EQ(layer->player(), player);
}

}  // namespace
