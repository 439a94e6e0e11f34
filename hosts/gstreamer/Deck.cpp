#include "hosts/gstreamer/Deck.h"

#include "hosts/gstreamer/PictureBranch.h"
#include "hosts/gstreamer/SoundBranch.h"

#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace gstreamer {

namespace {

/// A pipeline that would be later than this skips ahead rather than hurry after the others. Sound cannot hurry.
constexpr double tolerableLatenessOfPicture = 0.1;
constexpr double tolerableLatenessOfSound = 0.005;
/// How far ahead of the timeline a late pipeline is brought, to be there when the timeline arrives.
constexpr double headStart = 0.25;
constexpr int mostSkips = 3;
/// A pipeline that is further ahead than this is not started yet: one that waits cannot be told anything.
constexpr double mostAhead = 0.5;
/// How often a hardware decoder is looked after.
constexpr Instant decoderInterval = nanoseconds(0.25);
/// A file states its duration less precisely than this.
constexpr double statedRoughly = 0.5;
/// How often a file that grows is opened again where it had come to its end.
constexpr Instant growth = nanoseconds(1.0);
/// So many failed attempts at a sound device say that it does not come back soon.
constexpr int hopeless = 2;
/// No film is shorter: a length of nothing would be no bound.
constexpr double shortestFilm = 0.001;
/// A film's last picture begins at least this long before its end.
constexpr double lastPicture = 0.1;

}  // namespace

Deck::Deck(std::shared_ptr<Surroundings> surroundings, Setup setup)
    : surroundings_(std::move(surroundings)),
      setup_(std::move(setup)),
      target_(setup_.kind == Kind::Picture),
      thread_(setup_.kind == Kind::Picture ? "film-picture" : "film-sound", surroundings_->engine) {
  if (!setup_.board) return;
  maker_ = std::make_shared<PictureMaker>(setup_.board);
  followBox();
}

void Deck::followBox() {
  setup_.board->whenBoxChanges(
      [queue = thread_.queue(), maker = maker_] { queue->post([maker] { maker->makeAgain(); }); });
}

bool Deck::wantsPipeline() const {
  return wanted_ && streams_ > 0 && !broken_ && !soundLost_;
}

bool Deck::isReady() const {
  if (!learned_) return false;
  return !wantsPipeline() || (hasPipeline() && !busy_ && !target_.isSet());
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
    thread_.tell([volume = volume_](Pipeline& pipeline) {
      if (auto* branch = static_cast<SoundBranch*>(pipeline.branch())) branch->setVolume(volume);
    });
  }
}

/// A seek: the timeline stands at the target until all that take part are there.
void Deck::moveTo(double position) {
  const double length = setup_.timeline->length();
  const double target = std::max(0.0, length > 0.0 ? std::min(position, length) : position);
  atEnd_ = false;
  broken_ = false;
  leaps_.forget();
  leap_ = 0.0;
  waitsForMore_.reset();
  standStill(target);
  target_.seek(target, now(), surroundings_->isScrubbing);
  // A picture that would have to be decoded from far off is not waited for any more.
  if (hasPipeline() && setup_.kind == Kind::Picture) pipeline().outdateSeeks();
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
  if (setup_.kind == Kind::Sound) target_.set(position);
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
  } else if (target_.isSet()) {
    seekPipeline();
  } else if (waitsForStart()) {
    surroundings_->deckIsReady(*this);
  } else if (running_ && !pipelineRuns_) {
    join();
  }
}

void Deck::learn() {
  busy_ = true;
  thread_.queue()->post([weak = weak_from_this(), surroundings = surroundings_, url = setup_.url] {
    surroundings->engine->post([weak, facts = surroundings->facts->facts(url)] {
      if (const auto deck = weak.lock()) deck->learned(facts);
    });
  });
}

void Deck::learned(const host::MediaFacts& facts) {
  busy_ = false;
  learned_ = true;
  const auto count = [&facts](host::TrackKind kind) {
    return std::count_if(facts.tracks.begin(), facts.tracks.end(),
                         [kind](const host::TrackFacts& track) { return track.kind == kind; });
  };
  const auto pictures = count(host::TrackKind::Video), sounds = count(host::TrackKind::Audio);
  streams_ = setup_.kind == Kind::Picture ? pictures : sounds;
  hasOther_ = (setup_.kind == Kind::Picture ? sounds : pictures) > 0;
  orientation_ = facts.orientation;
  setup_.timeline->setLength(facts.duration);
  if (!facts.readable) fail();
  advance();
}

