#include "tests/host/gstreamer/SoundServer.h"
#include "tests/host/gstreamer/Stage.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <csignal>

namespace gstreamer {

namespace {

constexpr double turn = 8.0;  ///< seconds until the levels begin again
constexpr float step = 0.1F;  ///< of the level in one second
constexpr float least = 0.05F;
constexpr double soundRetry = 0.5;

/// A film of one minute that can be heard to the millisecond: the level of its sound tells the time.
std::string clock() {
  return clips::clip(
      "engine-clock.mkv",
      {"-f",   "lavfi",   "-i",          "aevalsrc=exprs=0.05+0.1*mod(t\\,8):sample_rate=48000:duration=60",
       "-f",   "lavfi",   "-i",          "testsrc2=size=64x48:rate=25:duration=60",
       "-map", "1:v",     "-map",        "0:a",
       "-c:v", "libx264", "-pix_fmt",    "yuv420p",
       "-c:a", "flac",    "-sample_fmt", "s16"});
}

/// A film of one minute whose sound stands still at a level, which tells it from others.
std::string steady(const std::string& level) {
  return clips::clip("engine-steady-" + level + ".mkv",
                     {"-f",   "lavfi",   "-i",          "aevalsrc=exprs=" + level + ":sample_rate=48000:duration=60",
                      "-f",   "lavfi",   "-i",          "testsrc2=size=64x48:rate=25:duration=60",
                      "-map", "1:v",     "-map",        "0:a",
                      "-c:v", "libx264", "-pix_fmt",    "yuv420p",
                      "-c:a", "flac",    "-sample_fmt", "s16"});
}

bool isAbout(float level, float meant) {
  return std::fabs(level - meant) < 0.02F;
}

bool isHeard(float level) {
  return level >= least * 0.9F;
}

/// Seconds of the film from which `level` is, but for whole turns.
double timeIn(float level) {
  return static_cast<double>((level - least) / step);
}

double apart(double one, double other) {
  return std::fabs(std::remainder(one - other, turn));
}

/// Two films of the same clock, one for each ear, on a sound server of the test's own.
class SoundServers : public testing::Test {
 protected:
  SoundServers() : stage_(options()) {}

  void load() { load({clock(), clock()}); }

  void load(const std::array<std::string, 2>& paths) {
    for (int i = 0; i < 2; ++i) {
      const auto& path = paths.at(static_cast<std::size_t>(i));
      auto& film = films_.at(static_cast<std::size_t>(i));
      film.sound = stage_.sound(path, heard_);
      film.picture = stage_.picture(path, heard_);
      film.sound->setPan(i == 0 ? -1.0 : 1.0);
      film.sound->play();
      film.picture->play();
    }
    stage_.engine().commit();
  }

  /// Both ears hear their film at the place where it is. (The capture itself is late by some of a second, and on a
  /// busy machine one device may start later than the other, which its own picture follows.)
  testing::AssertionResult areHeard(const Listener& listener) {
    std::array<double, 2> heard{};
    double place = 0.0;
    const bool are = stage_.until([&] {
      const auto level = listener.newest();
      heard = {timeIn(level[0]), timeIn(level[1])};
      place = films_[0].picture->position();
      return isHeard(level[0]) && isHeard(level[1]) && apart(heard[0], place) < 0.4 &&
             apart(heard[0], heard[1]) < 0.1;
    });
    if (are) return testing::AssertionSuccess();
    return testing::AssertionFailure() << heard[0] << " and " << heard[1] << " s are heard at " << place << " s";
  }

  /// Of what `steady` gives, the left ear hears `left` and the right one `right`.
  bool areInTheirEars(const Listener& listener, float left, float right) {
    return stage_.until([&] {
      const auto level = listener.newest();
      return isAbout(level[0], left) && isAbout(level[1], right);
    });
  }

  /// As the user does who drags them to another device.
  void moveTo(const std::string& sink, const std::string& whichOfThem = "cat") {
    const std::string pactl = "pactl --server=" + server_.address();
    Process({"sh", "-c",
             "for stream in $(" + pactl + " list short sink-inputs | cut -f1 | " + whichOfThem + "); do " + pactl +
                 " move-sink-input $stream " + sink + "; done"})
        .wait();
  }

  bool picturesMove() {
    const auto counts = [this](std::size_t film) { return films_.at(film).picture->pictures()->counts().shown; };
    const std::uint64_t one = counts(0), two = counts(1);
    return stage_.until([&] { return counts(0) > one + 10 && counts(1) > two + 10; });
  }

  void expectNothingEnded() { EXPECT_EQ(heard_.ended + heard_.failed, 0); }

