#include "hosts/gstreamer/Deck.h"

#include "hosts/gstreamer/PictureBranch.h"
#include "hosts/gstreamer/SoundBranch.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace gstreamer {

namespace {

/// Targets of seeks that follow each other faster than this are those of a moving finger.
constexpr Instant settling = nanoseconds(0.1);
/// A pipeline that would be later than this skips ahead rather than hurry after the others. Sound cannot hurry.
constexpr double tolerableLatenessOfPicture = 0.1;
constexpr double tolerableLatenessOfSound = 0.005;
/// How far ahead of the timeline a late pipeline is brought, to be there when the timeline arrives.
constexpr double headStart = 0.25;
constexpr int mostSkips = 3;
/// How often the sound device is compared with the clock.
constexpr Instant lagInterval = nanoseconds(0.2);
/// A device that is later than this did not drift but stall, and the sound skips what it missed.
constexpr double stall = 0.15;
/// So many comparisons in a row tell a stall from a guess of the server.
constexpr int certainStall = 3;
/// Nothing is heard before it was handed over; a server that says so is still guessing.
constexpr double mostLead = -0.05;
/// How far the picture is moved at a time: at this interval a change of speed by a twentieth, which nobody sees.
constexpr double leastDelayStep = 0.001;
constexpr double mostDelayStep = 0.01;
/// A film's last picture begins at least this long before its end.
constexpr double lastPicture = 0.1;

}  // namespace

Deck::Deck(std::shared_ptr<Surroundings> surroundings, Setup setup)
    : surroundings_(std::move(surroundings)),
      setup_(std::move(setup)),
      worker_(setup_.kind == Kind::Picture ? "film-picture" : "film-sound") {
  if (!setup_.board) return;
  maker_ = std::make_shared<PictureMaker>(setup_.board);
  setup_.board->whenBoxChanges(
      [queue = worker_.queue(), maker = maker_] { queue->post([maker] { maker->makeAgain(); }); });
}

bool Deck::wantsPipeline() const {
  return wanted_ && hasStream_ && !broken_ && !soundLost_;
}

bool Deck::isReady() const {
  if (!learned_) return false;
  return !wantsPipeline() || (hasPipeline() && !busy_ && !aim_);
}

void Deck::apply(const Order& order) {
  if (closing_) return;
  if (order.prepares) wanted_ = true;
  if (order.volume) volume_ = *order.volume;
  reorient(order);
  if (order.plays) shallRun_ = *order.plays;
  if (order.position) {
    if (order.seeks) {
      moveTo(*order.position);
    } else {
      standStill(*order.position);
    }
    setup_.timeline->carriedOut(order.announcement);
  }
  if (order.stops) wanted_ = false;
  if (shallRun_) {
    if (atEnd_ && setup_.kind == Kind::Sound) moveTo(0.0);
    if (atEnd_) shallRun_ = false;
    wanted_ = true;
  }
  // Another attempt at a sound device that failed; while the film runs, a timer makes them.
  if ((order.prepares || order.plays.value_or(false)) && !running_) soundLost_ = false;
  advance();
}

void Deck::reorient(const Order& order) {
  if (order.pan && *order.pan != pan_) {
    pan_ = *order.pan;
    if (hasPipeline()) dropPipeline();
  }
  if (order.volume && hasPipeline()) {
    worker_.queue()->post([pipeline = pipeline_, volume = volume_] {
      if (auto* branch = static_cast<SoundBranch*>(pipeline->branch())) branch->setVolume(volume);
    });
  }
}

/// A seek: the timeline stands at the target until all that take part are there.
void Deck::moveTo(double position) {
  const double length = setup_.timeline->length();
  const double target = std::max(0.0, length > 0.0 ? std::min(position, length) : position);
  const Instant time = now();
  const bool quickly = time - lastTarget_ < settling;
  lastTarget_ = time;
  settlesAt_ = quickly ? time + settling : 0;
  atEnd_ = false;
  broken_ = false;
  standStill(target);
  aim_ = target;
}

void Deck::standStill(double position) {
  setup_.timeline->hold(position);
  heldAt_ = position;
  running_ = false;
  ++run_;
  if (!pipelineRuns_) return;
  pausePipeline();
  // What a sound device holds of the next fraction of a second is thrown away and decoded anew, so that the sound
  // goes on from the very sample at which the timeline stands.
  if (setup_.kind == Kind::Sound) aim_ = position;
}

/// The next step towards what is wanted, whenever something changed. One operation on the pipeline at a time, but it
/// is dropped at once even where an operation is stuck.
void Deck::advance() {
  if (closing_) return;
  if (hasPipeline() && !wantsPipeline()) dropPipeline();
  if (busy_) return;
  if (!learned_) {
    if (wanted_) learn();
  } else if (!wantsPipeline()) {
    if (waitsForStart()) surroundings_->deckIsReady(*this);
  } else if (!hasPipeline()) {
    openPipeline();
  } else if (aim_) {
    seekPipeline();
  } else if (waitsForStart()) {
    surroundings_->deckIsReady(*this);
  } else if (running_ && !pipelineRuns_) {
    join();
  }
}

