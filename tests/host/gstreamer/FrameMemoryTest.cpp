#include "hosts/gstreamer/FrameMemory.h"
#include "hosts/gstreamer/PictureBoard.h"
#include "hosts/gstreamer/PictureBranch.h"
#include "hosts/gstreamer/PictureMaker.h"
#include "tests/support/Clips.h"

#include <gst/video/video.h>
#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>

namespace gstreamer {

namespace {

/// A file, its decoder and a branch for pictures, decoded as fast as the branch takes it.
class Decoding {
 public:
  explicit Decoding(const std::string& path) : branch_(maker_, board_, Orientation{}) {
    const std::string source = "filesrc location=" + path + " ! parsebin ! avdec_h264 max-threads=1 name=decoder";
    pipeline_.reset(gst_parse_launch(source.c_str(), nullptr));
    std::string reason;
    if (!branch_.build(*GST_BIN(pipeline_.get()), reason)) throw std::runtime_error(reason);
    g_object_set(&branch_.sink(), "sync", FALSE, nullptr);
    const Element decoder(gst_bin_get_by_name(GST_BIN(pipeline_.get()), "decoder"));
    const Pad out(gst_element_get_static_pad(decoder.get(), "src"));
    const auto kinds = static_cast<GstPadProbeType>(GST_PAD_PROBE_TYPE_BUFFER | GST_PAD_PROBE_TYPE_QUERY_DOWNSTREAM);
    gst_pad_add_probe(out.get(), kinds, see, this, nullptr);
    if (!gst_element_link(decoder.get(), &branch_.entry())) throw std::runtime_error("no link");
  }
  ~Decoding() { gst_element_set_state(pipeline_.get(), GST_STATE_NULL); }
  Decoding(const Decoding&) = delete;
  Decoding& operator=(const Decoding&) = delete;

  void runToTheEnd() {
    gst_element_set_state(pipeline_.get(), GST_STATE_PLAYING);
    const Bus bus(gst_element_get_bus(pipeline_.get()));
    constexpr auto ends = static_cast<GstMessageType>(GST_MESSAGE_EOS | GST_MESSAGE_ERROR);
    GstMessage* message = gst_bus_timed_pop_filtered(bus.get(), 20 * GST_SECOND, ends);
    ASSERT_TRUE(message);
    EXPECT_EQ(GST_MESSAGE_TYPE(message), GST_MESSAGE_EOS);
    gst_message_unref(message);
  }

  int frames() const { return frames_; }
  /// Of those, what lies in memory that was offered.
  int inOfferedMemory() const { return inOfferedMemory_; }
  int questions() const { return questions_; }

 private:
  static GstPadProbeReturn see(GstPad*, GstPadProbeInfo* info, gpointer decoding) {
    auto& self = *static_cast<Decoding*>(decoding);
    if (GST_IS_QUERY(info->data)) {
      // Each query passes twice: on its way and with its answer.
      const bool asks = (info->type & GST_PAD_PROBE_TYPE_PUSH) != 0;
      if (asks && GST_QUERY_TYPE(GST_PAD_PROBE_INFO_QUERY(info)) == GST_QUERY_ALLOCATION) ++self.questions_;
    } else {
      const GstMemory* memory = gst_buffer_peek_memory(GST_PAD_PROBE_INFO_BUFFER(info), 0);
      ++self.frames_;
      if (gst_memory_is_type(const_cast<GstMemory*>(memory), "QuillopFrame")) ++self.inOfferedMemory_;
    }
    return GST_PAD_PROBE_OK;
  }

