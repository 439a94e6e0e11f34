#include "hosts/gstreamer/Engine.h"

#include "hosts/gstreamer/Instant.h"
#include "hosts/gstreamer/Players.h"
#include "hosts/gstreamer/UsualPlugins.h"

#include <utility>

namespace gstreamer {

namespace {

/// A first film is not chosen sooner, and by then the first screen is there.
constexpr double quietTime = 1.0;

host::MediaFacts seeNothing(const std::string&, double) {
  return {};
}

class Engine final : public host::MediaEngine {
 public:
  Engine(host::MainLoop& mainLoop, Options options)
      : facts_(std::make_shared<FactsCache>(options.look ? options.look : seeNothing, options.factsDeadline)),
        thread_("film-engine"),
        closingPatience_(options.closingPatience),
        surroundings_(std::make_shared<Surroundings>(
            Surroundings{std::move(options), mainLoop, facts_, thread_.queue(), {}, {}, {}, {}})) {
    conductor_ = std::make_shared<Conductor>(surroundings_);
    surroundings_->deckIsReady = [weak = std::weak_ptr(conductor_)](Deck& deck) {
      if (const auto conductor = weak.lock()) conductor->deckIsReady(deck);
    };
    surroundings_->deckLags = [weak = std::weak_ptr(conductor_)](const Deck& deck, double lag) {
      if (const auto conductor = weak.lock()) conductor->deckLags(deck, lag);
    };
    surroundings_->deckRanDry = [weak = std::weak_ptr(conductor_)](const Deck& deck) {
      if (const auto conductor = weak.lock()) conductor->deckRanDry(deck);
    };
    surroundings_->deckIsRefused = [weak = std::weak_ptr(conductor_)](const Deck& deck) {
      if (const auto conductor = weak.lock()) conductor->deckIsRefused(deck);
    };
    turn_ = std::make_shared<Turn>(conductor_, thread_.queue());
    pictures_ = std::make_shared<PictureOpener>(turn_, surroundings_);
    thread_.queue()->postAt(now() + nanoseconds(quietTime), loadUsualPlugins);
  }

  ~Engine() override {
    pictures_.reset();
    thread_.queue()->post([conductor = conductor_] { conductor->closeAll(); });
    if (conductor_->waitUntilAllClosed(closingPatience_)) return;
    thread_.queue()->post([conductor = conductor_] { conductor->abandonClosing(); });
    thread_.end(closingPatience_);
  }

  void expect(const std::string& url) override {
    facts_->expect(url);
    pictures_->expect(url);
  }
  host::MediaFacts facts(const std::string& url) override { return facts_->facts(url); }

  std::unique_ptr<host::PicturePlayer> openPicture(const std::string& url, host::PlayerEvents events) override {
    return pictures_->open(url, std::move(events));
  }

  std::unique_ptr<host::SoundPlayer> openSound(const std::string& url, host::PlayerEvents events) override {
    return makeSoundPlayer(turn_, surroundings_, url, std::move(events));
  }

  void setScrubbing(bool isScrubbing) override {
    thread_.queue()->post([conductor = conductor_, isScrubbing] { conductor->setScrubbing(isScrubbing); });
  }

  void commit() override { turn_->commit(); }

 private:
  std::shared_ptr<FactsCache> facts_;
  TaskThread thread_;
  double closingPatience_;
  std::shared_ptr<Surroundings> surroundings_;
  std::shared_ptr<Conductor> conductor_;
  std::shared_ptr<Turn> turn_;
  std::shared_ptr<PictureOpener> pictures_;
};

}  // namespace

std::unique_ptr<host::MediaEngine> makeEngine(host::MainLoop& mainLoop, Options options) {
  return std::make_unique<Engine>(mainLoop, std::move(options));
}

}  // namespace gstreamer
