#include "hosts/gstreamer/Packing.h"

#include "hosts/gstreamer/UsualPlugins.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace gstreamer {

namespace {

struct BufferRelease {
  void operator()(GstBuffer* buffer) const { gst_buffer_unref(buffer); }
};
using Buffer = std::unique_ptr<GstBuffer, BufferRelease>;
using Bytes = std::vector<guint8>;

Buffer bufferOf(const Bytes& bytes) {
  return Buffer(gst_buffer_new_memdup(bytes.data(), bytes.size()));
}

class PackingTest : public testing::Test {
 protected:
  PackingTest() { startGStreamer(); }

  static Caps capsOf(const std::string& text, const Bytes& description = {}) {
    Caps caps(gst_caps_from_string(text.c_str()));
    if (description.empty()) return caps;
    const Buffer buffer = bufferOf(description);
    gst_caps_set_simple(caps.get(), "codec_data", GST_TYPE_BUFFER, buffer.get(), nullptr);
    return caps;
  }
};

constexpr const char* h264 = "video/x-h264, alignment=au, stream-format=";
constexpr const char* h265 = "video/x-h265, alignment=au, stream-format=";

/// A description whose parts have lengths of four bytes, in H.265 of a stream with so many layers.
const Bytes avc{1, 100, 0, 40, 0xFF};
Bytes hvc(int layers) {
  Bytes bytes(23, 0);
  bytes[21] = static_cast<guint8>(layers << 3 | 3);
  return bytes;
}

bool isDisposable(const Caps& caps, const Bytes& picture) {
  const auto packing = Packing::of(*caps);
  return packing && packing->isDisposable(*bufferOf(picture));
}

}  // namespace

TEST_F(PackingTest, APictureThatNoOtherRefersToIsDisposable) {
  const Caps caps = capsOf(std::string(h264) + "avc", avc);
  EXPECT_TRUE(isDisposable(caps, {0, 0, 0, 2, 0x01, 0x9A}));
  EXPECT_FALSE(isDisposable(caps, {0, 0, 0, 2, 0x41, 0x9A}));
  EXPECT_FALSE(isDisposable(caps, {0, 0, 0, 2, 0x65, 0x88}));
}

TEST_F(PackingTest, WhatStandsBeforeThePictureDoesNotMatter) {
  const Caps caps = capsOf(std::string(h264) + "avc", avc);
  EXPECT_TRUE(isDisposable(caps, {0, 0, 0, 2, 0x09, 0x30, 0, 0, 0, 1, 0x06, 0, 0, 0, 2, 0x01, 0x9A}));
  EXPECT_FALSE(isDisposable(caps, {0, 0, 0, 2, 0x09, 0x30, 0, 0, 0, 2, 0x41, 0x9A}));
}

TEST_F(PackingTest, OneNeededPartMakesThePictureNeeded) {
  const Caps caps = capsOf(std::string(h264) + "avc", avc);
  EXPECT_FALSE(isDisposable(caps, {0, 0, 0, 2, 0x01, 0x9A, 0, 0, 0, 2, 0x41, 0x9A}));
}

TEST_F(PackingTest, PartsMayBeToldApartByStartCodes) {
  const Caps caps = capsOf(std::string(h264) + "byte-stream");
  EXPECT_TRUE(isDisposable(caps, {0, 0, 0, 1, 0x09, 0x30, 0, 0, 1, 0x01, 0x9A}));
  EXPECT_FALSE(isDisposable(caps, {0, 0, 0, 1, 0x09, 0x30, 0, 0, 1, 0x41, 0x9A}));
}

TEST_F(PackingTest, DamagedAndEmptyDataAreNotDisposable) {
  const Caps caps = capsOf(std::string(h264) + "avc", avc);
  EXPECT_FALSE(isDisposable(caps, {0, 0}));
  EXPECT_FALSE(isDisposable(caps, {0, 0, 0, 0, 0, 0}));
  EXPECT_FALSE(isDisposable(caps, {0xFF, 0xFF, 0xFF, 0xFF, 0x41}));
}

TEST_F(PackingTest, TheLayersOfH265CountAlone) {
  const Bytes unreferred{0, 0, 0, 3, 0x00, 0x01, 0x9A}, referred{0, 0, 0, 3, 0x02, 0x01, 0x9A};
  const Caps caps = capsOf(std::string(h265) + "hvc1", hvc(1));
  EXPECT_TRUE(isDisposable(caps, unreferred));
  EXPECT_FALSE(isDisposable(caps, referred));
  EXPECT_FALSE(isDisposable(capsOf(std::string(h265) + "hvc1", hvc(2)), unreferred));
}

TEST_F(PackingTest, OfOtherFormatsNothingIsKnown) {
  EXPECT_FALSE(Packing::of(*capsOf("video/x-vp9, alignment=frame")));
  EXPECT_FALSE(Packing::of(*capsOf("video/x-h264, alignment=nal, stream-format=byte-stream")));
  EXPECT_FALSE(Packing::of(*capsOf(std::string(h264) + "avc")));
}

TEST_F(PackingTest, AFreshStartNeedsNothingBeforeIt) {
  const auto packing = Packing::of(*capsOf(std::string(h264) + "avc", avc));
  ASSERT_TRUE(packing);
  EXPECT_TRUE(packing->isFreshStart(*bufferOf({0, 0, 0, 2, 0x67, 0x64, 0, 0, 0, 2, 0x65, 0x88})));
  EXPECT_FALSE(packing->isFreshStart(*bufferOf({0, 0, 0, 2, 0x41, 0x9A})));
}

}  // namespace gstreamer