  std::shared_ptr<PictureBoard> board_ = std::make_shared<PictureBoard>();
  std::shared_ptr<PictureMaker> maker_ = std::make_shared<PictureMaker>(board_);
  PictureBranch branch_;
  Element pipeline_;
  std::atomic<int> frames_ = 0;
  std::atomic<int> inOfferedMemory_ = 0;
  std::atomic<int> questions_ = 0;
};

std::string film(const std::string& name, const std::string& size) {
  return clips::clip(name, {"-f", "lavfi", "-i", "testsrc2=size=" + size + ":rate=10:duration=2", "-c:v", "libx264",
                            "-preset", "ultrafast", "-pix_fmt", "yuv420p"});
}

struct FrameRelease {
  void operator()(GstBuffer* frame) const { gst_buffer_unref(frame); }
};
using Frame = std::unique_ptr<GstBuffer, FrameRelease>;

/// The pool that a decoder would be given for small frames.
BufferPool offeredBy(FrameMemory& memory) {
  const Caps caps(gst_caps_from_string("video/x-raw, format=I420, width=64, height=32, framerate=10/1"));
  GstQuery* query = gst_query_new_allocation(caps.get(), TRUE);
  memory.offer(*query);
  GstBufferPool* pool = nullptr;
  gst_query_parse_nth_allocation_pool(query, 0, &pool, nullptr, nullptr, nullptr);
  gst_query_unref(query);
  gst_buffer_pool_set_active(pool, TRUE);
  return BufferPool(pool);
}

Frame frameOf(GstBufferPool& pool) {
  GstBuffer* frame = nullptr;
  gst_buffer_pool_acquire_buffer(&pool, &frame, nullptr);
  return Frame(frame);
}

/// Where the memory of the frame lies.
const std::uint8_t* placeOf(GstBuffer& frame) {
  GstMapInfo open{};
  gst_buffer_map(&frame, &open, GST_MAP_READ);
  const std::uint8_t* const place = open.data;
  gst_buffer_unmap(&frame, &open);
  return place;
}

class FrameMemoryTest : public testing::Test {
 protected:
  void SetUp() override { gst_init(nullptr, nullptr); }
};

}  // namespace

TEST_F(FrameMemoryTest, ADecoderPutsFramesOfFullHdIntoIt) {
  Decoding decoding(film("engine-frames-1080.mp4", "1920x1080"));
  decoding.runToTheEnd();
  EXPECT_EQ(decoding.frames(), 20);
  // The first one was decoded before the decoder could ask.
  EXPECT_GE(decoding.inOfferedMemory(), 19);
}

TEST_F(FrameMemoryTest, WhatIsHandedOnOfAFrameThatTheDecoderKeepsIsNoCopy) {
  FrameMemory memory;
  const BufferPool pool = offeredBy(memory);
  const Frame kept = frameOf(*pool);
  GstMapInfo open{};
  ASSERT_TRUE(gst_buffer_map(kept.get(), &open, GST_MAP_READWRITE));
  const Frame handedOn(gst_buffer_copy(kept.get()));
  EXPECT_EQ(placeOf(*handedOn), open.data);
  gst_buffer_unmap(kept.get(), &open);
}

TEST_F(FrameMemoryTest, IsUsedAgainOnlyOnceNobodyLooksAtIt) {
  FrameMemory memory;
  const BufferPool pool = offeredBy(memory);
  Frame kept = frameOf(*pool);
  GstMapInfo open{};
  ASSERT_TRUE(gst_buffer_map(kept.get(), &open, GST_MAP_READWRITE));
  Frame handedOn(gst_buffer_copy(kept.get()));
  gst_buffer_unmap(kept.get(), &open);
  const std::uint8_t* const place = placeOf(*kept);
  kept.reset();
  EXPECT_NE(placeOf(*frameOf(*pool)), place);
  handedOn.reset();
  EXPECT_EQ(placeOf(*frameOf(*pool)), place);
}

TEST_F(FrameMemoryTest, AFrameOutlivesIt) {
  Frame frame;
  {
    FrameMemory memory;
    frame = frameOf(*offeredBy(memory));
  }
  gst_buffer_memset(frame.get(), 0, 7, gst_buffer_get_size(frame.get()));
  EXPECT_EQ(*placeOf(*frame), 7);
}

TEST_F(FrameMemoryTest, ADecoderThatForgetsTheOfferIsNotOfferedMemoryForEveryFrame) {
  Decoding decoding(film("engine-frames-854.mp4", "854x480"));
  decoding.runToTheEnd();
  EXPECT_EQ(decoding.frames(), 20);
  EXPECT_LT(decoding.questions(), 12);
}

}  // namespace gstreamer
