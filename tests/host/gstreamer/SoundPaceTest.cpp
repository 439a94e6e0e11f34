#include "hosts/gstreamer/SoundPace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>

namespace gstreamer {

namespace {

constexpr double together = 0.015;  ///< seconds that nobody notices
constexpr double anHour = 3600.0;
constexpr double aMoment = 0.5;  ///< in which the ways of a device are found out
constexpr double aWhile = 4.0;   ///< in which what has changed is found out
constexpr double sampleRate = 48000.0;

/// A sound device with a clock of its own, which plays one sample after the other from where it was last started, in
/// time that does not pass. What is known of it is what a sound server tells: not quite the truth, and now and then
/// far from it.
class Device {
 public:
  Device(double latency, double partsPerMillion)
      : latency_(latency), rate_(sampleRate * (1 + partsPerMillion * 1e-6)) {}

  void run(double seconds) {
    time_ += seconds;
    played_ += seconds * rate_;
  }
  void standStill(double seconds) { time_ += seconds; }
  void startAnew() {
    startedAt_ = time_;
    played_ = 0.0;
    ++starts_;
  }
  void becomeAnother(double latency) { latency_ = latency; }

  /// How far what is heard is behind its time.
  double lag() const { return latency_ + (time_ - startedAt_) - played_ / sampleRate; }
  double toldLag() {
    ++told_;
    if (told_ % 97 == 0) return lag() + (told_ % 2 == 0 ? 0.6 : -0.6);
    return lag() + inaccuracy_(numbers_);
  }
  double time() const { return time_; }
  int starts() const { return starts_; }

 private:
  double latency_;
  double rate_;
  double time_ = 0.0, startedAt_ = 0.0, played_ = 0.0;
  std::int64_t told_ = 0;
  int starts_ = 0;
  std::mt19937 numbers_{20240229};
  std::uniform_real_distribution<double> inaccuracy_{-0.004, 0.004};
};

/// A film: the sound on the device, and the picture that follows it.
class Film {
 public:
  explicit Film(Device& device) : device_(device) { start(); }

  void start() {
    device_.startAnew();
    pace_.begin(pace_.startLag().value_or(0.0));
  }

  /// Answers the farthest that picture and sound were from each other, once the first `notJudged` seconds were over.
  double play(double length, double notJudged) {
    double apart = 0.0;
    for (const double begin = device_.time(); device_.time() < begin + length;) {
      device_.run(pace_.pause());
      if (device_.time() >= begin + notJudged) apart = std::max(apart, std::fabs(device_.lag() - pace_.delay()));
      if (pace_.take(device_.toldLag()) != SoundPace::Advice::Follow) start();
    }
    return apart;
  }

  const SoundPace& pace() const { return pace_; }

 private:
  Device& device_;
  SoundPace pace_;
};

class Drift : public testing::TestWithParam<double> {};

}  // namespace

TEST_P(Drift, ForAnHourThePictureStaysWithTheSoundAndNoSampleIsCutOrRepeated) {
  for (const double latency : {0.0, 0.04, 0.25}) {
    SCOPED_TRACE(latency);
    Device device(latency, GetParam());
    Film film(device);
    EXPECT_LE(film.play(anHour, aMoment), together);
    // The device did lose or gain, and played on and on from its only start.
    EXPECT_NEAR(device.lag() - latency, -GetParam() * 1e-6 * anHour, 0.001);
    EXPECT_EQ(device.starts(), 1);
  }
}

INSTANTIATE_TEST_SUITE_P(PartsPerMillion, Drift, testing::Values(-250.0, -100.0, -10.0, 0.0, 10.0, 100.0, 250.0),
                         [](const auto& drift) {
                           return (drift.param < 0 ? "Slow" : "Fast") +
                                  std::to_string(static_cast<int>(std::fabs(drift.param)));
                         });

TEST(SoundPace, TheNextStartIsTogetherFromItsBeginning) {
  Device device(0.25, 100.0);
  Film film(device);
  EXPECT_GT(film.play(aMoment, 0.0), together) << "This device cannot tell whether anything was learnt.";
  film.play(anHour, aMoment);
  film.start();
  EXPECT_LE(film.play(aWhile, 0.0), together);
  EXPECT_EQ(device.starts(), 2);
}

TEST(SoundPace, AfterAStallTheSoundGoesOnFromWhereTheFilmIs) {
  for (const double drift : {-100.0, 0.0, 100.0}) {
    SCOPED_TRACE(drift);
    Device device(0.04, drift);
    Film film(device);
    film.play(anHour, aMoment);
    device.standStill(1.0);
    film.play(aWhile, aWhile);
    EXPECT_EQ(device.starts(), 2);
    EXPECT_NEAR(device.lag(), 0.04, 0.001);
    EXPECT_LE(film.play(anHour, 0.0), together);
    EXPECT_EQ(device.starts(), 2);
  }
}

TEST(SoundPace, ADeviceThatWokeUpLateIsStartedAnew) {
  Device device(0.04, 0.0);
  Film film(device);
  device.standStill(1.5);
  film.play(aWhile, aWhile);
  EXPECT_EQ(device.starts(), 2);
  EXPECT_LE(film.play(aWhile, 0.0), together);
}

TEST(SoundPace, ALagThatNoNewStartChangesIsTheWayOfTheDevice) {
  Device device(0.9, 0.0);
  Film film(device);
  film.play(aWhile, aWhile);
  EXPECT_LE(film.play(anHour, 0.0), together);
  EXPECT_EQ(device.starts(), 2);
}

TEST(SoundPace, AnotherDeviceIsFollowed) {
  for (const auto& [one, other, starts] : {std::tuple{0.25, 0.02, 1}, {0.02, 0.12, 1}, {0.02, 0.25, 2}}) {
    SCOPED_TRACE(std::to_string(one) + " to " + std::to_string(other));
    Device device(one, 50.0);
    Film film(device);
    film.play(anHour, aMoment);
    device.becomeAnother(other);
    film.play(aWhile, aWhile);
    EXPECT_LE(film.play(anHour, 0.0), together);
    EXPECT_EQ(device.starts(), starts);
  }
}

TEST(SoundPace, AServerThatHasLostCountIsAskedForAnotherStream) {
  SoundPace pace;
  pace.begin(0.0);
  for (int i = 0; i < 20; ++i) ASSERT_EQ(pace.take(0.02), SoundPace::Advice::Follow);
  EXPECT_EQ(pace.take(-5.0), SoundPace::Advice::Follow);
  EXPECT_EQ(pace.take(-5.0), SoundPace::Advice::Follow);
  EXPECT_EQ(pace.take(-5.0), SoundPace::Advice::Renew);
  EXPECT_NEAR(pace.delay(), 0.02, 0.001);
}

TEST(SoundPace, NoSoundIsBelievedToBeHeardBeforeItWasHandedOver) {
  SoundPace pace;
  pace.begin(0.0);
  for (int i = 0; i < 100; ++i) {
    ASSERT_EQ(pace.take(-1.0), SoundPace::Advice::Follow);
    ASSERT_EQ(pace.delay(), 0.0);
  }
}

}  // namespace gstreamer
