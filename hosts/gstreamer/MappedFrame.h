#pragma once

#include "hosts/gstreamer/Handles.h"
#include "hosts/gstreamer/PictureBoard.h"

#include <gst/video/video.h>

#include <cstdint>

namespace gstreamer {

/// How a frame's luma and colour differences become red, green and blue.
struct Colours {
  GstVideoColorMatrix matrix = GST_VIDEO_COLOR_MATRIX_UNKNOWN;
  bool isFullRange = false;
  GstVideoTransferFunction transfer = GST_VIDEO_TRANSFER_UNKNOWN;

  bool isRgb() const { return matrix == GST_VIDEO_COLOR_MATRIX_RGB; }
};

struct Plane {
  const std::uint8_t* data = nullptr;
  int stride = 0;  ///< bytes

  const std::uint16_t* wide() const { return static_cast<const std::uint16_t*>(static_cast<const void*>(data)); }
  int wideStride() const { return stride / 2; }
};

/// A decoded frame whose memory can be read while this exists; false where it cannot be. Any thread.
class MappedFrame {
 public:
  explicit MappedFrame(GstSample& sample);
  ~MappedFrame();
  MappedFrame(const MappedFrame&) = delete;
  MappedFrame& operator=(const MappedFrame&) = delete;

  explicit operator bool() const { return mapped_; }
  const GstVideoInfo& info() const { return info_; }
  const Colours& colours() const { return colours_; }
  int width() const { return GST_VIDEO_INFO_WIDTH(&info_); }
  int height() const { return GST_VIDEO_INFO_HEIGHT(&info_); }
  GstVideoFormat format() const { return GST_VIDEO_INFO_FORMAT(&info_); }
  Box sizeOf(int component) const {
    return {GST_VIDEO_FRAME_COMP_WIDTH(&frame_, component), GST_VIDEO_FRAME_COMP_HEIGHT(&frame_, component)};
  }
  /// Luma, blue difference and red difference in this order, whatever the order in memory.
  Plane component(int number) const {
    return {static_cast<const std::uint8_t*>(GST_VIDEO_FRAME_COMP_DATA(&frame_, number)),
            GST_VIDEO_FRAME_COMP_STRIDE(&frame_, number)};
  }
  Plane plane(int number) const {
    return {static_cast<const std::uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&frame_, number)),
            GST_VIDEO_FRAME_PLANE_STRIDE(&frame_, number)};
  }

 private:
  GstVideoInfo info_{};
  GstVideoFrame frame_{};
  Colours colours_;
  bool mapped_ = false;
};

}  // namespace gstreamer
