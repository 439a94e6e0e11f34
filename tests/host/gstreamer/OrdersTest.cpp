// What is ordered while a film is still on its way to where it was ordered before.

#include "tests/host/gstreamer/FilmPlayers.h"
#include "tests/host/gstreamer/Stage.h"

#include <gst/base/gstbasesink.h>
#include <gtest/gtest.h>

#include <atomic>

namespace gstreamer {

namespace {

/// Sound is everywhere at once; the picture of a place is decoded from the very beginning.
std::string oneKeyFrame() {
  return clips::clip("engine-one-key-frame.mp4",
                     {"-f", "lavfi", "-i", "testsrc2=size=1920x1080:rate=30:duration=10", "-f", "lavfi", "-i",
                      "sine=frequency=440:sample_rate=48000:duration=10", "-c:v", "libx264", "-preset", "ultrafast",
                      "-g", "1000", "-pix_fmt", "yuv420p", "-c:a", "aac"});
}

/// Its sound ends long before its picture.
std::string soonSilent() {
  return clips::clip("engine-soon-silent.mp4",
                     {"-f", "lavfi", "-i", "testsrc2=size=160x90:rate=30:duration=9", "-f", "lavfi", "-i",
                      "sine=frequency=440:sample_rate=48000:duration=4", "-c:v", "libx264", "-preset", "ultrafast",
                      "-g", "30", "-pix_fmt", "yuv420p", "-c:a", "aac"});
}

/// A sound device that only knows how often it was started.
struct Device {
  GstBaseSink parent;
  std::atomic<int>* starts;
};

struct DeviceClass {
  GstBaseSinkClass parent;
};

G_DEFINE_TYPE(Device, device, GST_TYPE_BASE_SINK)

GstStateChangeReturn change(GstElement* element, GstStateChange transition) {
  if (transition == GST_STATE_CHANGE_PAUSED_TO_PLAYING)
    ++*G_TYPE_CHECK_INSTANCE_CAST(element, device_get_type(), Device)->starts;
  return GST_ELEMENT_CLASS(device_parent_class)->change_state(element, transition);
}

void device_init(Device*) {}

void device_class_init(DeviceClass* type) {
  static GstStaticPadTemplate pads = GST_STATIC_PAD_TEMPLATE(
      "sink", GST_PAD_SINK, GST_PAD_ALWAYS,
      GST_STATIC_CAPS("audio/x-raw, format=F32LE, layout=interleaved, rate=48000, channels=2"));
  auto* elements = GST_ELEMENT_CLASS(type);
  gst_element_class_add_static_pad_template(elements, &pads);
  gst_element_class_set_static_metadata(elements, "Device", "Sink/Audio", "Counts its starts", "Quillop");
  elements->change_state = change;
}

/// Plays it until it runs.
void start(Stage& stage, const FilmPlayers& film) {
  film.play();
  stage.engine().commit();
  ASSERT_TRUE(film.run());
}

}  // namespace

TEST(Orders, AVolumeThatChangesDuringASeekLeavesSoundAndPictureTogether) {
  Stage stage;
  FilmPlayers film(stage, oneKeyFrame());
  start(stage, film);
  film.seek(8.0);
  film.sound->setVolume(0.5);
  stage.engine().commit();
  ASSERT_TRUE(film.run());
  EXPECT_LT(film.apart(), 0.001);
}

TEST(Orders, AVolumeThatChangesDuringALoadLeavesSoundAndPictureTogether) {
  Stage stage;
  const FilmPlayers film(stage, oneKeyFrame());
  film.seek(8.0);
  film.play();
  stage.engine().commit();
  for (int step = 0; step < 10; ++step) {
    film.sound->setVolume(0.1 * step);
    stage.engine().commit();
    stage.loop().runFor(0.02);
  }
  ASSERT_TRUE(stage.until([&] { return film.picture->position() > 8.1 && film.sound->position() > 8.1; }));
  EXPECT_LT(film.apart(), 0.001);
}

TEST(Orders, ASecondSeekStartsNothingAtThePlaceOfTheFirst) {
  std::atomic<int> starts = 0;
  Options options;
  options.makeSoundSink = [&starts] {
    auto* made = static_cast<Device*>(g_object_new(device_get_type(), "sync", TRUE, nullptr));
    made->starts = &starts;
    return Element(GST_ELEMENT(gst_object_ref_sink(made)));
  };
  Stage stage(std::move(options));
  FilmPlayers film(stage, oneKeyFrame());
  start(stage, film);
  ASSERT_TRUE(stage.until([&] { return starts == 1; }));
  film.seek(9.0);
  stage.engine().commit();
  // The sound is there by now, and waits for its picture.
  stage.loop().runFor(0.35);
  ASSERT_EQ(film.picture->position(), 9.0);
  film.seek(1.0);
  stage.engine().commit();
  ASSERT_TRUE(film.run());
  ASSERT_TRUE(stage.until([&] { return starts >= 2; }));
  EXPECT_EQ(starts, 2);
}

TEST(Orders, ASeekBackFromBeyondTheEndOfTheSoundIsHeardAtOnce) {
  Stage stage;
  FilmPlayers film(stage, soonSilent());
  start(stage, film);
  film.seek(3.5);
  stage.engine().commit();
  ASSERT_TRUE(stage.until([&] { return film.picture->position() > 6.0; }));
  film.seek(1.0);
  stage.engine().commit();
  ASSERT_TRUE(film.run());
  // As an app does that goes to the background and comes back.
  film.sound->stop(), film.picture->pause();
  stage.engine().commit();
  stage.loop().runFor(0.2);
  stage.recording().clear();
  film.play();
  stage.engine().commit();
  ASSERT_TRUE(film.run());
  EXPECT_TRUE(stage.until([&] { return stage.recording().playingAt(now()) >= 0.0; }));
  EXPECT_LT(film.picture->position(), 4.0);
}

TEST(Orders, PlayingAgainAndAgainAsksNoMoreOftenForALostSoundDevice) {
  constexpr double retry = 0.1;
  std::atomic<int> attempts = 0;
  Options options;
  options.soundRetry = retry;
  options.makeSoundSink = [&attempts] {
    ++attempts;
    Element sink = makeElement("fakesink");
    gst_util_set_object_arg(G_OBJECT(sink.get()), "state-error", "null-to-ready");
    return sink;
  };
  Stage stage(std::move(options));
  FilmPlayers film(stage, soonSilent());
  start(stage, film);
  for (int press = 0; press < 20; ++press) {
    film.pause();
    stage.engine().commit();
    film.play();
    stage.engine().commit();
    stage.loop().runFor(0.02);
  }
  const int before = attempts;
  const Instant begin = now();
  stage.loop().runFor(10 * retry);
  EXPECT_LE(attempts - before, seconds(now() - begin) / retry + 2);
}

}  // namespace gstreamer
