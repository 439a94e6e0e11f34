#include "hosts/gstreamer/Overload.h"

#include "hosts/gstreamer/UsualPlugins.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <string>
#include <thread>
#include <vector>

namespace gstreamer {

namespace {

enum class Kind { Key, Needed, Disposable };

constexpr GstClockTime picture = 40 * GST_MSECOND;
constexpr GstClockTimeDiff tooLate = 600 * GST_MSECOND;
/// After this, who is too late should have caught up.
constexpr auto longEnough = std::chrono::milliseconds(550);

class OverloadTest : public testing::Test {
 protected:
  OverloadTest() {
    startGStreamer();
    decoder_ = makeElement("identity");
    pad_ = Pad(gst_element_get_static_pad(decoder_.get(), "sink"));
    overload_.lead(*decoder_);
    gst_pad_add_probe(pad_.get(), GST_PAD_PROBE_TYPE_BUFFER, seeDecoded, this, nullptr);
    const Clock clock(gst_system_clock_obtain());
    gst_element_set_clock(decoder_.get(), clock.get());
    playAt(0);
    gst_pad_send_event(pad_.get(), gst_event_new_stream_start("pictures"));
    describe("video/x-h264, alignment=au, stream-format=byte-stream");
    beginSegment();
  }
  ~OverloadTest() override { gst_element_set_state(decoder_.get(), GST_STATE_NULL); }

  void describe(const std::string& stream) {
    const Caps caps(gst_caps_from_string(stream.c_str()));
    gst_pad_send_event(pad_.get(), gst_event_new_caps(caps.get()));
  }

  void beginSegment() {
    GstSegment segment;
    gst_segment_init(&segment, GST_FORMAT_TIME);
    gst_pad_send_event(pad_.get(), gst_event_new_segment(&segment));
  }

  /// From now on it is this running time, and later.
  void playAt(GstClockTime runningTime) {
    gst_element_set_base_time(decoder_.get(), static_cast<GstClockTime>(now()) - runningTime);
    gst_element_set_state(decoder_.get(), GST_STATE_PLAYING);
  }

  void hand(Kind kind, GstClockTime time) {
    const guint8 header = kind == Kind::Key ? 0x65 : kind == Kind::Needed ? 0x41 : 0x01;
    const std::vector<guint8> bytes{0, 0, 0, 1, header, 0x9A};
    GstBuffer* buffer = gst_buffer_new_memdup(bytes.data(), bytes.size());
    GST_BUFFER_PTS(buffer) = time;
    GST_BUFFER_DURATION(buffer) = picture;
    if (kind != Kind::Key) GST_BUFFER_FLAG_SET(buffer, GST_BUFFER_FLAG_DELTA_UNIT);
    gst_pad_chain(pad_.get(), buffer);
  }

  /// Tells that decoding is late and does not catch up.
  void fallBehind() {
    overload_.note(0, tooLate);
    std::this_thread::sleep_for(longEnough);
    overload_.note(picture, tooLate);
  }

  std::vector<GstClockTime> decoded_;
  int dropped_ = 0;
  Overload overload_{[this] { ++dropped_; }};
  Element decoder_;
  Pad pad_;

