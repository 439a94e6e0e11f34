#pragma once

#include "hosts/gstreamer/FactsCache.h"
#include "hosts/gstreamer/Leaps.h"
#include "hosts/gstreamer/Options.h"
#include "hosts/gstreamer/PictureBoard.h"
#include "hosts/gstreamer/PictureMaker.h"
#include "hosts/gstreamer/PipelineThread.h"
#include "hosts/gstreamer/SoundPace.h"
#include "hosts/gstreamer/Target.h"
#include "hosts/gstreamer/Timeline.h"
#include "platform/host/MainLoop.h"
#include "platform/host/MediaEngine.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace gstreamer {

class Deck;

/// What one player was told to do in one turn, everything together.
struct Order {
  bool prepares = false;
  bool stops = false;
  std::optional<bool> plays;
  /// Where the player is to be: the target of a seek, or where a pause found it.
  std::optional<double> position;
  bool seeks = false;
  std::uint64_t announcement = 0;
  std::optional<double> pan;
  std::optional<double> volume;

  /// Whether it changes when or where the player is to start.
  bool concernsStart() const { return plays || position || stops; }
};

/// What all players of an engine share.
struct Surroundings {
  Options options;
  host::MainLoop& mainLoop;
  std::shared_ptr<FactsCache> facts;
  /// The engine's thread.
  std::shared_ptr<TaskQueue> engine;
  /// A deck became ready to start. Engine's thread.
  std::function<void(Deck&)> deckIsReady;
  /// What a deck plays is heard so many seconds late. Engine's thread.
  std::function<void(const Deck&, double)> deckLags;
  /// A deck has come to know where its track ends. Engine's thread.
  std::function<void(const Deck&)> deckRanDry;
  /// What a deck was to play cannot be played at all. Engine's thread.
  std::function<void(const Deck&)> deckIsRefused;
  /// Seconds by which the sound device was late when it was started last. Engine's thread.
  double startLag = 0.0;
  /// A finger holds a slider. Engine's thread.
  bool isScrubbing = false;
};

/// One player behind its main-thread face: keeps the timeline, and makes its pipeline follow it. Everything runs on
/// the engine's thread, which never waits; the pipeline's operations run on a thread of the deck's own, one at a
/// time.
///
/// The timeline does not depend on the pipeline. A sound device that fails leaves a film that runs on in silence, and
/// a film without sound is a deck without a pipeline.
class Deck final : public std::enable_shared_from_this<Deck> {
 public:
  enum class Kind { Picture, Sound };

  struct Setup {
    Kind kind = Kind::Picture;
    std::string url;
    std::string path;
    std::shared_ptr<Timeline> timeline;
    std::weak_ptr<host::PlayerEvents> events;
    std::shared_ptr<PictureBoard> board;  ///< of pictures only
  };

  Deck(std::shared_ptr<Surroundings> surroundings, Setup setup);

  Kind kind() const { return setup_.kind; }
  /// Carries out what needs no agreement with other decks. Whether the deck is to start follows from `waitsForStart`.
  void apply(const Order& order);
  /// Is to run, and its timeline does not yet.
  bool waitsForStart() const { return shallRun_ && !running_ && !closing_; }
  /// Where sound and picture of one film find each other.
  const std::string& url() const { return setup_.url; }
  /// A picture: the sound that belongs to it is heard `lag` seconds late, and the picture comes as late.
  void followSound(double lag);
  /// Where the tracks of `kind` end, in seconds, as far as this deck can tell: 0 where the file has none, none where
  /// it cannot tell (yet).
  std::optional<double> endOf(Kind kind) const;
  /// The media ends at `end`, whatever the file states. Does nothing where that is no news.
  void endAt(double end);
  /// Something else of the same film cannot be played, and the film with it.
  void refuse();
  /// The pipeline stands at the timeline's position, or there is none to wait for.
  bool isReady() const;
  /// No further target is to be expected: what was waited with for it is done now.
  void settle();
  /// The timeline runs from `instant`; a pipeline that is not ready follows as soon as it is.
  void start(Instant instant);
  /// Ends everything. `closed` is called, on the engine's thread, when the last of the pipeline is gone.
  void close(std::function<void()> closed);
  /// Leaves the deck's thread to itself, which is stuck closing the pipeline.
  void abandon() { thread_.abandon(); }

