#include "tests/host/gstreamer/Stage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace gstreamer {

namespace {

std::string film() {
  return clips::film("engine-film.mp4", 320, 180, 6.0, 440, 2);
}

long entriesOf(const char* folder) {
  long entries = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder)) ++entries;
  return entries;
}

long threads() {
  return entriesOf("/proc/self/task");
}
long descriptors() {
  return entriesOf("/proc/self/fd");
}

void loadAndClose(Stage& stage, bool letItPlay) {
  auto sound = stage.sound(film());
  auto picture = stage.picture(film());
  sound->prepare();
  sound->setPan(-1.0);
  sound->play();
  picture->play();
  stage.engine().commit();
  if (letItPlay) stage.until([&] { return picture->position() > 0.05; });
  sound->stop();
  picture->pause();
}

/// For as long as it exists, there is no decoder for `format` in this process.
class WithoutDecoders {
 public:
  explicit WithoutDecoders(const std::string& format) {
    const Caps caps(gst_caps_new_empty_simple(format.c_str()));
    const Factories all(gst_element_factory_list_get_elements(GST_ELEMENT_FACTORY_TYPE_DECODER, GST_RANK_MARGINAL));
    const Factories fitting(gst_element_factory_list_filter(all.get(), caps.get(), GST_PAD_SINK, FALSE));
    for (GList* entry = fitting.get(); entry; entry = entry->next) {
      // A plugin registers its features anew, with their ranks, when the first of them is loaded.
      const std::unique_ptr<GstPluginFeature, ObjectRelease> loaded(
          gst_plugin_feature_load(GST_PLUGIN_FEATURE(entry->data)));
      auto* feature = loaded.get();
      ranks_.emplace_back(gst_plugin_feature_get_name(feature), gst_plugin_feature_get_rank(feature));
      gst_plugin_feature_set_rank(feature, GST_RANK_NONE);
    }
  }
  ~WithoutDecoders() {
    for (const auto& [name, rank] : ranks_) {
      GstPluginFeature* feature = gst_registry_lookup_feature(gst_registry_get(), name.c_str());
      gst_plugin_feature_set_rank(feature, rank);
      gst_object_unref(feature);
    }
  }
  WithoutDecoders(const WithoutDecoders&) = delete;
  WithoutDecoders& operator=(const WithoutDecoders&) = delete;

 private:
  std::vector<std::pair<std::string, guint>> ranks_;
};

}  // namespace

TEST(Life, FiftyFilmsLeaveNoThreadAndNoDescriptorBehind) {
  Stage stage;
  for (int i = 0; i < 3; ++i) loadAndClose(stage, true);
  // Threads that GStreamer keeps for the next task leave by themselves after a while.
  stage.loop().runFor(1.0);
  const long threadsBefore = threads(), descriptorsBefore = descriptors();
  for (int i = 0; i < 50; ++i) loadAndClose(stage, i % 5 == 0);
  EXPECT_TRUE(stage.until([&] { return threads() <= threadsBefore && descriptors() <= descriptorsBefore; }))
      << threads() << " threads, were " << threadsBefore << "; " << descriptors() << " descriptors, were "
      << descriptorsBefore;
}

TEST(Life, TheEngineEndsWhileFilmsPlay) {
  for (const double after : {0.0, 0.02, 0.3}) {
    Stage stage;
    auto sound = stage.sound(film());
    auto picture = stage.picture(film());
    sound->play();
    picture->play();
    stage.engine().commit();
    stage.loop().runFor(after);
    stage.closeEngine();
    EXPECT_EQ(stage.recording().openDevices(), 0);
    // What is left of the players is harmless.
    picture->seek(1.0);
    EXPECT_EQ(picture->position(), 1.0);
  }
}

TEST(Life, AFilmWithoutADecoderIsRefusedAndItsFormatNamed) {
  gst_init(nullptr, nullptr);
  for (const std::string format : {"video/x-h264", "audio/mpeg"}) {
    const WithoutDecoders without(format);
    Stage stage;
    Heard heardSound, heardPicture;
    testing::internal::CaptureStderr();
    auto sound = stage.sound(film(), heardSound);
    auto picture = stage.picture(film(), heardPicture);
    sound->play();
    picture->play();
    stage.engine().commit();
    EXPECT_TRUE(stage.until([&] { return heardPicture.failed == 1; })) << format;
    stage.loop().runFor(0.3);
    EXPECT_EQ(heardPicture.failed, 1) << format;
    EXPECT_EQ(heardPicture.ended, 0) << format;
    EXPECT_TRUE(stage.until([&] { return stage.recording().openDevices() == 0; })) << format;
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("no decoder for " + format));
  }
}

TEST(Life, ATrackWithoutADecoderIsPassedOverWhereThereIsAnotherOne) {
  gst_init(nullptr, nullptr);
  for (const char* codecs : {"aac-opus", "opus-aac"}) {
    const bool beginsWithOpus = codecs[0] == 'o';
    const std::string path = clips::clip(std::string("engine-two-formats-") + codecs + ".mkv",
                                         {"-f",       "lavfi",
                                          "-i",       "testsrc2=size=160x90:rate=30:duration=3",
                                          "-f",       "lavfi",
                                          "-i",       "sine=frequency=440:sample_rate=48000:duration=3",
                                          "-map",     "0",
                                          "-map",     "1",
                                          "-map",     "1",
                                          "-c:v",     "libx264",
                                          "-pix_fmt", "yuv420p",
                                          "-c:a:0",   beginsWithOpus ? "libopus" : "aac",
                                          "-c:a:1",   beginsWithOpus ? "aac" : "libopus"});
    const WithoutDecoders without("audio/mpeg");
    Stage stage;
    Heard heardSound, heardPicture;
    auto sound = stage.sound(path, heardSound);
    auto picture = stage.picture(path, heardPicture);
    sound->play();
    picture->play();
    stage.engine().commit();
    EXPECT_TRUE(stage.until([&] { return stage.recording().playingAt(now()) > 0.0; })) << codecs;
    EXPECT_EQ(heardSound.failed + heardPicture.failed, 0) << codecs;
  }
}

}  // namespace gstreamer
