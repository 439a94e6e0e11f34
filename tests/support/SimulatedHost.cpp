#include "tests/support/SimulatedHost.h"

#include "platform/foundation/RunLoop.h"
#include "platform/foundation/Values.h"

#include <filesystem>
#include <fstream>
#include <sstream>

namespace simulated {

namespace {

std::string lastPart(const std::string& url) {
  return url.substr(url.rfind('/') + 1);
}

/// 12.0 as "12", 12.7 as "12.7".
std::string shortNumber(double number) {
  std::string text = textOf(number);
  if (text.ends_with(".0")) text.resize(text.size() - 2);
  return text;
}

}  // namespace

bool MainLoop::turn() {
  bool didSomething = false;
  for (auto& work : std::exchange(posted_, {})) {
    const RunLoop::Turn turn(RunLoop::main());
    work();
    didSomething = true;
  }
  if (wake_ && *wake_ <= now_) {
    wake_.reset();
    RunLoop::main().turn();
    didSomething = true;
  }
  return didSomething;
}

void MainLoop::advance(double seconds) {
  const double until = now_ + seconds;
  while (true) {
    while (turn()) {
    }
    if (!wake_ || *wake_ > until) break;
    now_ = std::max(now_, *wake_);
  }
  now_ = until;
}

std::optional<host::Defaults::Value> Defaults::value(const std::string& key) const {
  const auto found = values.find(key);
  return found == values.end() ? std::nullopt : std::optional(found->second);
}

void Defaults::setValue(const std::string& key, const std::optional<Value>& value) {
  if (value) {
    values[key] = *value;
  } else {
    values.erase(key);
  }
}

namespace {

/// What the build does to the interface resource.
std::string built(std::string text) {
  constexpr std::string_view place = "@PROJECT_VERSION@";
  if (const auto at = text.find(place); at != std::string::npos) text.replace(at, place.size(), "1.0.0");
  return text;
}

}  // namespace

std::optional<std::string> Resources::text(const std::string& name) const {
  if (const auto own = texts.find(name); own != texts.end()) return own->second;
  const std::ifstream file(std::filesystem::path(QUILLOP_RESOURCES) / name, std::ios::binary);
  if (!file) return std::nullopt;
  std::ostringstream text;
  text << file.rdbuf();
  return built(text.str());
}

std::optional<host::Resources::Picture> Resources::picture(const std::string& name) const {
  const std::string file = name.find('.') == std::string::npos ? name + ".svg" : name;
  if (!std::filesystem::exists(std::filesystem::path(QUILLOP_RESOURCES) / "images" / file)) return std::nullopt;
  const auto description = text("images/" + std::filesystem::path(file).stem().string() + ".txt").value_or("");
  return Picture{"qrc:/images/" + file, 24, 24, description.substr(0, description.find('\n'))};
}

void Mail::finish(bool handedOver) {
  for (const auto& done : std::exchange(open, {})) {
    const RunLoop::Turn turn(RunLoop::main());
    done(handedOver);
  }
}

Player::Player(MediaEngine& engine, std::string name, host::PlayerEvents playerEvents)
    : events(std::move(playerEvents)), engine_(engine), name_(std::move(name)) {
  engine_.players_[name_] = this;
  record("open");
}

Player::~Player() {
  record("closed");
  const auto entry = engine_.players_.find(name_);
  if (entry != engine_.players_.end() && entry->second == this) engine_.players_.erase(entry);
}

void Player::record(const std::string& call) const {
  engine_.calls.push_back(name_ + " " + call);
  engine_.uncommitted_ = true;
}

void PicturePlayer::setSilenced(const std::vector<int>& trackIdentifiers) {
  std::string call = "silence";
  for (const int identifier : trackIdentifiers) call += " " + std::to_string(identifier);
  record(call);
}

void PicturePlayer::seek(double seconds) {
  record("seek " + shortNumber(seconds));
  currentPosition = seconds;
}

void SoundPlayer::setPan(double pan) {
  record("pan " + shortNumber(pan));
}

void SoundPlayer::setVolume(double volume) {
  record("volume " + shortNumber(volume));
}

void SoundPlayer::seek(double seconds) {
  record("seek " + shortNumber(seconds));
  currentPosition = seconds;
}

host::MediaFacts MediaEngine::facts(const std::string& url) {
  const auto found = factsByUrl.find(url);
  return found == factsByUrl.end() ? filmFacts(60) : found->second;
}

std::unique_ptr<host::PicturePlayer> MediaEngine::openPicture(const std::string& url, host::PlayerEvents events) {
  return std::make_unique<PicturePlayer>(*this, lastPart(url) + " video", std::move(events));
}

std::unique_ptr<host::SoundPlayer> MediaEngine::openSound(const std::string& url, host::PlayerEvents events) {
  return std::make_unique<SoundPlayer>(*this, lastPart(url) + " audio", std::move(events));
}

void MediaEngine::commit() {
  if (std::exchange(uncommitted_, false)) calls.emplace_back("commit");
}

Player* MediaEngine::player(const std::string& name) const {
  const auto found = players_.find(name);
  return found == players_.end() ? nullptr : found->second;
}

std::shared_ptr<const host::LibraryItems> MediaLibrary::items(std::uint64_t mediaType) {
  ++queries;
  if (fails) return nullptr;
  return std::make_shared<LibraryItems>(itemsByType[mediaType]);
}

void MediaLibrary::prepare(std::function<void(bool)> ready) {
  if (holdsPreparations) {
    preparations.push_back(std::move(ready));
  } else {
    ready(true);
  }
}

void MediaLibrary::answerPreparations(bool isReady) {
  for (const auto& ready : std::exchange(preparations, {})) {
    const RunLoop::Turn turn(RunLoop::main());
    ready(isReady);
  }
}

void MediaLibrary::answerRequests(host::LibraryAccess access) {
  for (const auto& answer : std::exchange(requests, {})) {
    const RunLoop::Turn turn(RunLoop::main());
    answer(access);
  }
}

host::MediaFacts filmFacts(double seconds) {
  host::MediaFacts facts;
  facts.readable = true;
  facts.soundOpens = true;
  facts.duration = seconds;
  facts.tracks = {{1, host::TrackKind::Video}, {2, host::TrackKind::Audio}};
  return facts;
}

}  // namespace simulated