 private:
  Options options() {
    Options options;
    options.soundRetry = soundRetry;
    options.closingPatience = 0.5;
    options.soundTaken = [this] { ++taken_; };
    options.makeSoundSink = [this] { return ++attempts_, makeSoundServerSink(); };
    return options;
  }

 protected:
  struct Film {
    std::unique_ptr<host::SoundPlayer> sound;
    std::unique_ptr<host::PicturePlayer> picture;
  };

  SoundServer server_;
  std::atomic<int> attempts_ = 0, taken_ = 0;
  Stage stage_;
  Heard heard_;
  std::array<Film, 2> films_;
};

}  // namespace

TEST_F(SoundServers, BothEarsAreHeardWhereTheFilmsAre) {
  ASSERT_TRUE(server_.start());
  const Listener listener(server_, "first");
  load();
  EXPECT_TRUE(areHeard(listener));
  for (const auto& frame : listener.everything()) {
    ASSERT_GE(frame[0], 0.0F);
    ASSERT_GE(frame[1], 0.0F);
  }
}

TEST_F(SoundServers, SoundReturnsAfterTheServerWasKilled) {
  ASSERT_TRUE(server_.start());
  load();
  ASSERT_TRUE(areHeard(Listener(server_, "first")));
  for (int i = 0; i < 2; ++i) {
    server_.kill();
    EXPECT_TRUE(picturesMove());
    stage_.loop().runFor(1.2);
    EXPECT_TRUE(picturesMove());
    ASSERT_TRUE(server_.start());
    EXPECT_TRUE(areHeard(Listener(server_, "first")));
  }
  expectNothingEnded();
}

TEST_F(SoundServers, SoundComesOnceThereIsAServer) {
  const double loaded = stage_.loop().now();
  load();
  EXPECT_TRUE(picturesMove());
  stage_.loop().runFor(2.0);
  // One for each film, and then not more often than every half second, however long loading took.
  const int attempts = attempts_;
  EXPECT_LE(attempts, 2 * (1 + static_cast<int>((stage_.loop().now() - loaded) / soundRetry)));
  ASSERT_TRUE(server_.start());
  EXPECT_TRUE(areHeard(Listener(server_, "first")));
  expectNothingEnded();
}

TEST_F(SoundServers, SoundFollowsTheDefaultSink) {
  ASSERT_TRUE(server_.start({"first", "second"}));
  server_.command({"set-default-sink", "first"});
  load();
  ASSERT_TRUE(areHeard(Listener(server_, "first")));
  server_.command({"set-default-sink", "second"});
  EXPECT_TRUE(areHeard(Listener(server_, "second")));
  EXPECT_TRUE(picturesMove());
  server_.command({"set-default-sink", "first"});
  EXPECT_TRUE(areHeard(Listener(server_, "first")));
  expectNothingEnded();
}

TEST_F(SoundServers, SoundMovesAwayFromASinkThatVanishes) {
  ASSERT_TRUE(server_.start({"first", "second"}));
  server_.command({"set-default-sink", "first"});
  load();
  ASSERT_TRUE(areHeard(Listener(server_, "first")));
  server_.removeSink("first");
  EXPECT_TRUE(areHeard(Listener(server_, "second")));
  EXPECT_TRUE(picturesMove());
  expectNothingEnded();
}

TEST_F(SoundServers, SoundReturnsOnceThereIsASinkAgain) {
  ASSERT_TRUE(server_.start());
  load();
  ASSERT_TRUE(areHeard(Listener(server_, "first")));
  server_.removeSink("first");
  EXPECT_TRUE(picturesMove());
  stage_.loop().runFor(1.2);
  server_.addSink("second");
  EXPECT_TRUE(areHeard(Listener(server_, "second")));
  EXPECT_TRUE(picturesMove());
  expectNothingEnded();
}

TEST_F(SoundServers, EachFilmStaysInItsEarWhereverTheSoundGoes) {
  ASSERT_TRUE(server_.start({"first", "second"}));
  server_.command({"set-default-sink", "first"});
  load({steady("0.2"), steady("0.6")});
  ASSERT_TRUE(areInTheirEars(Listener(server_, "first"), 0.2F, 0.6F));
  server_.command({"set-default-sink", "second"});
  EXPECT_TRUE(areInTheirEars(Listener(server_, "second"), 0.2F, 0.6F));
  moveTo("first");
  EXPECT_TRUE(areInTheirEars(Listener(server_, "first"), 0.2F, 0.6F));
  server_.removeSink("first");
  EXPECT_TRUE(areInTheirEars(Listener(server_, "second"), 0.2F, 0.6F));
  server_.removeSink("second");
  EXPECT_TRUE(picturesMove());
  server_.addSink("third");
  EXPECT_TRUE(areInTheirEars(Listener(server_, "third"), 0.2F, 0.6F));
  EXPECT_TRUE(picturesMove());
  expectNothingEnded();
}

TEST_F(SoundServers, AFilmThatIsMovedAloneIsHeardInItsEarThere) {
  ASSERT_TRUE(server_.start({"first", "second"}));
  server_.command({"set-default-sink", "first"});
  load({steady("0.2"), steady("0.6")});
  const Listener first(server_, "first"), second(server_, "second");
  ASSERT_TRUE(areInTheirEars(first, 0.2F, 0.6F));
  moveTo("second", "head -n 1");
  EXPECT_TRUE(stage_.until([&] {
    const auto here = first.newest(), there = second.newest();
    const bool leftMoved = isAbout(there[0], 0.2F) && there[1] == 0.0F && here[0] == 0.0F && isAbout(here[1], 0.6F);
    const bool rightMoved = there[0] == 0.0F && isAbout(there[1], 0.6F) && isAbout(here[0], 0.2F) && here[1] == 0.0F;
    return leftMoved || rightMoved;
  }));
  EXPECT_TRUE(picturesMove());
  server_.removeSink("second");
  EXPECT_TRUE(areInTheirEars(first, 0.2F, 0.6F));
  expectNothingEnded();
}

TEST_F(SoundServers, SoundGoesOnInTheRightPlaceAfterTheServerStoodStill) {
  ASSERT_TRUE(server_.start());
  const Listener listener(server_, "first");
  load();
  ASSERT_TRUE(areHeard(listener));
  for (int i = 0; i < 3; ++i) {
    server_.signal(SIGSTOP);
    EXPECT_TRUE(picturesMove());
    stage_.loop().runFor(1.5);
    server_.signal(SIGCONT);
    EXPECT_TRUE(areHeard(listener)) << i;
    stage_.loop().runFor(1.0);
    EXPECT_TRUE(areHeard(listener)) << i;
  }
  expectNothingEnded();
}

TEST_F(SoundServers, AFilmPausedWhileThereIsNoServerIsHeardWhenItGoesOn) {
  ASSERT_TRUE(server_.start());
  load();
  ASSERT_TRUE(areHeard(Listener(server_, "first")));
  server_.kill();
  for (auto& film : films_) film.sound->pause(), film.picture->pause();
  stage_.engine().commit();
  stage_.loop().runFor(0.7);
  ASSERT_TRUE(server_.start());
  for (auto& film : films_) film.sound->play(), film.picture->play();
  stage_.engine().commit();
  EXPECT_TRUE(areHeard(Listener(server_, "first")));
  expectNothingEnded();
}

TEST_F(SoundServers, AFilmWhoseSinkVanishesWhileItStandsStillIsHeardWhenItGoesOn) {
  ASSERT_TRUE(server_.start({"first", "second"}));
  server_.command({"set-default-sink", "first"});
  load({steady("0.2"), steady("0.6")});
  ASSERT_TRUE(areInTheirEars(Listener(server_, "first"), 0.2F, 0.6F));
  for (auto& film : films_) film.sound->pause(), film.picture->pause();
  stage_.engine().commit();
  stage_.loop().runFor(0.5);  // sought and ready to go on
  server_.removeSink("second");
  server_.removeSink("first");
  server_.addSink("third");
  for (auto& film : films_) film.sound->play(), film.picture->play();
  stage_.engine().commit();
  EXPECT_TRUE(areInTheirEars(Listener(server_, "third"), 0.2F, 0.6F));
  EXPECT_TRUE(picturesMove());
  expectNothingEnded();
}

TEST_F(SoundServers, ACallThatTakesTheSoundIsTold) {
  ASSERT_TRUE(server_.start());
  server_.command({"load-module", "module-role-cork", "trigger_roles=phone", "cork_roles=video"});
  const Listener listener(server_, "first");
  load();
  ASSERT_TRUE(areHeard(listener));
  EXPECT_EQ(taken_, 0);
  {
    const Process call(
        {"pacat", "--server=" + server_.address(), "--raw", "--property=media.role=phone", "/dev/zero"});
    EXPECT_TRUE(stage_.until([&] { return taken_ == 2; }));
    for (auto& film : films_) film.sound->pause(), film.picture->pause();
    stage_.engine().commit();
    EXPECT_TRUE(stage_.until([&] { return !isHeard(listener.newest()[0]) && !isHeard(listener.newest()[1]); }));
  }
  for (auto& film : films_) film.sound->play(), film.picture->play();
  stage_.engine().commit();
  EXPECT_TRUE(areHeard(listener));
  expectNothingEnded();
}

}  // namespace gstreamer
