#include "tests/host/gstreamer/Stage.h"

#include "hosts/probe/MediaProbe.h"

#include <gst/app/gstappsink.h>
#include <gst/audio/audio.h>

#include <algorithm>
#include <bit>
#include <chrono>
#include <cmath>
#include <thread>

namespace gstreamer {

namespace {

/// Longer than any machine takes for what the tests wait for.
constexpr double longEnough = 20.0;

}  // namespace

void TestLoop::post(std::function<void()> work) {
  const std::lock_guard lock(mutex_);
  posted_.push_back(std::move(work));
}

void TestLoop::runPosted() {
  std::deque<std::function<void()>> posted;
  {
    const std::lock_guard lock(mutex_);
    posted.swap(posted_);
  }
  for (const auto& work : posted) work();
}

bool TestLoop::runUntil(const std::function<bool()>& happened) {
  const double end = now() + longEnough;
  for (;;) {
    runPosted();
    if (happened()) return true;
    if (now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
}

void TestLoop::runFor(double time) {
  const double end = now() + time;
  runUntil([&] { return now() >= end; });
}

Element Recording::makeSink() {
  Element sink = makeElement("appsink");
  GstAppSinkCallbacks callbacks{};
  callbacks.new_sample = [](GstAppSink* from, gpointer recording) {
    const Sample sample(gst_app_sink_pull_sample(from));
    if (sample) static_cast<Recording*>(recording)->take(*GST_ELEMENT(from), sample);
    return GST_FLOW_OK;
  };
  gst_app_sink_set_callbacks(GST_APP_SINK(sink.get()), &callbacks, this, nullptr);
  g_object_set(sink.get(), "enable-last-sample", FALSE, nullptr);
  const std::lock_guard lock(mutex_);
  sinks_.emplace_back(*sink);
  return sink;
}

void Recording::take(GstElement& sink, const Sample& sample) {
  GstAudioInfo info;
  if (!gst_audio_info_from_caps(&info, gst_sample_get_caps(sample.get()))) return;
  GstBuffer* buffer = gst_sample_get_buffer(sample.get());
  GstMapInfo map;
  if (!gst_buffer_map(buffer, &map, GST_MAP_READ)) return;
  const auto* samples = static_cast<const float*>(static_cast<const void*>(map.data));
  const std::size_t frames = map.size / sizeof(float) / 2;
  const GstSegment* segment = gst_sample_get_segment(sample.get());
  const auto running = gst_segment_to_running_time(segment, GST_FORMAT_TIME, GST_BUFFER_PTS(buffer));
  const auto position = gst_segment_to_stream_time(segment, GST_FORMAT_TIME, GST_BUFFER_PTS(buffer));
  {
    const std::lock_guard lock(mutex_);
    if (GST_BUFFER_FLAG_IS_SET(buffer, GST_BUFFER_FLAG_GAP)) ++gaps_;
    if (sound_.left.empty()) sound_.begin = seconds(static_cast<Instant>(position));
    bool left = false, right = false;
    for (std::size_t i = 0; i < frames; ++i) {
      sound_.left.push_back(samples[2 * i]);
      sound_.right.push_back(samples[2 * i + 1]);
      left = left || samples[2 * i] != 0.0F;
      right = right || samples[2 * i + 1] != 0.0F;
    }
    if (left && right) ++forBothEars_;
    base_ = static_cast<Instant>(gst_element_get_base_time(&sink) + running - position);
    runs_ = true;
  }
  gst_buffer_unmap(buffer, &map);
}

Recording::Sound Recording::sound() const {
  const std::lock_guard lock(mutex_);
  return sound_;
}

int Recording::gaps() const {
  const std::lock_guard lock(mutex_);
  return gaps_;
}

int Recording::forBothEars() const {
  const std::lock_guard lock(mutex_);
  return forBothEars_;
}

void Recording::clear() {
  const std::lock_guard lock(mutex_);
  sound_ = {};
  runs_ = false;
}

int Recording::openDevices() const {
  const std::lock_guard lock(mutex_);
  return static_cast<int>(std::count_if(sinks_.begin(), sinks_.end(), [](const WeakSink& known) {
    const Element sink = known.get();
    return sink && GST_STATE(sink.get()) > GST_STATE_NULL;
  }));
}

bool Recording::standsStill() const {
  const std::lock_guard lock(mutex_);
  return std::none_of(sinks_.begin(), sinks_.end(), [](const WeakSink& known) {
    const Element sink = known.get();
    GstState state = GST_STATE_NULL, pending = GST_STATE_VOID_PENDING;
    if (sink) gst_element_get_state(sink.get(), &state, &pending, 0);
    return state == GST_STATE_PLAYING && pending == GST_STATE_VOID_PENDING;
  });
}

double Recording::playingAt(Instant instant) const {
  const std::lock_guard lock(mutex_);
  return runs_ ? seconds(instant - base_) : -1.0;
}

host::PlayerEvents Heard::events() {
  return {[this] { ++ended; }, [this] { ++failed; }};
}

Stage::Stage(Options changes) {
  if (changes.makeSoundSink.target<Element (*)()>()) {
    changes.makeSoundSink = [recording = recording_] { return recording->makeSink(); };
  }
  changes.tellElement = [this](const std::string& factory) {
    const std::lock_guard lock(mutex_);
    elements_.insert(factory);
  };
  // On a machine that is busy a film would begin without its sound, which most tests wait for.
  if (changes.soundPatience == Options().soundPatience) changes.soundPatience = 10.0;
  changes.look = [](const std::string& path, double deadline) { return probe::look(path, deadline).media; };
  engine_ = makeEngine(loop_, std::move(changes));
}

Stage::~Stage() = default;

std::unique_ptr<host::SoundPlayer> Stage::sound(const std::string& path, Heard& heard) {
  return engine_->openSound(clips::urlOf(path), heard.events());
}

std::unique_ptr<host::SoundPlayer> Stage::sound(const std::string& path) {
  return sound(path, ignored_);
}

std::unique_ptr<host::PicturePlayer> Stage::picture(const std::string& path, Heard& heard, int width, int height) {
  auto player = engine_->openPicture(clips::urlOf(path), heard.events());
  player->pictures()->setBox(width, height);
  return player;
}

std::unique_ptr<host::PicturePlayer> Stage::picture(const std::string& path) {
  return picture(path, ignored_);
}

std::multiset<std::string> Stage::elements() const {
  const std::lock_guard lock(mutex_);
  return elements_;
}

double leastOf(const std::function<double()>& look) {
  constexpr int looks = 10;
  double least = look();
  for (int i = 1; i < looks; ++i) least = std::min(least, look());
  return least;
}

float peak(const std::vector<float>& samples) {
  float largest = 0.0F;
  for (const float sample : samples) largest = std::max(largest, std::fabs(sample));
  return largest;
}

bool isExactlyZero(const std::vector<float>& samples) {
  return std::all_of(samples.begin(), samples.end(),
                     [](float sample) { return std::bit_cast<std::uint32_t>(sample) == 0; });
}

Colour colourAt(const host::Picture& picture, int x, int y) {
  const std::uint8_t* pixel = picture.pixels + static_cast<std::ptrdiff_t>(y) * picture.stride + 4 * x;
  return {pixel[2], pixel[1], pixel[0]};
}

}  // namespace gstreamer
