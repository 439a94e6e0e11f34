#include "tests/host/gstreamer/FilmPlayers.h"
#include "tests/host/gstreamer/LateDevice.h"
#include "tests/host/gstreamer/NumberedPictures.h"
#include "tests/host/gstreamer/Stage.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace gstreamer {

namespace {

constexpr double rate = 30.0;

/// A hundred pictures.
std::string film() {
  return NumberedPictures{.count = 100, .isHeard = true}.clip(
      "engine-numbered-heard.mp4", {"-c:v", "libx264", "-crf", "1", "-g", "45", "-c:a", "aac"});
}

class LateDevices : public testing::TestWithParam<double> {
 protected:
  LateDevices() : stage_(options()), film_(stage_, film()) {}

  void play() {
    film_.play();
    stage_.engine().commit();
  }

  void goBack() {
    film_.pause();
    film_.seek(0.0);
    stage_.engine().commit();
  }

  /// How far the pictures are behind the position, from the second `begin` of the film to `end`. At the best of many
  /// looks: a busy machine is late now and then.
  double lateness(double begin, double end) {
    double least = 1.0;
    stage_.until([&] {
      const double position = film_.picture->position();
      const auto shown = film_.picture->pictures()->newest();
      if (position < begin || !shown) return false;
      least = std::min(least, position - shadeNumber(*shown) / rate);
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
  FilmPlayers film_;
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
