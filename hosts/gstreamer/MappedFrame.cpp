#include "hosts/gstreamer/MappedFrame.h"

namespace gstreamer {

namespace {

/// Frames that do not say which matrix they mean are of high definition (BT.709) or not (BT.601). GStreamer's own
/// guess takes BT.2020 for the largest ones, which cameras of 8 bits do not write.
Colours coloursOf(const GstCaps& caps, const GstVideoInfo& info) {
  constexpr int highDefinition = 720;
  const gchar* told = gst_structure_get_string(gst_caps_get_structure(&caps, 0), "colorimetry");
  GstVideoColorimetry colorimetry{};
  if (told) gst_video_colorimetry_from_string(&colorimetry, told);
  Colours colours{colorimetry.matrix, colorimetry.range == GST_VIDEO_COLOR_RANGE_0_255, colorimetry.transfer};
  if (colours.matrix == GST_VIDEO_COLOR_MATRIX_UNKNOWN)
    colours.matrix =
        GST_VIDEO_INFO_HEIGHT(&info) >= highDefinition ? GST_VIDEO_COLOR_MATRIX_BT709 : GST_VIDEO_COLOR_MATRIX_BT601;
  return colours;
}

}  // namespace

MappedFrame::MappedFrame(GstSample& sample) {
  GstCaps* caps = gst_sample_get_caps(&sample);
  GstBuffer* buffer = gst_sample_get_buffer(&sample);
  mapped_ = caps && buffer && gst_video_info_from_caps(&info_, caps) &&
            gst_video_frame_map(&frame_, &info_, buffer, GST_MAP_READ);
  if (mapped_) colours_ = coloursOf(*caps, info_);
}

MappedFrame::~MappedFrame() {
  if (mapped_) gst_video_frame_unmap(&frame_);
}

}  // namespace gstreamer