void Deck::learn() {
  busy_ = true;
  worker_.queue()->post([weak = weak_from_this(), surroundings = surroundings_, url = setup_.url] {
    surroundings->engine->post([weak, facts = surroundings->facts->facts(url)] {
      if (const auto deck = weak.lock()) deck->learned(facts);
    });
  });
}

void Deck::learned(const host::MediaFacts& facts) {
  busy_ = false;
  learned_ = true;
  const auto wanted = setup_.kind == Kind::Picture ? host::TrackKind::Video : host::TrackKind::Audio;
  hasStream_ = std::any_of(facts.tracks.begin(), facts.tracks.end(),
                           [wanted](const host::TrackFacts& track) { return track.kind == wanted; });
  setup_.timeline->setLength(facts.duration);
  if (!facts.readable) fail();
  advance();
}

void Deck::openPipeline() {
  Pipeline::Setup setup;
  setup.path = setup_.path;
  setup.branch = makeBranch();
  setup.hardware = hardware_;
  setup.tellElement = surroundings_->options.tellElement;
  const auto tell = [weak = weak_from_this(), engine = surroundings_->engine](void (Deck::*task)()) {
    return [weak, engine, task] {
      engine->post([weak, task] {
        if (const auto deck = weak.lock()) (deck.get()->*task)();
      });
    };
  };
  setup.troubled = tell(&Deck::inspect);
  setup.drained = tell(&Deck::drained);
  pipeline_ = std::make_shared<Pipeline>(std::move(setup));
  aim_.reset();
  standsAt_ = pipelineTarget(running_ ? position() + headStart : position());
  submit([target = standsAt_](Pipeline& pipeline) { return pipeline.open(target); });
}

std::unique_ptr<Branch> Deck::makeBranch() const {
  if (setup_.kind == Kind::Picture) return std::make_unique<PictureBranch>(maker_, setup_.board);
  return std::make_unique<SoundBranch>(surroundings_->options.makeSoundSink, pan_, volume_);
}

void Deck::dropPipeline() {
  pipeline_->interrupt();
  worker_.queue()->post([pipeline = std::move(pipeline_)] { pipeline->close(); });
  pipeline_.reset();
  pipelineRuns_ = false;
  busy_ = false;
  aim_.reset();
}

void Deck::pausePipeline() {
  pipelineRuns_ = false;
  worker_.queue()->post([pipeline = pipeline_] { pipeline->pause(); });
}

void Deck::seekPipeline() {
  const bool settled = now() >= settlesAt_;
  if (!settled) {
    later(settlesAt_, &Deck::advance);
    // Sound that jumps along with a finger would only crackle.
    if (setup_.kind == Kind::Sound || previewed_ == aim_) return;
    previewed_ = aim_;
  } else {
    previewed_.reset();
  }
  standsAt_ = pipelineTarget(*aim_);
  if (settled) aim_.reset();
  submit([target = standsAt_, settled](Pipeline& pipeline) {
    return pipeline.seek(target, settled ? Precision::Exact : Precision::KeyFrame);
  });
}

/// At the very end there is no picture any more; the last one is meant.
double Deck::pipelineTarget(double position) const {
  const double length = setup_.timeline->length();
  if (setup_.kind == Kind::Sound || length <= 0.0) return position;
  return std::clamp(position, 0.0, std::max(0.0, length - lastPicture));
}

void Deck::submit(Work work) {
  busy_ = true;
  worker_.queue()->post([weak = weak_from_this(), engine = surroundings_->engine, pipeline = pipeline_, work] {
    const bool well = work(*pipeline);
    engine->post([weak, pipeline, well] {
      const auto deck = weak.lock();
      if (deck && deck->pipeline_ == pipeline) deck->finished(well);
    });
  });
}

void Deck::finished(bool well) {
  busy_ = false;
  const auto trouble = pipeline_->trouble();
  if (well && !trouble) {
    advance();
  } else {
    handle(trouble.value_or(Trouble{Trouble::Where::Media, "the pipeline could not be prepared"}));
  }
}

void Deck::inspect() {
  // The outcome of an operation that is under way tells of its trouble by itself.
  if (busy_ || !hasPipeline()) return;
  if (const auto trouble = pipeline_->trouble()) handle(*trouble);
}

void Deck::handle(const Trouble& trouble) {
  std::fprintf(stderr, "%s: %s\n", setup_.path.c_str(), trouble.reason.c_str());
  dropPipeline();
  switch (trouble.where) {
    case Trouble::Where::Sink:
      loseSound();
      break;
    case Trouble::Where::HardwareDecoder:
      hardware_ = Hardware::Avoided;
      break;
    case Trouble::Where::Media:
      fail();
      break;
  }
  advance();
}

/// The film runs on unheard, and the device is asked for again now and then.
void Deck::loseSound() {
  soundLost_ = true;
  later(now() + nanoseconds(surroundings_->options.soundRetry), &Deck::retrySound);
}

void Deck::retrySound() {
  if (!soundLost_ || !running_) return;
  soundLost_ = false;
  advance();
}

