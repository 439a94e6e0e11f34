#include "tests/host/gstreamer/LateDevice.h"
#include "tests/host/gstreamer/Stage.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace gstreamer {

namespace {

constexpr double rate = 30.0;

/// Frame number `n` of 100, at 30 frames a second, is as bright as 16 + 2n.
std::string brightening() {
  return clips::clip(
      "engine-brightening-heard.mp4",
      {"-f", "lavfi", "-i", "color=black:size=64x64:rate=30:duration=3.3,geq=lum='16+2*N':cb=128:cr=128", "-f",
       "lavfi", "-i", "sine=duration=3.3", "-c:v", "libx264", "-crf", "1", "-g", "45", "-pix_fmt", "yuv420p", "-c:a",
       "aac"});
}

class LateDevices : public testing::TestWithParam<double> {
 protected:
  LateDevices() : stage_(options()), sound_(stage_.sound(brightening())), picture_(stage_.picture(brightening())) {}

  void play() {
    sound_->play(), picture_->play();
    stage_.engine().commit();
  }

  void goBack() {
    sound_->pause(), picture_->pause();
    sound_->seek(0.0), picture_->seek(0.0);
    stage_.engine().commit();
  }

  /// How far the pictures are behind the position, from the second `begin` of the film to `end`. At the best of many
  /// looks: a busy machine is late now and then.
  double lateness(double begin, double end) {
    double least = 1.0;
    stage_.until([&] {
      const double position = picture_->position();
      const auto shown = picture_->pictures()->newest();
      if (position < begin || !shown) return false;
      const double frame = colourAt(*shown, shown->width / 2, shown->height / 2).green * 219.0 / 255.0 / 2.0;
      least = std::min(least, position - frame / rate);
      return position >= end;
    });
    return least;
  }

  void expectAsLateAsTheDevice(double late) {
    EXPECT_GT(late, GetParam() - 1.5 / rate);
    EXPECT_LT(late, GetParam() + 3.0 / rate);
  }

 private:
  static Options options() {
    Options options;
    options.makeSoundSink = [] { return makeLateDevice(GetParam()); };
    return options;
  }

 protected:
  Stage stage_;
  std::unique_ptr<host::SoundPlayer> sound_;
  std::unique_ptr<host::PicturePlayer> picture_;
};

}  // namespace

TEST_P(LateDevices, ThePictureComesAsLateAsTheSound) {
  play();
  expectAsLateAsTheDevice(lateness(1.2, 1.8));
  goBack();
  play();
  expectAsLateAsTheDevice(lateness(0.5, 1.0));
}

INSTANTIATE_TEST_SUITE_P(Seconds, LateDevices, testing::Values(0.0, 0.25),
                         [](const auto& latency) { return latency.param > 0.0 ? "Late" : "AtOnce"; });

}  // namespace gstreamer
