#pragma once

#include "hosts/gstreamer/Engine.h"
#include "hosts/gstreamer/Instant.h"
#include "tests/support/Clips.h"

#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace gstreamer {

/// A main loop that does what was posted only when it is asked to.
class TestLoop final : public host::MainLoop {
 public:
  double now() const override { return seconds(gstreamer::now()); }
  void wakeAt(double) override {}
  void post(std::function<void()> work) override;

  void runPosted();
  /// Until `happened`, or until nobody would wait any longer; then false.
  bool runUntil(const std::function<bool()>& happened);
  void runFor(double time);

 private:
  std::mutex mutex_;
  std::deque<std::function<void()>> posted_;
};

/// What went into the sound sinks of a stage, sample by sample, as it became due.
class Recording {
 public:
  struct Sound {
    std::vector<float> left;
    std::vector<float> right;
    double begin = 0.0;  ///< of the first sample, in seconds of its medium
  };

  /// A sink that keeps to the clock and records.
  Element makeSink();

  Sound sound() const;
  void clear();
  /// How many buffers were marked as gaps, which a sound device would pass over instead of playing them.
  int gaps() const;
  /// How many buffers held anything but zeros for both ears.
  int forBothEars() const;
  /// How many sinks there are that have the device (are not in the null state).
  int openDevices() const;
  /// Whether all sinks have been told to stand still.
  bool standsStill() const;
  /// What the newest running sink is to play at `instant`, in seconds of its medium; negative when none runs.
  double playingAt(Instant instant) const;

 private:
  /// Knows a sink for as long as the engine keeps it.
  class WeakSink {
   public:
    explicit WeakSink(GstElement& sink) { g_weak_ref_init(&reference_, &sink); }
    ~WeakSink() { g_weak_ref_clear(&reference_); }
    WeakSink(const WeakSink&) = delete;
    WeakSink& operator=(const WeakSink&) = delete;
    Element get() const { return Element(static_cast<GstElement*>(g_weak_ref_get(&reference_))); }

   private:
    mutable GWeakRef reference_{};
  };

  void take(GstElement& sink, const Sample& sample);

  mutable std::mutex mutex_;
  Sound sound_;
  std::deque<WeakSink> sinks_;
  int gaps_ = 0;
  int forBothEars_ = 0;
  Instant base_ = 0;
  bool runs_ = false;
};

/// What a player told.
struct Heard {
  int ended = 0;
  int failed = 0;
  host::PlayerEvents events();
};

/// An engine that records its sound, on a loop that the test drives.
class Stage {
 public:
  explicit Stage(Options changes = {});
  ~Stage();

  std::unique_ptr<host::SoundPlayer> sound(const std::string& path, Heard& heard);
  std::unique_ptr<host::SoundPlayer> sound(const std::string& path);
  /// With a box of `width` x `height`.
  std::unique_ptr<host::PicturePlayer> picture(const std::string& path, Heard& heard, int width = 320,
                                               int height = 180);
  std::unique_ptr<host::PicturePlayer> picture(const std::string& path);

  host::MediaEngine& engine() { return *engine_; }
  TestLoop& loop() { return loop_; }
  Recording& recording() { return *recording_; }
  bool until(const std::function<bool()>& happened) { return loop_.runUntil(happened); }
  /// Factories of all elements that ever became part of a pipeline.
  std::multiset<std::string> elements() const;
  void closeEngine() { engine_.reset(); }

 private:
  TestLoop loop_;
  std::shared_ptr<Recording> recording_ = std::make_shared<Recording>();
  mutable std::mutex mutex_;
  std::multiset<std::string> elements_;
  Heard ignored_;
  std::unique_ptr<host::MediaEngine> engine_;
};

/// The least of some looks at how far two readings, taken one after the other, are apart: a machine that halts
/// between the two sets them apart, but hardly every time.
double leastOf(const std::function<double()>& look);

/// The largest sample.
float peak(const std::vector<float>& samples);
/// Whether every sample is zero to the bit.
bool isExactlyZero(const std::vector<float>& samples);

struct Colour {
  int red = 0;
  int green = 0;
  int blue = 0;
};
Colour colourAt(const host::Picture& picture, int x, int y);

}  // namespace gstreamer