void Deck::fail() {
  standStill(position());
  shallRun_ = false;
  atEnd_ = true;
  broken_ = true;
  post(&host::PlayerEvents::failed);
}

void Deck::drained() {
  if (running_ && setup_.timeline->length() <= 0.0) reachEnd();
}

double Deck::position() const {
  return running_ ? runningFrom_ + seconds(std::max<Instant>(0, now() - runningSince_)) : heldAt_;
}

void Deck::start(Instant instant) {
  running_ = true;
  skippedStall_ = false;
  stalls_ = 0;
  runningFrom_ = heldAt_;
  runningSince_ = instant;
  catchingUp_ = 0;
  setup_.timeline->run(runningFrom_, instant);
  expectEnd();
  if (hasPipeline() && isReady()) runPipeline();
}

/// The pipeline has become ready while the timeline was running already.
void Deck::join() {
  const bool sound = setup_.kind == Kind::Sound;
  const bool late = position() - standsAt_ > (sound ? tolerableLatenessOfSound : tolerableLatenessOfPicture);
  if (late && catchingUp_ < mostSkips) {
    ++catchingUp_;
    aim_ = position() + headStart;
    advance();
  } else {
    runPipeline();
  }
}

void Deck::runPipeline() {
  pipelineRuns_ = true;
  worker_.queue()->post([pipeline = pipeline_, from = runningFrom_, since = runningSince_, delay = delay_] {
    if (pipeline->branch()) pipeline->branch()->setDelay(delay);
    pipeline->run(from, since);
  });
  if (setup_.kind == Kind::Sound) watchLag(++watch_);
}

void Deck::watchLag(std::uint64_t watch) {
  if (!pipelineRuns_ || watch != watch_) return;
  worker_.queue()->post([weak = weak_from_this(), engine = surroundings_->engine, pipeline = pipeline_] {
    const auto lag = pipeline->branch() ? pipeline->branch()->lag() : std::nullopt;
    if (!lag) return;
    engine->post([weak, pipeline, lag] {
      const auto deck = weak.lock();
      if (deck && deck->pipeline_ == pipeline && deck->pipelineRuns_) deck->lags(*lag);
    });
  });
  surroundings_->engine->postAt(now() + lagInterval, [weak = weak_from_this(), watch] {
    if (const auto deck = weak.lock()) deck->watchLag(watch);
  });
}

/// The device's own pace is followed by the picture; the sound is never cut for it. Only where the device stood still
/// for a while, and so was heard to stop anyway, it goes on from where the film is. What lags still after that is the
/// way of the device.
void Deck::lags(double lag) {
  stalls_ = lag > stall ? stalls_ + 1 : 0;
  if (stalls_ >= certainStall && !skippedStall_) {
    skippedStall_ = true;
    pausePipeline();
    aim_ = position() + headStart;
    advance();
  } else if (lag > mostLead) {
    surroundings_->deckLags(*this, lag);
  }
}

void Deck::followSound(double lag) {
  const double step = std::clamp(lag - delay_, -mostDelayStep, mostDelayStep);
  if (std::abs(step) < leastDelayStep || !pipelineRuns_) return;
  delay_ += step;
  worker_.queue()->post([pipeline = pipeline_, delay = delay_] {
    if (pipeline->branch()) pipeline->branch()->setDelay(delay);
  });
}

void Deck::expectEnd() {
  const double length = setup_.timeline->length();
  if (length <= 0.0) return;
  const Instant end = runningSince_ + nanoseconds(std::max(0.0, length - runningFrom_));
  surroundings_->engine->postAt(end, [weak = weak_from_this(), run = ++run_] {
    const auto deck = weak.lock();
    if (deck && deck->running_ && deck->run_ == run) deck->reachEnd();
  });
}

void Deck::reachEnd() {
  const double end = setup_.timeline->length() > 0.0 ? setup_.timeline->length() : position();
  setup_.timeline->hold(end);
  heldAt_ = end;
  running_ = false;
  shallRun_ = false;
  atEnd_ = true;
  if (pipelineRuns_) pausePipeline();
  post(&host::PlayerEvents::ended);
}

void Deck::close(std::function<void()> closed) {
  closing_ = true;
  pipelineRuns_ = false;  // the watch over the device's lag ends here
  if (hasPipeline()) pipeline_->interrupt();
  worker_.queue()->post([pipeline = std::move(pipeline_), maker = maker_, engine = surroundings_->engine, closed] {
    if (pipeline) pipeline->close();
    if (maker) maker->forget();
    engine->post(closed);
  });
  pipeline_.reset();
}

void Deck::post(std::function<void()> host::PlayerEvents::*event) {
  // Only a player that still exists when the event arrives hears of it.
  surroundings_->mainLoop.post([events = setup_.events, event] {
    const auto player = events.lock();
    if (player && (player.get()->*event)) (player.get()->*event)();
  });
}

void Deck::later(Instant time, void (Deck::*task)()) {
  surroundings_->engine->postAt(time, [weak = weak_from_this(), task] {
    if (const auto deck = weak.lock()) (deck.get()->*task)();
  });
}

}  // namespace gstreamer
