#include "platform/avfoundation/AVAsset.h"

#include "tests/unit/foundation/BarePlatform.h"

#include <gmock/gmock.h>

#include <limits>

using host::TrackKind;
using testing::ElementsAre;

namespace {

constexpr const char* address = "file:///videos/a.mp4";

class AVAssetTest : public BarePlatform {
 protected:
  std::vector<int> tracks(const char* mediaType) const {
    std::vector<int> identifiers;
    for (const auto& track : asset->tracksWithMediaType(mediaType)) identifiers.push_back(track->trackID());
    return identifiers;
  }

  host::MediaFacts& facts = host.mediaEngine.factsByUrl[address];
  const Strong<AVAsset> asset = make<AVAsset>(NSURL::URLWithString(address));
};

TEST_F(AVAssetTest, KnowsItsAddress) {
  EXPECT_EQ(asset->URL()->absoluteString(), address);
}

TEST_F(AVAssetTest, IsLookedIntoWhenFirstAskedAndOnlyOnce) {
  facts.duration = 20;
  EXPECT_EQ(CMTimeGetSeconds(asset->duration()), 20);
  facts.duration = 30;
  facts.hasProtectedContent = true;
  EXPECT_EQ(CMTimeGetSeconds(asset->duration()), 20);
  EXPECT_FALSE(asset->hasProtectedContent());
}

TEST_F(AVAssetTest, TellsWhetherItIsProtected) {
  facts.hasProtectedContent = true;
  EXPECT_TRUE(asset->hasProtectedContent());
}

TEST_F(AVAssetTest, KeepsTheFractionOfItsDuration) {
  facts.duration = 3725.9;
  EXPECT_NEAR(CMTimeGetSeconds(asset->duration()), 3725.9, 0.000001);
}

TEST_F(AVAssetTest, ItsDurationIsAlwaysFinite) {
  for (const double unknown :
       {0.0, -1.0, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
    facts.duration = unknown;
    EXPECT_EQ(make<AVAsset>(NSURL::URLWithString(address))->duration(), kCMTimeZero) << unknown;
  }
}

TEST_F(AVAssetTest, ListsItsTracksByKindInFileOrder) {
  facts.tracks = {{4, TrackKind::Audio}, {1, TrackKind::Video}, {2, TrackKind::Audio}, {3, TrackKind::Other}};
  EXPECT_THAT(tracks(AVMediaTypeAudio), ElementsAre(4, 2));
  EXPECT_THAT(tracks(AVMediaTypeVideo), ElementsAre(1));
}

TEST_F(AVAssetTest, AFileThatCannotBeReadHasNoTracks) {
  facts = {};
  EXPECT_THAT(tracks(AVMediaTypeAudio), ElementsAre());
  EXPECT_EQ(asset->duration(), kCMTimeZero);
}

}  // namespace
