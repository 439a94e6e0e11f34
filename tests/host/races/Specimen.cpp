// quillop-race-specimen guarded|unguarded: a number that a thread of GStreamer's counts up and the main thread reads,
// under a lock of GLib's or under none. Shows whether the thread sanitizer, as it is set up here, sees the one and
// keeps quiet about the other.

#include "hosts/gstreamer/Handles.h"

#include <chrono>
#include <cstdio>
#include <cstring>
#include <optional>
#include <thread>

namespace {

/// What both threads use.
struct Count {
  explicit Count(bool isGuarded) : guarded(isGuarded) { g_mutex_init(&mutex); }
  ~Count() { g_mutex_clear(&mutex); }
  Count(const Count&) = delete;
  Count& operator=(const Count&) = delete;

  void lock() {
    if (guarded) g_mutex_lock(&mutex);
  }
  void unlock() {
    if (guarded) g_mutex_unlock(&mutex);
  }

  bool guarded;
  GMutex mutex{};
  int buffers = 0;
};

GstPadProbeReturn countBuffer(GstPad*, GstPadProbeInfo*, gpointer count) {
  auto& shared = *static_cast<Count*>(count);
  shared.lock();
  ++shared.buffers;
  shared.unlock();
  return GST_PAD_PROBE_OK;
}

int buffersSoFar(Count& count) {
  count.lock();
  const int buffers = count.buffers;
  count.unlock();
  return buffers;
}

std::optional<bool> guardedAsAsked(int argc, char* argv[]) {
  if (argc == 2 && std::strcmp(argv[1], "guarded") == 0) return true;
  if (argc == 2 && std::strcmp(argv[1], "unguarded") == 0) return false;
  return std::nullopt;
}

}  // namespace

int main(int argc, char* argv[]) {
  const auto guarded = guardedAsAsked(argc, argv);
  if (!guarded) {
    std::fprintf(stderr, "usage: quillop-race-specimen guarded|unguarded\n");
    return 2;
  }
  gst_init(nullptr, nullptr);
  Count count(*guarded);
  const gstreamer::Element pipeline(GST_ELEMENT(gst_object_ref_sink(gst_pipeline_new(nullptr))));
  const auto source = gstreamer::makeElement("fakesrc"), sink = gstreamer::makeElement("fakesink");
  g_object_set(source.get(), "num-buffers", 1000, nullptr);
  gst_bin_add_many(GST_BIN(pipeline.get()), source.get(), sink.get(), nullptr);
  gst_element_link(source.get(), sink.get());
  const gstreamer::Pad pad(gst_element_get_static_pad(sink.get(), "sink"));
  gst_pad_add_probe(pad.get(), GST_PAD_PROBE_TYPE_BUFFER, countBuffer, &count, nullptr);
  gst_element_set_state(pipeline.get(), GST_STATE_PLAYING);
  while (buffersSoFar(count) < 1000) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  gst_element_set_state(pipeline.get(), GST_STATE_NULL);
  std::printf("%d buffers\n", count.buffers);
}