 private:
  static GstPadProbeReturn seeDecoded(GstPad*, GstPadProbeInfo* info, gpointer test) {
    static_cast<OverloadTest*>(test)->decoded_.push_back(GST_BUFFER_PTS(GST_PAD_PROBE_INFO_BUFFER(info)));
    return GST_PAD_PROBE_OK;
  }
};

}  // namespace

TEST_F(OverloadTest, WhatIsInTimeIsDecodedWhole) {
  overload_.note(0, -20 * GST_MSECOND);
  for (const Kind kind : {Kind::Key, Kind::Disposable, Kind::Needed}) hand(kind, picture);
  overload_.note(picture, 30 * GST_MSECOND);
  hand(Kind::Disposable, 2 * picture);
  EXPECT_EQ(decoded_.size(), 4U);
  EXPECT_EQ(dropped_, 0);
}

TEST_F(OverloadTest, WhileItIsLateOnlyWhatNoOtherPictureNeedsIsLeftOut) {
  overload_.note(0, 60 * GST_MSECOND);
  hand(Kind::Key, picture);
  hand(Kind::Disposable, 2 * picture);
  hand(Kind::Needed, 3 * picture);
  EXPECT_EQ(decoded_, (std::vector<GstClockTime>{picture, 3 * picture}));
  EXPECT_EQ(dropped_, 1);
  overload_.note(picture, 0);
  hand(Kind::Disposable, 4 * picture);
  EXPECT_EQ(decoded_.back(), 4 * picture);
}

TEST_F(OverloadTest, OfAFormatThatDoesNotTellWhatIsNeededAllIsDecodedWhileItIsLate) {
  describe("video/x-vp9, alignment=frame");
  overload_.note(0, 60 * GST_MSECOND);
  hand(Kind::Disposable, picture);
  EXPECT_EQ(decoded_.size(), 1U);
}

TEST_F(OverloadTest, WhoDoesNotCatchUpLeapsToAKeyFrameThatIsNotLate) {
  fallBehind();
  playAt(10 * picture);
  hand(Kind::Needed, 2 * picture);
  hand(Kind::Key, 3 * picture);  // late itself
  hand(Kind::Needed, 4 * picture);
  EXPECT_TRUE(decoded_.empty());
  EXPECT_EQ(dropped_, 3);
  hand(Kind::Key, 100 * picture);
  hand(Kind::Disposable, 101 * picture);
  EXPECT_EQ(decoded_, (std::vector<GstClockTime>{100 * picture, 101 * picture}));
}

TEST_F(OverloadTest, WhatNeedsPicturesBeforeTheOneLeaptToIsLeftOut) {
  fallBehind();
  hand(Kind::Key, 100 * picture);
  hand(Kind::Needed, 99 * picture);
  hand(Kind::Needed, 102 * picture);
  EXPECT_EQ(decoded_, (std::vector<GstClockTime>{100 * picture, 102 * picture}));
}

TEST_F(OverloadTest, LatenessOfPicturesBeforeTheLeapDoesNotCountAfterIt) {
  fallBehind();
  hand(Kind::Key, 100 * picture);
  overload_.note(2 * picture, tooLate);
  hand(Kind::Disposable, 101 * picture);
  EXPECT_EQ(decoded_.size(), 2U);
}

TEST_F(OverloadTest, WhoCatchesUpDoesNotLeap) {
  overload_.note(0, tooLate);
  std::this_thread::sleep_for(longEnough);
  overload_.note(picture, tooLate - 150 * GST_MSECOND);
  hand(Kind::Needed, 2 * picture);
  EXPECT_EQ(decoded_.size(), 1U);
}

TEST_F(OverloadTest, AShortHiccupIsNoReasonToLeap) {
  overload_.note(0, tooLate);
  overload_.note(picture, tooLate);
  hand(Kind::Needed, 2 * picture);
  EXPECT_EQ(decoded_.size(), 1U);
}

TEST_F(OverloadTest, AnotherPlaceIsAnotherBeginning) {
  fallBehind();
  beginSegment();
  hand(Kind::Disposable, picture);
  EXPECT_EQ(decoded_.size(), 1U);
}

TEST_F(OverloadTest, WithoutAKeyFrameAheadItDoesNotRushThroughTheFilm) {
  fallBehind();
  const Instant before = now();
  playAt(0);
  hand(Kind::Needed, GST_SECOND);
  EXPECT_GE(now() - before, 500 * GST_MSECOND);
  EXPECT_EQ(dropped_, 1);
}

TEST_F(OverloadTest, WhileTheFilmStandsStillTheLeapDoesToo) {
  fallBehind();
  gst_element_set_state(decoder_.get(), GST_STATE_PAUSED);
  auto handed = std::async(std::launch::async, [this] { hand(Kind::Needed, picture); });
  EXPECT_EQ(handed.wait_for(std::chrono::milliseconds(200)), std::future_status::timeout);
  playAt(picture);
  handed.get();
  EXPECT_EQ(dropped_, 1);
}

TEST_F(OverloadTest, SeekingEndsTheWaitForTheTimeOfAPicture) {
  fallBehind();
  playAt(0);
  auto handed = std::async(std::launch::async, [this] { hand(Kind::Needed, GST_SECOND * 3600); });
  EXPECT_EQ(handed.wait_for(std::chrono::milliseconds(100)), std::future_status::timeout);
  gst_pad_send_event(pad_.get(), gst_event_new_flush_start());
  handed.get();
  gst_pad_send_event(pad_.get(), gst_event_new_flush_stop(TRUE));
  beginSegment();
  hand(Kind::Needed, picture);
  EXPECT_EQ(decoded_.size(), 1U);
}

TEST_F(OverloadTest, ClosingEndsTheWaitForTheTimeOfAPicture) {
  fallBehind();
  playAt(0);
  auto handed = std::async(std::launch::async, [this] { hand(Kind::Needed, GST_SECOND * 3600); });
  EXPECT_EQ(handed.wait_for(std::chrono::milliseconds(100)), std::future_status::timeout);
  gst_element_set_state(decoder_.get(), GST_STATE_NULL);
  handed.get();
  EXPECT_TRUE(decoded_.empty());
}

}  // namespace gstreamer