void Deck::openPipeline() {
  Pipeline::Setup setup;
  setup.path = setup_.path;
  setup.branch = makeBranch();
  setup.hardware = hardware_;
  setup.streams = streams_;
  setup.decoderPatience = surroundings_->options.decoderPatience;
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
  setup.sinkTaken = surroundings_->options.soundTaken;
  thread_.put(std::make_unique<Pipeline>(std::move(setup)));
  target_.clear();
  standsAt_ = pipelineTarget((running_ ? position() + headStart : position()) + std::exchange(leap_, 0.0));
  submit([target = standsAt_, precision = precisionAt(standsAt_), round = pipeline().round()](Pipeline& pipeline) {
    return pipeline.open(target, precision, round);
  });
  watchDecoder(thread_.pipeline());
}

/// One that is stuck tells nothing, and whoever waits for it neither.
void Deck::watchDecoder(const std::weak_ptr<Pipeline>& watched) {
  surroundings_->engine->postAt(now() + decoderInterval, [weak = weak_from_this(), watched] {
    const auto deck = weak.lock();
    const auto pipeline = watched.lock();
    if (!deck || !pipeline || deck->thread_.pipeline() != pipeline) return;
    if (deck->busy_ || deck->pipelineRuns_) pipeline->judgeDecoder();
    if (deck->busy_ || pipeline->usesHardware()) deck->watchDecoder(watched);
  });
}

std::unique_ptr<Branch> Deck::makeBranch() const {
  if (setup_.kind == Kind::Picture) return std::make_unique<PictureBranch>(maker_, setup_.board, orientation_);
  return std::make_unique<SoundBranch>(surroundings_->options.makeSoundSink, pan_, volume_);
}

void Deck::dropPipeline() {
  thread_.drop();
  pipelineRuns_ = false;
  busy_ = false;
  target_.clear();
}

void Deck::pausePipeline() {
  pipelineRuns_ = false;
  thread_.tell(&Pipeline::pause);
}

void Deck::seekPipeline() {
  if (now() < target_.due()) return later(target_.due(), &Deck::advance);
  const auto step = target_.next();
  standsAt_ = pipelineTarget(step.position);
  const auto precision = step.isPreview ? Precision::KeyFrame : precisionAt(standsAt_);
  submit([target = standsAt_, precision, round = pipeline().round()](Pipeline& pipeline) {
    return pipeline.seek(target, precision, round);
  });
}

void Deck::settle() {
  target_.settle();
  if (hasPipeline() && target_.isSet()) pipeline().outdatePreviews();
  advance();
}

/// At the very end there is no picture any more; the last one is meant.
double Deck::pipelineTarget(double position) const {
  const double length = setup_.timeline->length();
  if (setup_.kind == Kind::Sound || length <= 0.0) return position;
  return std::clamp(position, 0.0, std::max(0.0, length - lastPicture));
}

/// A film that runs shows its last picture anyway. One that stands still goes back to it, but where a track that is
/// stated to be longer ends, leaps are tried first: to go back would hide that nothing came.
Precision Deck::precisionAt(double position) const {
  const bool mayGoBack = setup_.kind == Kind::Picture && !running_ && (dryFrom_ || !endsEarly(position));
  return mayGoBack ? Precision::ExactOrLast : Precision::Exact;
}

void Deck::submit(Work work) {
  busy_ = true;
  pipeline().noteDecoder();
  const auto workAndLook = [work = std::move(work)](Pipeline& pipeline) {
    const bool well = work(pipeline);
    return Outcome{well, pipeline.isEmpty(), pipeline.isEmpty() && pipeline.hasGrown()};
  };
  thread_.ask(weak_from_this(), workAndLook, &Deck::finished);
}

void Deck::finished(const Outcome& outcome) {
  busy_ = false;
  const auto trouble = pipeline().trouble();
  if (outcome.well && outcome.isEmpty && !trouble && pipeline().waitsForHardware()) {
    handle({Trouble::Where::HardwareDecoder, "the hardware decoder gives nothing"});
  } else if (outcome.well && !trouble) {
    everReady_ = true;
    failedRetries_ = 0;
    lastReason_.clear();
    if (outcome.isEmpty && !target_.isSet() && !dryFrom_ && endsEarly(standsAt_)) {
      runDry(outcome.hasGrown);
    } else {
      advance();
    }
  } else {
    handle(trouble.value_or(Trouble{Trouble::Where::Media, "the pipeline could not be prepared"}));
  }
}

