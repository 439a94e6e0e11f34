// What is ordered while a film is still on its way to where it was ordered before.

#include "tests/host/gstreamer/Stage.h"

#include <gst/base/gstbasesink.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>

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

/// The two players of one film, as an app makes them, which play.
struct Film {
  Film(Stage& around, const std::string& path)
      : stage(around), sound(around.sound(path)), picture(around.picture(path)) {
    play();
    EXPECT_TRUE(runs());
  }

  void play() { sound->play(), picture->play(), stage.engine().commit(); }
  void seek(double seconds) { picture->seek(seconds), sound->seek(seconds), stage.engine().commit(); }
  double apart() const {
    return leastOf([this] { return std::fabs(sound->position() - picture->position()); });
  }
  bool runs() const {
    const double soundWas = sound->position(), pictureWas = picture->position();
    return stage.until([&] { return sound->position() > soundWas + 0.1 && picture->position() > pictureWas + 0.1; });
  }

  Stage& stage;
  std::unique_ptr<host::SoundPlayer> sound;
  std::unique_ptr<host::PicturePlayer> picture;
};

}  // namespace

TEST(Orders, AVolumeThatChangesDuringASeekLeavesSoundAndPictureTogether) {
  Stage stage;
  Film film(stage, oneKeyFrame());
  film.seek(8.0);
  film.sound->setVolume(0.5);
  stage.engine().commit();
  ASSERT_TRUE(film.runs());
  EXPECT_LT(film.apart(), 0.001);
}

TEST(Orders, AVolumeThatChangesDuringALoadLeavesSoundAndPictureTogether) {
  Stage stage;
  const std::string path = oneKeyFrame();
  const auto sound = stage.sound(path);
  const auto picture = stage.picture(path);
  sound->seek(8.0), picture->seek(8.0);
  sound->play(), picture->play();
  stage.engine().commit();
  for (int step = 0; step < 10; ++step) {
    sound->setVolume(0.1 * step);
    stage.engine().commit();
    stage.loop().runFor(0.02);
  }
  ASSERT_TRUE(stage.until([&] { return picture->position() > 8.1 && sound->position() > 8.1; }));
  EXPECT_LT(leastOf([&] { return std::fabs(sound->position() - picture->position()); }), 0.001);
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
  Film film(stage, oneKeyFrame());
  ASSERT_TRUE(stage.until([&] { return starts == 1; }));
  film.seek(9.0);
  // The sound is there by now, and waits for its picture.
  stage.loop().runFor(0.35);
  ASSERT_EQ(film.picture->position(), 9.0);
  film.seek(1.0);
  ASSERT_TRUE(film.runs());
  ASSERT_TRUE(stage.until([&] { return starts >= 2; }));
  EXPECT_EQ(starts, 2);
}

TEST(Orders, ASeekBackFromBeyondTheEndOfTheSoundIsHeardAtOnce) {
  Stage stage;
  Film film(stage, soonSilent());
  film.seek(3.5);
  ASSERT_TRUE(stage.until([&] { return film.picture->position() > 6.0; }));
  film.seek(1.0);
  ASSERT_TRUE(film.runs());
  // As an app does that goes to the background and comes back.
  film.sound->stop(), film.picture->pause();
  stage.engine().commit();
  stage.loop().runFor(0.2);
  stage.recording().clear();
  film.play();
  ASSERT_TRUE(film.runs());
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
  Film film(stage, soonSilent());
  for (int press = 0; press < 20; ++press) {
    film.sound->pause(), film.picture->pause();
    stage.engine().commit();
    film.play();
    stage.loop().runFor(0.02);
  }
  const int before = attempts;
  const Instant begin = now();
  stage.loop().runFor(10 * retry);
  EXPECT_LE(attempts - before, seconds(now() - begin) / retry + 2);
}

}  // namespace gstreamer
