#include "tests/host/gstreamer/LateDevice.h"

#include "hosts/gstreamer/Instant.h"

#include <gst/audio/gstaudiosink.h>

#include <algorithm>
#include <chrono>
#include <thread>

namespace {

using gstreamer::Instant;

struct LateDevice {
  GstAudioSink parent;
  double latency;
  int rate;
  int bytesPerFrame;
  Instant busyUntil;
};

struct LateDeviceClass {
  GstAudioSinkClass parent;
};

G_DEFINE_TYPE(LateDevice, late_device, GST_TYPE_AUDIO_SINK)

LateDevice& of(GstAudioSink* sink) {
  return *G_TYPE_CHECK_INSTANCE_CAST(sink, late_device_get_type(), LateDevice);
}

gboolean prepare(GstAudioSink* sink, GstAudioRingBufferSpec* spec) {
  of(sink).rate = GST_AUDIO_INFO_RATE(&spec->info);
  of(sink).bytesPerFrame = GST_AUDIO_INFO_BPF(&spec->info);
  return TRUE;
}

gboolean succeed(GstAudioSink*) {
  return TRUE;
}

/// Takes one sample after the other. What comes a little late is made good, as by what such a device has in store;
/// after that the next one is taken at once.
gint take(GstAudioSink* sink, gpointer, guint bytes) {
  LateDevice& device = of(sink);
  const Instant lasting = gstreamer::nanoseconds(static_cast<double>(bytes) / device.bytesPerFrame / device.rate);
  const Instant store = gstreamer::nanoseconds(0.1);
  const Instant now = gstreamer::now();
  device.busyUntil = (now - device.busyUntil > store ? now : device.busyUntil) + lasting;
  if (device.busyUntil > now) std::this_thread::sleep_for(std::chrono::nanoseconds(device.busyUntil - now));
  return static_cast<gint>(bytes);
}

guint delay(GstAudioSink* sink) {
  return static_cast<guint>(of(sink).latency * of(sink).rate);
}

void late_device_init(LateDevice*) {}

void late_device_class_init(LateDeviceClass* type) {
  static GstStaticPadTemplate pads = GST_STATIC_PAD_TEMPLATE(
      "sink", GST_PAD_SINK, GST_PAD_ALWAYS,
      GST_STATIC_CAPS("audio/x-raw, format=F32LE, layout=interleaved, rate=48000, channels=2"));
  gst_element_class_add_static_pad_template(GST_ELEMENT_CLASS(type), &pads);
  gst_element_class_set_static_metadata(GST_ELEMENT_CLASS(type), "Late device", "Sink/Audio", "Heard late",
                                        "Quillop");
  type->parent.open = type->parent.close = type->parent.unprepare = succeed;
  type->parent.prepare = prepare;
  type->parent.write = take;
  type->parent.delay = delay;
}

}  // namespace

namespace gstreamer {

Element makeLateDevice(double latency) {
  gpointer device = g_object_new(late_device_get_type(), "sync", FALSE, "provide-clock", FALSE, "buffer-time",
                                 gint64{100000}, nullptr);
  of(GST_AUDIO_SINK(device)).latency = latency;
  return Element(GST_ELEMENT(gst_object_ref_sink(device)));
}

}  // namespace gstreamer