void Deck::inspect() {
  if (!hasPipeline()) return;
  const auto trouble = pipeline().trouble();
  // The outcome of an operation that is under way tells of its trouble by itself, if there is to be one.
  if (trouble && (!busy_ || trouble->isStuck)) handle(*trouble);
}

void Deck::handle(const Trouble& trouble) {
  // Attempts at a device that is away fail alike for as long as it stays away.
  if (trouble.reason != lastReason_) std::fprintf(stderr, "%s: %s\n", setup_.path.c_str(), trouble.reason.c_str());
  lastReason_ = trouble.reason;
  dropPipeline();
  if (trouble.isStuck) {
    thread_.replace();
    if (setup_.board) followBox();
  }
  switch (trouble.where) {
    case Trouble::Where::Sink:
      loseSound();
      break;
    case Trouble::Where::HardwareDecoder:
      hardware_ = Hardware::Avoided;
      break;
    case Trouble::Where::Media:
      if (everReady_) {
        passDamage();
      } else {
        fail();
        surroundings_->deckIsRefused(*this);
      }
      break;
  }
  advance();
}

/// The film runs on unheard, and the device is asked for again now and then.
void Deck::loseSound() {
  soundLost_ = true;
  if (++failedRetries_ > hopeless) surroundings_->deckRanDry(*this);
  retrySoundLater();
}

void Deck::retrySoundLater() {
  if (!std::exchange(retries_, true))
    later(now() + nanoseconds(surroundings_->options.soundRetry), &Deck::retrySound);
}