 private:
  using Work = std::function<bool(Pipeline&)>;
  /// What became of an operation on the pipeline.
  struct Outcome {
    bool well = false;
    bool isEmpty = false;
    bool hasGrown = false;
  };

  bool hasPipeline() const { return thread_.pipeline() != nullptr; }
  Pipeline& pipeline() const { return *thread_.pipeline(); }
  bool wantsPipeline() const;
  void reorient(const Order& order);
  void moveTo(double position);
  void standStill(double position);
  void advance();
  void learn();
  void learned(const host::MediaFacts& facts);
  void openPipeline();
  void followBox();
  void watchDecoder(const std::weak_ptr<Pipeline>& watched);
  std::unique_ptr<Branch> makeBranch() const;
  void dropPipeline();
  void pausePipeline();
  void seekPipeline();
  void submit(Work work);
  void finished(const Outcome& outcome);
  void inspect();
  void handle(const Trouble& trouble);
  void loseSound();
  void retrySoundLater();
  void retrySound();
  void drained();
  void runDry(bool hasGrown);
  void reopen();
  void reopenForMore();
  bool endsEarly(double position) const;
  void passDamage();
  std::optional<double> nextLeap();
  void giveUp();
  double position() const;
  void fail();
  bool isFarAhead() const;
  void join();
  void runPipeline();
  void followDevice();
  void watchLag(std::uint64_t watch);
  void lags(double lag);
  void skipStall();
  Instant endsAt() const;
  void expectEnd();
  void reachEnd();
  void post(std::function<void()> host::PlayerEvents::*event);
  /// `task` on the engine's thread at `time`, unless the deck is gone by then.
  void later(Instant time, void (Deck::*task)());
  double pipelineTarget(double position) const;
  Precision precisionAt(double position) const;

  std::shared_ptr<Surroundings> surroundings_;
  Setup setup_;
  std::shared_ptr<PictureMaker> maker_;

  // What was commanded.
  bool wanted_ = false;
  bool shallRun_ = false;
  double pan_ = 0.0;
  double volume_ = 1.0;

  // What the timeline does.
  bool running_ = false;
  Instant runningSince_ = 0;
  double runningFrom_ = 0.0;
  double heldAt_ = 0.0;
  std::uint64_t run_ = 0;  ///< changes with the run and its end, so that a timer knows whether it is still meant
  bool atEnd_ = false;

  // What is known of the file.
  bool learned_ = false;
  std::ptrdiff_t streams_ = 0;  ///< of this kind
  bool hasOther_ = false;       ///< a stream of the other kind
  host::Orientation orientation_;
  bool broken_ = false;
  /// Nothing more comes from here on.
  std::optional<double> dryFrom_;

  // What the pipeline does.
  /// It came to the end of a file that grows, and is to be made anew.
  std::weak_ptr<Pipeline> waitsForMore_;
  bool busy_ = false;
  bool pipelineRuns_ = false;
  Hardware hardware_ = Hardware::Preferred;
  bool soundLost_ = false;
  int failedRetries_ = 0;   ///< at a sound device, one after the other
  std::string lastReason_;  ///< why the pipeline failed, until one does not
  bool everReady_ = false;
  bool retries_ = false;  ///< an attempt at a sound device is on its way
  Leaps leaps_;
  /// Seconds that the next pipeline leaves out.
  double leap_ = 0.0;
  /// Where the pipeline has to be brought before it is ready.
  Target target_;
  double standsAt_ = 0.0;
  int catchingUp_ = 0;
  std::uint64_t watch_ = 0;  ///< changes when the pipeline starts and runs dry
  SoundPace pace_;
  double delay_ = 0.0;
  bool closing_ = false;

  /// Last, so that it ends first.
  PipelineThread thread_;
};

}  // namespace gstreamer
