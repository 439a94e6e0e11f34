#include "tests/host/gstreamer/StandInDecoder.h"

#include "hosts/gstreamer/Handles.h"

#include <gst/video/gstvideodecoder.h>

#include <condition_variable>
#include <cstring>
#include <mutex>

namespace gstreamer {

namespace {

using Fault = StandInDecoder::Fault;

/// What all elements of the kind do.
struct Behaviour {
  std::mutex mutex;
  std::condition_variable changed;
  Fault fault = Fault::None;
  int goodPictures = 0;
};

Behaviour& behaviour() {
  static Behaviour only;
  return only;
}

Fault fault() {
  const std::lock_guard lock(behaviour().mutex);
  return behaviour().fault;
}

struct Decoder {
  GstVideoDecoder parent;
  int pictures;
};
struct DecoderClass {
  GstVideoDecoderClass parent;
};

gboolean openDevice(GstVideoDecoder*) {
  return fault() != Fault::DoesNotOpen;
}

gboolean takeFormat(GstVideoDecoder* decoder, GstVideoCodecState* state) {
  if (fault() == Fault::RefusesTheFormat) return FALSE;
  const GstVideoInfo& in = state->info;
  GstVideoCodecState* out = gst_video_decoder_set_output_state(decoder, GST_VIDEO_FORMAT_I420,
                                                               static_cast<guint>(GST_VIDEO_INFO_WIDTH(&in)),
                                                               static_cast<guint>(GST_VIDEO_INFO_HEIGHT(&in)), state);
  gst_video_codec_state_unref(out);
  return gst_video_decoder_negotiate(decoder);
}

void whiten(GstBuffer& buffer) {
  GstMapInfo map;
  if (!gst_buffer_map(&buffer, &map, GST_MAP_WRITE)) return;
  const gsize luma = map.size * 2 / 3;
  std::memset(map.data, 235, luma);
  std::memset(map.data + luma, 128, map.size - luma);
  gst_buffer_unmap(&buffer, &map);
}

void hang() {
  std::unique_lock lock(behaviour().mutex);
  behaviour().changed.wait(lock, [] { return behaviour().fault != Fault::Hangs; });
}

/// Whether the next picture is the first that goes wrong, or one after it.
bool goesWrong(int picture) {
  const std::lock_guard lock(behaviour().mutex);
  const bool mayFail = behaviour().fault == Fault::Fails || behaviour().fault == Fault::Hangs;
  return mayFail && picture >= behaviour().goodPictures;
}

GstFlowReturn decode(GstVideoDecoder* decoder, GstVideoCodecFrame* frame) {
  if (fault() == Fault::GivesNothing) {
    gst_video_decoder_release_frame(decoder, frame);
    return GST_FLOW_OK;
  }
  if (goesWrong(reinterpret_cast<Decoder*>(decoder)->pictures++)) {
    if (fault() == Fault::Hangs) hang();
    gst_video_codec_frame_unref(frame);
    GST_ELEMENT_ERROR(decoder, STREAM, DECODE, ("the chip is not there"), (nullptr));
    return GST_FLOW_ERROR;
  }
  const GstFlowReturn allocated = gst_video_decoder_allocate_output_frame(decoder, frame);
  if (allocated != GST_FLOW_OK) return allocated;
  whiten(*frame->output_buffer);
  return gst_video_decoder_finish_frame(decoder, frame);
}

void initialiseClass(gpointer type, gpointer) {
  gst_element_class_set_static_metadata(GST_ELEMENT_CLASS(type), "Stand-in decoder", "Codec/Decoder/Video/Hardware",
                                        "Stands for a chip", "Quillop");
  const Caps in(gst_caps_from_string("video/x-h264, stream-format=avc, alignment=au"));
  const Caps out(gst_caps_from_string("video/x-raw, format=I420"));
  gst_element_class_add_pad_template(GST_ELEMENT_CLASS(type),
                                     gst_pad_template_new("sink", GST_PAD_SINK, GST_PAD_ALWAYS, in.get()));
  gst_element_class_add_pad_template(GST_ELEMENT_CLASS(type),
                                     gst_pad_template_new("src", GST_PAD_SRC, GST_PAD_ALWAYS, out.get()));
  auto* decoder = GST_VIDEO_DECODER_CLASS(type);
  decoder->open = openDevice;
  decoder->set_format = takeFormat;
  decoder->handle_frame = decode;
}

void setRank(guint rank) {
  GstPluginFeature* feature = gst_registry_lookup_feature(gst_registry_get(), StandInDecoder::name);
  gst_plugin_feature_set_rank(feature, rank);
  gst_object_unref(feature);
}

void install() {
  gst_init(nullptr, nullptr);
  static const GType type =
      g_type_register_static_simple(GST_TYPE_VIDEO_DECODER, "QuillopStandInDecoder", sizeof(DecoderClass),
                                    initialiseClass, sizeof(Decoder), nullptr, static_cast<GTypeFlags>(0));
  static const gboolean registered = gst_element_register(nullptr, StandInDecoder::name, GST_RANK_NONE, type);
  if (registered) setRank(GST_RANK_PRIMARY + 1000);
}

void behave(Fault fault, int goodPictures) {
  const std::lock_guard lock(behaviour().mutex);
  behaviour().fault = fault;
  behaviour().goodPictures = goodPictures;
  behaviour().changed.notify_all();
}

}  // namespace

StandInDecoder::StandInDecoder(Fault fault, int goodPictures) {
  behave(fault, goodPictures);
  install();
}

StandInDecoder::~StandInDecoder() {
  setRank(GST_RANK_NONE);
  behave(Fault::None, 0);
}

}  // namespace gstreamer
