#include "hosts/gstreamer/Pipeline.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <thread>

namespace gstreamer {

namespace {

/// How long a wait goes on before it looks whether it was interrupted.
constexpr Instant glance = 20 * GST_MSECOND;
constexpr int glancesForReason = 10;
/// Encoded sound that is read ahead, so that a disk that wakes up is not heard.
constexpr guint64 readAheadTime = GST_SECOND;

/// Streams of a container have what decoders need to know in their caps, the container itself has not.
bool isStream(const GstStructure& structure) {
  for (const char* field : {"width", "rate", "channels"}) {
    if (gst_structure_has_field(&structure, field)) return true;
  }
  return false;
}

GstStreamType kindOf(GstPad& pad) {
  const Stream stream(gst_pad_get_stream(&pad));
  return stream ? gst_stream_get_stream_type(stream.get()) : GST_STREAM_TYPE_UNKNOWN;
}

/// What is about to come out of `pad`. A parser shows its pads before it sends caps over them, but the stream knows
/// already; what the pad could send at all would admit decoders that do not take this very stream.
Caps capsOf(GstPad& pad) {
  if (Caps sent(gst_pad_get_current_caps(&pad)); sent) return sent;
  const Stream stream(gst_pad_get_stream(&pad));
  if (Caps told(stream ? gst_stream_get_caps(stream.get()) : nullptr); told) return told;
  return Caps(gst_pad_query_caps(&pad, nullptr));
}

/// Media time in seconds that the segment at `pad` begins with, and the running time that belongs to it.
GstClockTimeDiff runningTimeAt(double position, GstElement& sink) {
  const GstClockTimeDiff time = nanoseconds(position);
  const Pad pad(gst_element_get_static_pad(&sink, "sink"));
  const Event event(gst_pad_get_sticky_event(pad.get(), GST_EVENT_SEGMENT, 0));
  const GstSegment* segment = nullptr;
  if (event) gst_event_parse_segment(event.get(), &segment);
  if (!segment || segment->format != GST_FORMAT_TIME) return time;
  return time - static_cast<GstClockTimeDiff>(segment->time) + static_cast<GstClockTimeDiff>(segment->base);
}

/// Whether the sink holds each sample back until its time, or begins as soon as it may.
bool waitsByItself(GstElement& sink) {
  gboolean waits = TRUE;
  if (g_object_class_find_property(G_OBJECT_GET_CLASS(&sink), "sync")) g_object_get(&sink, "sync", &waits, nullptr);
  return waits;
}

}  // namespace

Pipeline::Pipeline(Setup setup) : setup_(std::move(setup)) {}

Pipeline::~Pipeline() = default;

bool Pipeline::open(double position) {
  if (!build()) return false;
  setup_.branch->expectStill(position <= 0.0);
  if (gst_element_set_state(pipeline_.get(), GST_STATE_PAUSED) == GST_STATE_CHANGE_FAILURE) {
    failToPrepare();
    return false;
  }
  if (!settle()) return false;
  setup_.branch->expectStill(false);
  return position <= 0.0 || seek(position, Precision::Exact);
}

bool Pipeline::build() {
  pipeline_ = Element(GST_ELEMENT(gst_object_ref_sink(gst_pipeline_new(nullptr))));
  const Clock clock(gst_system_clock_obtain());
  gst_pipeline_use_clock(GST_PIPELINE(pipeline_.get()), clock.get());
  // With no start time the pipeline leaves the base time alone when it is paused and started again.
  gst_element_set_start_time(pipeline_.get(), GST_CLOCK_TIME_NONE);
  const Bus bus(gst_element_get_bus(pipeline_.get()));
  gst_bus_set_sync_handler(bus.get(), seeMessage, this, nullptr);
  g_signal_connect(pipeline_.get(), "deep-element-added", G_CALLBACK(seeElement), this);
  std::string reason;
  if (!setup_.branch->build(bin(), reason)) {
    fail(Trouble::Where::Sink, reason);
    return false;
  }
  return addSource();
}

bool Pipeline::addSource() {
  const Element file = makeElement("filesrc"), parser = makeElement("parsebin");
  if (!file || !parser) {
    fail(Trouble::Where::Media, "an element for files is missing (filesrc or parsebin)");
    return false;
  }
  g_object_set(file.get(), "location", setup_.path.c_str(), nullptr);
  g_signal_connect(parser.get(), "pad-added", G_CALLBACK(seePad), this);
  g_signal_connect(parser.get(), "no-more-pads", G_CALLBACK(seeNoMorePads), this);
  g_signal_connect(parser.get(), "autoplug-continue", G_CALLBACK(goesOn), this);
  gst_bin_add_many(&bin(), file.get(), parser.get(), nullptr);
  return gst_element_link(file.get(), parser.get());
}

void Pipeline::seeElement(GstBin*, GstBin*, GstElement* element, gpointer pipeline) {
  const auto& tell = static_cast<Pipeline*>(pipeline)->setup_.tellElement;
  GstElementFactory* factory = gst_element_get_factory(element);
  if (tell && factory) tell(GST_OBJECT_NAME(factory));
}

bool Pipeline::seek(double position, Precision precision) {
  setup_.branch->expectStill(true);
  setup_.branch->standStill();
  standsAt_ = position;
  const auto flags = static_cast<GstSeekFlags>(
      GST_SEEK_FLAG_FLUSH |
      (precision == Precision::Exact ? GST_SEEK_FLAG_ACCURATE : GST_SEEK_FLAG_KEY_UNIT | GST_SEEK_FLAG_SNAP_NEAREST));
  if (!gst_element_seek_simple(pipeline_.get(), GST_FORMAT_TIME, flags, nanoseconds(position))) {
    fail(Trouble::Where::Media, "the file cannot be sought in");
    return false;
  }
  if (!settle()) return false;
  setup_.branch->expectStill(false);
  return true;
}

void Pipeline::run(double position, Instant instant) {
  setup_.branch->expectStill(false);
  GstElement& sink = setup_.branch->sink();
  const GstClockTimeDiff base = instant - runningTimeAt(position, sink);
  gst_element_set_base_time(pipeline_.get(), static_cast<GstClockTime>(base));
  if (!waitsByItself(sink)) waitUntil(base + runningTimeAt(standsAt_, sink));
  gst_element_set_state(pipeline_.get(), GST_STATE_PLAYING);
}

void Pipeline::waitUntil(Instant instant) const {
  for (Instant left = instant - now(); left > 0 && !interrupted_; left = instant - now()) {
    std::this_thread::sleep_for(std::chrono::nanoseconds(std::min<Instant>(left, glance)));
  }
}

void Pipeline::pause() {
  setup_.branch->expectStill(false);
  gst_element_set_state(pipeline_.get(), GST_STATE_PAUSED);
}

void Pipeline::close() {
  if (!pipeline_) return;
  gst_element_set_state(pipeline_.get(), GST_STATE_NULL);
  const Bus bus(gst_element_get_bus(pipeline_.get()));
  gst_bus_set_sync_handler(bus.get(), nullptr, nullptr, nullptr);
  pipeline_.reset();
  setup_.branch.reset();
}

std::optional<Trouble> Pipeline::trouble() const {
  const std::lock_guard lock(mutex_);
  return trouble_;
}

double Pipeline::length() const {
  gint64 length = 0;
  const bool known = pipeline_ && gst_element_query_duration(pipeline_.get(), GST_FORMAT_TIME, &length);
  return known && length > 0 ? seconds(length) : 0.0;
}

void Pipeline::fail(Trouble::Where where, std::string reason) {
  {
    const std::lock_guard lock(mutex_);
    // What fails afterwards fails because of the first.
    if (trouble_) return;
    trouble_ = Trouble{where, std::move(reason)};
  }
  if (setup_.troubled) setup_.troubled();
}

bool Pipeline::settle() {
  while (!interrupted_ && !trouble()) {
    const auto change = gst_element_get_state(pipeline_.get(), nullptr, nullptr, GstClockTime{glance});
    if (change == GST_STATE_CHANGE_SUCCESS || change == GST_STATE_CHANGE_NO_PREROLL) return !trouble();
    if (change == GST_STATE_CHANGE_FAILURE) failToPrepare();
  }
  return false;
}

/// A bin knows that a change of state failed before it passes on the message that says why.
void Pipeline::failToPrepare() {
  for (int i = 0; i < glancesForReason && !trouble(); ++i)
    std::this_thread::sleep_for(std::chrono::nanoseconds(glance));
  fail(Trouble::Where::Media, "the pipeline could not be prepared");
}

/// Runs on whatever thread the message is born on, and nobody else reads the bus.
GstBusSyncReply Pipeline::seeMessage(GstBus*, GstMessage* message, gpointer pipeline) {
  auto& self = *static_cast<Pipeline*>(pipeline);
  switch (GST_MESSAGE_TYPE(message)) {
    case GST_MESSAGE_ERROR:
      self.seeError(*message);
      break;
    case GST_MESSAGE_EOS:
      if (self.setup_.drained) self.setup_.drained();
      break;
    case GST_MESSAGE_QOS:
      self.setup_.branch->countDropped();
      break;
    default:
      break;
  }
  gst_message_unref(message);
  return GST_BUS_DROP;
}

void Pipeline::seeError(GstMessage& message) {
  GError* raw = nullptr;
  gst_message_parse_error(&message, &raw, nullptr);
  const Error error(raw);
  auto where = Trouble::Where::Media;
  if (GST_IS_ELEMENT(GST_MESSAGE_SRC(&message))) {
    GstElement& source = *GST_ELEMENT(GST_MESSAGE_SRC(&message));
    GstElement& sink = setup_.branch->sink();
    if (&source == &sink || gst_object_has_as_ancestor(GST_OBJECT(&source), GST_OBJECT(&sink))) {
      where = Trouble::Where::Sink;
    } else if (isHardwareDecoder(source)) {
      where = Trouble::Where::HardwareDecoder;
    }
  }
  fail(where, error ? error->message : "an error without a reason");
}

/// Whether the parser shall look further into `pad`. Streams of other kinds are not even parsed.
gboolean Pipeline::goesOn(GstElement*, GstPad*, GstCaps* caps, gpointer pipeline) {
  const auto& self = *static_cast<Pipeline*>(pipeline);
  const GstStructure* structure = gst_caps_get_structure(caps, 0);
  const char* unwanted = self.setup_.branch->kind() == GST_STREAM_TYPE_VIDEO ? "audio/" : "video/";
  const char* name = gst_structure_get_name(structure);
  return std::strncmp(name, unwanted, std::strlen(unwanted)) != 0 || !isStream(*structure);
}

void Pipeline::seePad(GstElement*, GstPad* pad, gpointer pipeline) {
  auto& self = *static_cast<Pipeline*>(pipeline);
  if (self.attached_ || kindOf(*pad) != self.setup_.branch->kind()) return;
  self.attached_ = true;
  self.attach(*pad);
}

void Pipeline::seeNoMorePads(GstElement*, gpointer pipeline) {
  auto& self = *static_cast<Pipeline*>(pipeline);
  if (!self.attached_) self.fail(Trouble::Where::Media, "the file has no stream of the kind that was to be played");
}

void Pipeline::attach(GstPad& pad) {
  const Caps caps = capsOf(pad);
  const Pad from = readAhead(pad);
  const GstStructure* structure = gst_caps_get_structure(caps.get(), 0);
  if (g_str_has_suffix(gst_structure_get_name(structure), "/x-raw")) {
    const Pad entry(gst_element_get_static_pad(&setup_.branch->entry(), "sink"));
    if (gst_pad_link(from.get(), entry.get()) == GST_PAD_LINK_OK) return;
  }
  for (const auto& decoder : decodersFor(*caps, setup_.hardware)) {
    if (attachThrough(decoder, *from, *caps)) return;
  }
  fail(Trouble::Where::Media, "there is no decoder for the stream");
}

Pad Pipeline::readAhead(GstPad& pad) {
  if (!setup_.branch->readsAhead()) return Pad(GST_PAD(gst_object_ref(&pad)));
  const Element queue = makeElement("queue");
  g_object_set(queue.get(), "max-size-buffers", 0U, "max-size-bytes", 0U, "max-size-time", readAheadTime, nullptr);
  gst_bin_add(&bin(), queue.get());
  const Pad in(gst_element_get_static_pad(queue.get(), "sink"));
  gst_pad_link(&pad, in.get());
  gst_element_sync_state_with_parent(queue.get());
  return Pad(gst_element_get_static_pad(queue.get(), "src"));
}

bool Pipeline::attachThrough(const std::string& name, GstPad& pad, const GstCaps& caps) {
  const Element decoder = makeElement(name.c_str());
  if (!decoder) return false;
  if (setup_.branch->kind() == GST_STREAM_TYPE_VIDEO) limitThreads(*decoder, caps);
  gst_bin_add(&bin(), decoder.get());
  const Pad in(gst_element_get_static_pad(decoder.get(), "sink"));
  const bool fits = in && gst_element_link(decoder.get(), &setup_.branch->entry()) &&
                    gst_pad_link(&pad, in.get()) == GST_PAD_LINK_OK &&
                    gst_element_sync_state_with_parent(decoder.get());
  if (fits) return true;
  gst_element_set_state(decoder.get(), GST_STATE_NULL);
  gst_bin_remove(&bin(), decoder.get());
  return false;
}

}  // namespace gstreamer
