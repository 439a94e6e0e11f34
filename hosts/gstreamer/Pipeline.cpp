#include "hosts/gstreamer/Pipeline.h"

#include "hosts/gstreamer/Segment.h"
#include "hosts/gstreamer/UsualPlugins.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <thread>

namespace gstreamer {

namespace {

/// How long a wait goes on before it looks whether it was interrupted.
constexpr Instant glance = 20 * GST_MSECOND;
constexpr int glancesForReason = 10;
/// The same for a seek, which a moving finger outdates many times a second.
constexpr Instant briefGlance = 4 * GST_MSECOND;
/// Encoded sound that is read ahead, so that a disk that wakes up is not heard.
constexpr guint64 readAheadTime = GST_SECOND;
/// A parser that looks for the key frame before a place goes to where all its streams have something. Of a sound
/// track that is up to this far before the place, and a key frame at the place itself would be missed.
constexpr Instant longestSoundPacket = 50 * GST_MSECOND;
constexpr const char* noSuchStream = "the file has no stream of the kind that was to be played";

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

bool isRaw(const GstCaps& caps) {
  return g_str_has_suffix(gst_structure_get_name(gst_caps_get_structure(&caps, 0)), "/x-raw");
}

/// The format in words for a log, such as "video/x-h265, profile main-10".
std::string nameOf(const GstCaps& caps) {
  const GstStructure* structure = gst_caps_get_structure(&caps, 0);
  std::string name = gst_structure_get_name(structure);
  if (const char* profile = gst_structure_get_string(structure, "profile"))
    name += std::string(", profile ") + profile;
  return name;
}

/// The running time at which `sink` plays what has this time in the medium.
GstClockTimeDiff runningTimeAt(GstClockTime mediaTime, GstElement& sink) {
  const auto time = static_cast<GstClockTimeDiff>(mediaTime);
  const Pad pad(gst_element_get_static_pad(&sink, "sink"));
  const Event event(gst_pad_get_sticky_event(pad.get(), GST_EVENT_SEGMENT, 0));
  const GstSegment* segment = nullptr;
  if (event) gst_event_parse_segment(event.get(), &segment);
  if (!segment || segment->format != GST_FORMAT_TIME) return time;
  return time - static_cast<GstClockTimeDiff>(segment->time) + static_cast<GstClockTimeDiff>(segment->base);
}

/// Bytes; 0 where there is no such file.
std::uintmax_t sizeOf(const std::string& path) {
  std::error_code error;
  const auto size = std::filesystem::file_size(path, error);
  return error ? 0 : size;
}

/// A parser states the end of the segment as the file does. Whoever waits for it, or fills up with silence until
/// then, would hide that the data has ended long before. Takes `event` and gives another one.
GstEvent* withoutEnd(GstEvent* event) {
  return withSegment(event, [](GstSegment& segment) { segment.stop = GST_CLOCK_TIME_NONE; });
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

bool Pipeline::open(double position, Precision precision, Round round) {
  sizeWhenMade_ = sizeOf(setup_.path);
  if (!build()) return false;
  setup_.branch->expectStill(position <= 0.0);
  if (gst_element_set_state(pipeline_.get(), GST_STATE_PAUSED) == GST_STATE_CHANGE_FAILURE) {
    failToPrepare();
    return false;
  }
  if (!settle()) return false;
  setup_.branch->expectStill(false);
  return position <= 0.0 || seek(position, precision, round);
}

bool Pipeline::build() {
  startGStreamer();
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
    fail(setup_.branch->kind() == GST_STREAM_TYPE_AUDIO ? Trouble::Where::Sink : Trouble::Where::Media, reason);
    return false;
  }
  watchData();
  return addSource();
}

void Pipeline::watchData() {
  const Pad pad(gst_element_get_static_pad(&setup_.branch->entry(), "sink"));
  const auto kinds = static_cast<GstPadProbeType>(GST_PAD_PROBE_TYPE_EVENT_BOTH | GST_PAD_PROBE_TYPE_EVENT_FLUSH |
                                                  GST_PAD_PROBE_TYPE_BUFFER);
  gst_pad_add_probe(pad.get(), kinds, seeData, this, nullptr);
}

GstPadProbeReturn Pipeline::seeData(GstPad*, GstPadProbeInfo* info, gpointer pipeline) {
  auto& self = *static_cast<Pipeline*>(pipeline);
  if (GST_IS_BUFFER(info->data)) {
    if (!self.hasData_.exchange(true)) self.dataSince_ = GST_BUFFER_PTS(GST_PAD_PROBE_INFO_BUFFER(info));
    self.hasDecoded_ = true;
    self.noteDecoder();
    return GST_PAD_PROBE_OK;
  }
  switch (GST_EVENT_TYPE(info->data)) {
    case GST_EVENT_FLUSH_STOP:
      self.hasData_ = false;
      self.isEmpty_ = false;
      self.isAtEnd_ = false;
      break;
    case GST_EVENT_SEGMENT:
      info->data = withoutEnd(GST_PAD_PROBE_INFO_EVENT(info));
      break;
    case GST_EVENT_EOS:
      self.isEmpty_ = !self.hasData_;
      self.isAtEnd_ = true;
      break;
    default:
      break;
  }
  return GST_PAD_PROBE_OK;
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
  g_signal_connect(parser.get(), "unknown-type", G_CALLBACK(seeUnknownType), this);
  g_signal_connect(parser.get(), "autoplug-continue", G_CALLBACK(goesOn), this);
  gst_bin_add_many(&bin(), file.get(), parser.get(), nullptr);
  return gst_element_link(file.get(), parser.get());
}

void Pipeline::seeElement(GstBin*, GstBin*, GstElement* element, gpointer pipeline) {
  auto& self = *static_cast<Pipeline*>(pipeline);
  GstElementFactory* factory = gst_element_get_factory(element);
  if (!factory) return;
  self.clock_.meet(GST_OBJECT_NAME(factory));
  if (self.setup_.tellElement) self.setup_.tellElement(GST_OBJECT_NAME(factory));
}

bool Pipeline::seek(double position, Precision precision, Round round) {
  if (!moveTo(position, precision, round)) return false;
  if (precision == Precision::ExactOrLast && !setup_.branch->hasStill() && !moveToLast(position, round)) return false;
  setup_.branch->expectStill(false);
  return true;
}

bool Pipeline::moveTo(double position, Precision precision, Round round) {
  if (!clock_.isRough() || precision == Precision::KeyFrame) return jumpTo(position, 0.0, precision, round);
  for (const double runUp : ContainerClock::runUps()) {
    if (!jumpTo(position, runUp, precision, round)) return false;
    if (!beginsTooLate()) break;
  }
  return true;
}

bool Pipeline::jumpTo(double position, double runUp, Precision precision, Round round) {
  const bool isNear = precision == Precision::KeyFrame;
  if (!isNear && round != round_) return true;
  const Round preview = previewRound_;
  expectStill(position, isNear);
  standsAt_ = position;
  clock_.beginAt(clock_.timeAt(position));
  const auto flags = static_cast<GstSeekFlags>(
      GST_SEEK_FLAG_FLUSH | (isNear ? GST_SEEK_FLAG_KEY_UNIT | GST_SEEK_FLAG_SNAP_BEFORE : GST_SEEK_FLAG_ACCURATE));
  const Instant target =
      static_cast<Instant>(clock_.timeAt(position)) + (isNear ? longestSoundPacket : -nanoseconds(runUp));
  if (!gst_element_seek_simple(pipeline_.get(), GST_FORMAT_TIME, flags, std::max<Instant>(0, target))) {
    fail(Trouble::Where::Media, "the file cannot be sought in");
    return false;
  }
  return isNear ? settle(previewRound_, preview) : settle(round_, round);
}

void Pipeline::expectStill(double position, bool isNear) {
  if (isNear) {
    setup_.branch->expectStillNear(static_cast<double>(clock_.timeAt(position)) / GST_SECOND);
  } else {
    setup_.branch->expectStill(true);
  }
  setup_.branch->beginAnew();
}

bool Pipeline::beginsTooLate() const {
  if (setup_.branch->kind() != GST_STREAM_TYPE_VIDEO || !hasData_) return false;
  return clock_.isTooLate(dataSince_);
}

/// Where a track ends, only trying tells for all kinds of files.
bool Pipeline::moveToLast(double position, Round round) {
  constexpr double closeEnough = 0.05;
  double after = position, before = position;
  for (double step = 0.25; before > 0.0 && !setup_.branch->hasStill() && round == round_; step *= 2.0) {
    after = before;
    before = std::max(0.0, position - step);
    if (!moveTo(before, Precision::Exact, round)) return false;
  }
  while (setup_.branch->hasStill() && after - before > closeEnough && round == round_) {
    const double middle = (before + after) / 2.0;
    if (!moveTo(middle, Precision::Exact, round)) return false;
    if (setup_.branch->hasStill()) {
      before = middle;
    } else {
      after = middle;
      if (!moveTo(before, Precision::Exact, round)) return false;
    }
  }
  return true;
}

void Pipeline::run(double position, Instant instant) {
  setup_.branch->expectStill(false);
  GstElement& sink = setup_.branch->sink();
  const GstClockTimeDiff base = instant - runningTimeAt(clock_.timeAt(position), sink);
  gst_element_set_base_time(pipeline_.get(), static_cast<GstClockTime>(base));
  if (!waitsByItself(sink)) waitUntil(base + runningTimeAt(clock_.timeAt(standsAt_), sink));
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

bool Pipeline::hasGrown() const {
  return sizeOf(setup_.path) > sizeWhenMade_;
}

void Pipeline::interrupt() {
  interrupted_ = true;
  if (setup_.branch) setup_.branch->leave();
}

/// What a hardware decoder does wrong is often told by others: whoever cannot hand it anything, for one. So it is
/// blamed for whatever happens while it is there; software finds out whether it really was the media.
void Pipeline::fail(Trouble trouble) {
  if (trouble.where == Trouble::Where::Media && usesHardware_) trouble.where = Trouble::Where::HardwareDecoder;
  {
    const std::lock_guard lock(mutex_);
    // What fails afterwards fails because of the first.
    if (trouble_) return;
    trouble_ = std::move(trouble);
  }
  if (setup_.troubled) setup_.troubled();
}

void Pipeline::judgeDecoder() {
  if (!usesHardware_ || isAtEnd_ || now() - decoderMoved_ <= nanoseconds(setup_.decoderPatience)) return;
  if (setup_.branch->hasInStore()) return;
  fail({Trouble::Where::HardwareDecoder, "the hardware decoder does not answer", true});
}

bool Pipeline::settle(const std::atomic<Round>& on, std::optional<Round> round) {
  while (!interrupted_ && !trouble()) {
    const auto change = gst_element_get_state(pipeline_.get(), nullptr, nullptr, GstClockTime{briefGlance});
    if (change == GST_STATE_CHANGE_SUCCESS || change == GST_STATE_CHANGE_NO_PREROLL) return !trouble();
    if (change == GST_STATE_CHANGE_FAILURE) failToPrepare();
    if (round && round != on) return !trouble();
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
    case GST_MESSAGE_REQUEST_STATE:
      self.seeRequest(*message);
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

/// Asked to pause, the sink's stream has been stopped already. That it may go on again is for the user to use.
void Pipeline::seeRequest(GstMessage& message) const {
  GstState wanted = GST_STATE_VOID_PENDING;
  gst_message_parse_request_state(&message, &wanted);
  if (wanted == GST_STATE_PAUSED && setup_.sinkTaken) setup_.sinkTaken();
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
  if (self.attached_) return;
  const Caps sent(gst_pad_get_current_caps(pad));
  const bool isWanted = kindOf(*pad) == self.setup_.branch->kind();
  if (isWanted && (!sent || self.canPlay(*sent))) {
    self.attached_ = true;
    if (sent) return self.attach(*pad, *sent);
    gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, attachWhenDescribed, &self, nullptr);
  } else {
    if (isWanted) self.passOver(*sent);
    const auto kinds = static_cast<GstPadProbeType>(GST_PAD_PROBE_TYPE_BUFFER | GST_PAD_PROBE_TYPE_BUFFER_LIST |
                                                    GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM);
    gst_pad_add_probe(pad, kinds, dropUntilAttached, &self, nullptr);
  }
}

bool Pipeline::canPlay(const GstCaps& caps) const {
  return isRaw(caps) || !decodersFor(caps, setup_.hardware).empty();
}

/// The parser keeps a stream to itself that it knows, and that no decoder on this system takes.
void Pipeline::seeUnknownType(GstElement*, GstPad*, GstCaps* caps, gpointer pipeline) {
  auto& self = *static_cast<Pipeline*>(pipeline);
  const char* wanted = self.setup_.branch->kind() == GST_STREAM_TYPE_VIDEO ? "video/" : "audio/";
  if (self.attached_ || !g_str_has_prefix(gst_structure_get_name(gst_caps_get_structure(caps, 0)), wanted)) return;
  self.passOver(*caps);
}

/// One stream fewer that can be played: trouble once it was the last one.
void Pipeline::passOver(const GstCaps& caps) {
  if (++passedOver_ >= setup_.streams) fail(Trouble::Where::Media, "there is no decoder for " + nameOf(caps));
}

void Pipeline::seeNoMorePads(GstElement*, gpointer pipeline) {
  auto& self = *static_cast<Pipeline*>(pipeline);
  if (!self.attached_) self.fail(Trouble::Where::Media, noSuchStream);
}

/// A parser mostly shows its pads before it sends caps over them. What the container says of the stream until then is
/// less (not whether the stream is cut into pictures, for one), and decoders do not take a stream that says too
/// little.
GstPadProbeReturn Pipeline::attachWhenDescribed(GstPad* pad, GstPadProbeInfo* info, gpointer pipeline) {
  auto& self = *static_cast<Pipeline*>(pipeline);
  GstEvent* event = GST_PAD_PROBE_INFO_EVENT(info);
  if (GST_EVENT_TYPE(event) == GST_EVENT_CAPS) {
    GstCaps* caps = nullptr;
    gst_event_parse_caps(event, &caps);
    self.attach(*pad, *caps);
    return GST_PAD_PROBE_REMOVE;
  }
  if (GST_EVENT_TYPE(event) != GST_EVENT_EOS) return GST_PAD_PROBE_OK;
  // A track that holds nothing has nothing to be decoded; its end belongs to the sink all the same.
  const Pad entry(gst_element_get_static_pad(&self.setup_.branch->entry(), "sink"));
  gst_pad_link_full(pad, entry.get(), GST_PAD_LINK_CHECK_NOTHING);
  return GST_PAD_PROBE_REMOVE;
}

/// Containers without a list of their tracks show one pad after the other, and give up when nobody wants anything of
/// what there is so far.
GstPadProbeReturn Pipeline::dropUntilAttached(GstPad*, GstPadProbeInfo* info, gpointer pipeline) {
  auto& self = *static_cast<Pipeline*>(pipeline);
  if (self.attached_) return GST_PAD_PROBE_REMOVE;
  if ((GST_PAD_PROBE_INFO_TYPE(info) & GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM) == 0) return GST_PAD_PROBE_DROP;
  if (GST_EVENT_TYPE(GST_PAD_PROBE_INFO_EVENT(info)) == GST_EVENT_EOS) self.fail(Trouble::Where::Media, noSuchStream);
  return GST_PAD_PROBE_OK;
}

void Pipeline::attach(GstPad& pad, const GstCaps& caps) {
  clock_.follow(pad);
  const Pad from = readAhead(pad);
  if (isRaw(caps)) {
    const Pad entry(gst_element_get_static_pad(&setup_.branch->entry(), "sink"));
    if (gst_pad_link(from.get(), entry.get()) == GST_PAD_LINK_OK) return;
  }
  const auto decoders = decodersFor(caps, setup_.hardware);
  for (const auto& decoder : decoders) {
    if (attachThrough(decoder, *from, caps)) return;
  }
  failToAttach(caps, !decoders.empty());
}

/// No decoder can be linked to a device that takes nothing, such as that of a sound server without any output.
void Pipeline::failToAttach(const GstCaps& caps, bool hasDecoder) {
  const Pad entry(gst_element_get_static_pad(&setup_.branch->entry(), "sink"));
  const Caps taken(gst_pad_query_caps(entry.get(), nullptr));
  if (hasDecoder && gst_caps_is_empty(taken.get())) {
    fail(Trouble::Where::Sink, "the output takes nothing");
  } else {
    fail(Trouble::Where::Media, "there is no decoder for " + nameOf(caps));
  }
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

void Pipeline::watchDecoder(GstElement& decoder) {
  noteDecoder();
  usesHardware_ = isHardwareDecoder(decoder);
  if (!usesHardware_) return;
  const Pad in(gst_element_get_static_pad(&decoder, "sink"));
  gst_pad_add_probe(in.get(), GST_PAD_PROBE_TYPE_BUFFER, seeDecoderTake, this, nullptr);
}

GstPadProbeReturn Pipeline::seeDecoderTake(GstPad*, GstPadProbeInfo*, gpointer pipeline) {
  static_cast<Pipeline*>(pipeline)->noteDecoder();
  return GST_PAD_PROBE_OK;
}

bool Pipeline::attachThrough(const std::string& name, GstPad& pad, const GstCaps& caps) {
  const Element decoder = makeElement(name.c_str());
  if (!decoder) return false;
  if (setup_.branch->kind() == GST_STREAM_TYPE_VIDEO) limitThreads(*decoder, caps);
  watchDecoder(*decoder);
  // One whose device is not there says so before the pipeline would hear of it.
  const bool opens = gst_element_set_state(decoder.get(), GST_STATE_READY) != GST_STATE_CHANGE_FAILURE;
  gst_bin_add(&bin(), decoder.get());
  const Pad in(gst_element_get_static_pad(decoder.get(), "sink"));
  setup_.branch->lead(*decoder);
  const bool fits = opens && in && gst_element_link(decoder.get(), &setup_.branch->entry()) &&
                    gst_pad_link(&pad, in.get()) == GST_PAD_LINK_OK &&
                    gst_element_sync_state_with_parent(decoder.get());
  if (fits) return true;
  usesHardware_ = false;
  gst_element_set_state(decoder.get(), GST_STATE_NULL);
  gst_bin_remove(&bin(), decoder.get());
  return false;
}

}  // namespace gstreamer
