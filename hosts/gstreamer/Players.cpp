#include "hosts/gstreamer/Players.h"

#include "platform/foundation/Values.h"

#include <algorithm>
#include <cmath>

namespace gstreamer {

Turn::Turn(std::shared_ptr<Conductor> conductor, std::shared_ptr<TaskQueue> engine)
    : conductor_(std::move(conductor)), engine_(std::move(engine)) {}

Order& Turn::orderFor(const std::shared_ptr<Deck>& deck) {
  const auto found = std::find_if(transaction_.begin(), transaction_.end(),
                                  [&deck](const auto& entry) { return entry.first == deck; });
  return found != transaction_.end() ? found->second : transaction_.emplace_back(deck, Order{}).second;
}

Instant Turn::instant() {
  if (!instant_) instant_ = now();
  return *instant_;
}

void Turn::commit() {
  instant_.reset();
  if (transaction_.empty()) return;
  engine_->post([conductor = conductor_, transaction = std::move(transaction_)] { conductor->perform(transaction); });
  transaction_.clear();
}

void Turn::close(const std::shared_ptr<Deck>& deck) {
  std::erase_if(transaction_, [&deck](const auto& entry) { return entry.first == deck; });
  engine_->post([conductor = conductor_, deck] { conductor->close(deck); });
}

namespace {

std::string pathOf(const std::string& url) {
  const auto parsed = NSURL::URLWithString(url);
  return parsed && parsed->isFileURL() ? parsed->path() : std::string();
}

/// What both kinds of players have in common: the commands that become orders.
class Commands {
 public:
  Commands(std::shared_ptr<Turn> turn, const std::shared_ptr<Surroundings>& surroundings, Deck::Setup setup,
           host::PlayerEvents events)
      : turn_(std::move(turn)),
        events_(std::make_shared<host::PlayerEvents>(std::move(events))),
        timeline_(std::make_shared<Timeline>()) {
    setup.timeline = timeline_;
    setup.events = events_;
    setup.path = pathOf(setup.url);
    // In memory of its own: whoever waits for its film's end, which may be hours away, keeps no more than the word
    // that it is gone.
    deck_.reset(new Deck(surroundings, std::move(setup)));
  }
  ~Commands() { turn_->close(deck_); }
  Commands(const Commands&) = delete;
  Commands& operator=(const Commands&) = delete;

  Order& order() { return turn_->orderFor(deck_); }

  void play() { order().plays = true; }

  void pause() {
    Order& given = order();
    given.plays = false;
    if (given.seeks) return;
    given.position = timeline_->positionAt(turn_->instant());
    given.announcement = timeline_->announce(*given.position);
  }

  void seek(double seconds) {
    Order& given = order();
    given.position = std::isfinite(seconds) ? std::max(0.0, seconds) : 0.0;
    given.seeks = true;
    given.announcement = timeline_->announce(*given.position);
  }

  double position() const { return timeline_->position(); }

  /// From now on these are told.
  void setEvents(host::PlayerEvents events) { *events_ = std::move(events); }

 private:
  std::shared_ptr<Turn> turn_;
  std::shared_ptr<host::PlayerEvents> events_;
  std::shared_ptr<Timeline> timeline_;
  std::shared_ptr<Deck> deck_;
};

}  // namespace

class PictureFace final : public host::PicturePlayer {
 public:
  PictureFace(std::shared_ptr<Turn> turn, const std::shared_ptr<Surroundings>& surroundings, const std::string& url,
              host::PlayerEvents events)
      : board_(std::make_shared<PictureBoard>()),
        commands_(std::move(turn), surroundings, setupFor(url, board_), std::move(events)) {
    commands_.order().prepares = true;
  }
  ~PictureFace() override { board_->close(); }

  // Nothing but the picture is ever decoded here.
  void setSilenced(const std::vector<int>&) override {}
  void play() override { commands_.play(); }
  void pause() override { commands_.pause(); }
  void seek(double seconds) override { commands_.seek(seconds); }
  double position() const override { return commands_.position(); }
  std::shared_ptr<host::PictureStream> pictures() override { return board_; }
  void setEvents(host::PlayerEvents events) { commands_.setEvents(std::move(events)); }

 private:
  static Deck::Setup setupFor(const std::string& url, std::shared_ptr<PictureBoard> board) {
    Deck::Setup setup;
    setup.kind = Deck::Kind::Picture;
    setup.url = url;
    setup.board = std::move(board);
    return setup;
  }

  std::shared_ptr<PictureBoard> board_;
  Commands commands_;
};

namespace {

class SoundFace final : public host::SoundPlayer {
 public:
  SoundFace(std::shared_ptr<Turn> turn, const std::shared_ptr<Surroundings>& surroundings, const std::string& url,
            host::PlayerEvents events)
      : commands_(std::move(turn), surroundings, setupFor(url), std::move(events)) {}

  void prepare() override {
    commands_.order().prepares = true;
    commands_.order().stops = false;
  }

  void setPan(double pan) override { commands_.order().pan = std::clamp(pan, -1.0, 1.0); }
  void setVolume(double volume) override { commands_.order().volume = std::clamp(volume, 0.0, 1.0); }

  void play() override {
    commands_.play();
    commands_.order().stops = false;
  }

  void pause() override { commands_.pause(); }

  void stop() override {
    commands_.pause();
    commands_.order().stops = true;
    commands_.order().prepares = false;
  }

  void seek(double seconds) override { commands_.seek(seconds); }
  double position() const override { return commands_.position(); }

 private:
  static Deck::Setup setupFor(const std::string& url) {
    Deck::Setup setup;
    setup.kind = Deck::Kind::Sound;
    setup.url = url;
    return setup;
  }

  Commands commands_;
};

}  // namespace

PictureOpener::PictureOpener(std::shared_ptr<Turn> turn, std::shared_ptr<Surroundings> surroundings)
    : turn_(std::move(turn)), surroundings_(std::move(surroundings)) {}

PictureOpener::~PictureOpener() = default;

void PictureOpener::expect(const std::string& url) {
  if (spare_ && spareUrl_ == url) return;
  spareUrl_ = url;
  spareFailed_ = false;
  spare_ = make(url, {nullptr, [this] { spareFailed_ = true; }});
  dropLater();
}

std::unique_ptr<host::PicturePlayer> PictureOpener::open(const std::string& url, host::PlayerEvents events) {
  if (!spare_ || spareUrl_ != url || spareFailed_) return make(url, std::move(events));
  spare_->setEvents(std::move(events));
  return std::move(spare_);
}

std::unique_ptr<PictureFace> PictureOpener::make(const std::string& url, host::PlayerEvents events) {
  return std::make_unique<PictureFace>(turn_, surroundings_, url, std::move(events));
}

void PictureOpener::dropLater() {
  const auto drop = [weak = weak_from_this(), spare = ++spares_] {
    const auto opener = weak.lock();
    if (opener && opener->spares_ == spare) opener->spare_.reset();
  };
  surroundings_->engine->postAt(now() + nanoseconds(surroundings_->options.sparePatience),
                                [&mainLoop = surroundings_->mainLoop, drop] { mainLoop.post(drop); });
}

std::unique_ptr<host::SoundPlayer> makeSoundPlayer(std::shared_ptr<Turn> turn,
                                                   const std::shared_ptr<Surroundings>& surroundings,
                                                   const std::string& url, host::PlayerEvents events) {
  return std::make_unique<SoundFace>(std::move(turn), surroundings, url, std::move(events));
}

}  // namespace gstreamer