/// A film that stands still asks again when it is to play; one that is about to start, or is sought just now, soon.
void Deck::retrySound() {
  retries_ = false;
  if (!soundLost_ || !shallRun_) return;
  if (!running_) return retrySoundLater();
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

bool Deck::endsEarly(double position) const {
  const double length = setup_.timeline->length();
  return length > 0.0 && position < length - statedRoughly;
}

/// What went well before fails: a medium that cannot be read just now, or damage that the decoder does not get over.
void Deck::passDamage() {
  if (const auto leap = nextLeap()) {
    leap_ = *leap;
  } else {
    giveUp();
  }
}

/// Seconds; none where enough was tried, or where there would not be anything left.
std::optional<double> Deck::nextLeap() {
  const auto leap = leaps_.next(position());
  return leap && endsEarly(position() + *leap) ? leap : std::nullopt;
}

/// The track ends here; the film goes on for as long as another one does.
void Deck::giveUp() {
  broken_ = true;
  dryFrom_ = position();
  surroundings_->deckRanDry(*this);
}

void Deck::drained() {
  if (!pipelineRuns_) return;
  ++watch_;  // a device that has nothing more to play does not lag
  thread_.ask(weak_from_this(), &Pipeline::hasGrown, [](Deck& deck, bool hasGrown) {
    if (deck.pipelineRuns_) deck.runDry(hasGrown);
  });
}

/// A reader that came to the end of a file that is still being written does not notice what is added. Damage may look
/// like the end, too.
void Deck::runDry(bool hasGrown) {
  if (hasGrown) {
    waitsForMore_ = thread_.pipeline();
    later(now() + growth, &Deck::reopenForMore);
  } else if (const auto leap = endsEarly(position()) ? nextLeap() : std::nullopt) {
    if (pipelineRuns_) pausePipeline();
    target_.set(position() + *leap);
    advance();
  } else {
    dryFrom_ = position();
    if (setup_.kind == Kind::Picture && !running_) target_.set(heldAt_);  // for the last picture
    surroundings_->deckRanDry(*this);
    advance();
  }
}

void Deck::reopen() {
  if (!hasPipeline() || busy_) return;
  dropPipeline();
  catchingUp_ = 0;
  advance();
}

/// Unless somebody has gone elsewhere in the meantime.
void Deck::reopenForMore() {
  if (hasPipeline() && waitsForMore_.lock() == thread_.pipeline()) reopen();
}

std::optional<double> Deck::endOf(Kind kind) const {
  if (!learned_) return std::nullopt;
  if (kind != setup_.kind) return hasOther_ ? std::nullopt : std::optional(0.0);
  if (streams_ == 0) return 0.0;
  if (dryFrom_) return dryFrom_;
  return failedRetries_ > hopeless ? std::optional(0.0) : std::nullopt;
}

void Deck::endAt(double end) {
  const double length = setup_.timeline->length();
  if (length > 0.0 && end > length - statedRoughly) return;
  setup_.timeline->setLength(std::max(end, shortestFilm));
  if (running_) expectEnd();
}

void Deck::refuse() {
  if (!broken_ && !atEnd_) fail();
  advance();
}

double Deck::position() const {
  return running_ ? runningFrom_ + seconds(std::max<Instant>(0, now() - runningSince_)) : heldAt_;
}

void Deck::start(Instant instant) {
  running_ = true;
  runningFrom_ = heldAt_;
  runningSince_ = instant;
  catchingUp_ = 0;
  setup_.timeline->run(runningFrom_, instant);
  expectEnd();
  if (!hasPipeline() || !isReady()) return;
  if (isFarAhead()) {
    join();
  } else {
    runPipeline();
  }
}

bool Deck::isFarAhead() const {
  return standsAt_ - position() > mostAhead;
}

/// The pipeline has become ready while the timeline was running already.
void Deck::join() {
  const bool sound = setup_.kind == Kind::Sound;
  if (isFarAhead()) return later(now() + nanoseconds(standsAt_ - position() - mostAhead / 2), &Deck::advance);
  const bool late = position() - standsAt_ > (sound ? tolerableLatenessOfSound : tolerableLatenessOfPicture);
  if (late && catchingUp_ < mostSkips) {
    ++catchingUp_;
    target_.set(position() + headStart);
    advance();
  } else {
    runPipeline();
  }
}

void Deck::runPipeline() {
  pipelineRuns_ = true;
  pipeline().noteDecoder();
  thread_.tell([from = runningFrom_, since = runningSince_, delay = delay_](Pipeline& pipeline) {
    if (pipeline.branch()) pipeline.branch()->setDelay(delay);
    pipeline.run(from, since);
  });
  if (setup_.kind == Kind::Sound) followDevice();
}

void Deck::followDevice() {
  pace_.begin(surroundings_->startLag);
  surroundings_->deckLags(*this, pace_.delay());
  watchLag(++watch_);
}

void Deck::watchLag(std::uint64_t watch) {
  if (!pipelineRuns_ || watch != watch_) return;
  const auto lag = [](Pipeline& pipeline) { return pipeline.branch() ? pipeline.branch()->lag() : std::nullopt; };
  thread_.ask(weak_from_this(), lag, [watch](Deck& deck, std::optional<double> found) {
    if (found && deck.pipelineRuns_ && deck.watch_ == watch) deck.lags(*found);
  });
  surroundings_->engine->postAt(now() + nanoseconds(pace_.pause()), [weak = weak_from_this(), watch] {
    if (const auto deck = weak.lock()) deck->watchLag(watch);
  });
}

void Deck::lags(double lag) {
  const bool knewStart = pace_.startLag().has_value();
  const auto advice = pace_.take(lag);
  if (!knewStart) surroundings_->startLag = pace_.startLag().value_or(surroundings_->startLag);
  switch (advice) {
    case SoundPace::Advice::Follow:
      surroundings_->deckLags(*this, pace_.delay());
      break;
    case SoundPace::Advice::Skip:
      skipStall();
      break;
    case SoundPace::Advice::Renew:
      reopen();
      break;
  }
}

void Deck::skipStall() {
  pausePipeline();
  target_.set(position() + headStart);
  advance();
}

void Deck::followSound(double lag) {
  if (lag == delay_) return;
  delay_ = lag;
  if (!hasPipeline()) return;
  thread_.tell([lag](Pipeline& pipeline) {
    if (pipeline.branch()) pipeline.branch()->setDelay(lag);
  });
}

/// What comes late ends late.
Instant Deck::endsAt() const {
  const double late = setup_.kind == Kind::Sound ? pace_.delay() : delay_;
  return runningSince_ + nanoseconds(std::max(0.0, setup_.timeline->length() - runningFrom_) + std::max(0.0, late));
}

void Deck::expectEnd() {
  if (setup_.timeline->length() <= 0.0) return;
  surroundings_->engine->postAt(endsAt(), [weak = weak_from_this(), run = ++run_] {
    const auto deck = weak.lock();
    if (!deck || !deck->running_ || deck->run_ != run) return;
    if (deck->endsAt() > now()) {
      deck->expectEnd();
    } else {
      deck->reachEnd();
    }
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
  const auto clearUp = [maker = maker_] {
    if (maker) maker->forget();
    // A film leaves holes between what stays, which the C library would keep for the next one.
    malloc_trim(0);
  };
  thread_.close(clearUp, std::move(closed));
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
