#pragma once

#include "platform/host/Ports.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// The ports without an outside world: virtual time, recorded calls, answers that a test sets.
namespace simulated {

using Lines = std::vector<std::string>;

/// The media type that the app asks the library for.
constexpr std::uint64_t homeVideo = 8192;

/// Time stands still until the test moves it.
class MainLoop final : public host::MainLoop {
 public:
  double now() const override { return now_; }
  void wakeAt(double time) override { wake_ = time; }
  void post(std::function<void()> work) override { posted_.push_back(std::move(work)); }

  /// Everything that happens within `seconds`, each thing at its own time.
  void advance(double seconds);
  /// What was posted, and one turn of the main loop where one was asked for by now. False when there was neither.
  bool turn();
  std::optional<double> wake() const { return wake_; }

 private:
  double now_ = 1000.0;
  std::optional<double> wake_;
  std::vector<std::function<void()>> posted_;
};

class Console final : public host::Console {
 public:
  void writeLine(std::string_view line) override { lines.emplace_back(line); }
  Lines lines;
};

class Defaults final : public host::Defaults {
 public:
  std::optional<Value> value(const std::string& key) const override;
  void setValue(const std::string& key, const std::optional<Value>& value) override;
  std::map<std::string, Value> values;
};

/// The app's real interface resource and the names of its real pictures, read from the source tree; as of a version
/// that no release changes, 1.0.0.
class Resources final : public host::Resources {
 public:
  std::optional<std::string> text(const std::string& name) const override;
  std::optional<Picture> picture(const std::string& name) const override;
  std::map<std::string, std::string> texts;  ///< take the place of files of the same name
};

class Desktop final : public host::Desktop {
 public:
  bool open(const std::string& url) override {
    opened.push_back(url);
    return true;
  }
  Lines opened;
};

class Mail final : public host::Mail {
 public:
  bool canCompose() const override { return available; }
  void compose(const host::MailDraft& draft, std::function<void(bool)> done) override {
    drafts.push_back(draft);
    open.push_back(std::move(done));
  }
  /// The mail program took the open drafts, or did not.
  void finish(bool handedOver);

  bool available = true;
  std::vector<host::MailDraft> drafts;
  std::vector<std::function<void(bool)>> open;
};

class Display final : public host::Display {
 public:
  void keepAwake(bool awake) override { told.push_back(awake); }
  std::vector<bool> told;
};

class Screen final : public host::Screen {
 public:
  void needsFrame() override { ++framesAskedFor; }
  double width() const override { return size.first; }
  double height() const override { return size.second; }
  bool isResizable() const override { return resizable; }
  bool reducesMotion() const override { return still; }

  std::pair<double, double> size{1024, 640};
  bool resizable = true;
  bool still = false;
  int framesAskedFor = 0;
};

class PictureStream final : public host::PictureStream {
 public:
  void setBox(int width, int height) override { box = {width, height}; }
  std::shared_ptr<const host::Picture> newest() const override { return nullptr; }
  void setListener(std::function<void()> tell) override { listener = std::move(tell); }
  Counts counts() const override { return {}; }
  std::pair<int, int> box;
  std::function<void()> listener;
};

class MediaEngine;

/// What is common to the recorded players: a name, a position that the test sets, and the reported facts.
class Player {
 public:
  Player(MediaEngine& engine, std::string name, host::PlayerEvents events);
  ~Player();
  void record(const std::string& call) const;

  double currentPosition = 0.0;
  host::PlayerEvents events;

 private:
  MediaEngine& engine_;
  std::string name_;
};

class PicturePlayer final : public host::PicturePlayer, public Player {
 public:
  using Player::Player;
  void setSilenced(const std::vector<int>& trackIdentifiers) override;
  void play() override { record("play"); }
  void pause() override { record("pause"); }
  void seek(double seconds) override;
  double position() const override { return currentPosition; }
  std::shared_ptr<host::PictureStream> pictures() override { return stream; }
  std::shared_ptr<PictureStream> stream = std::make_shared<PictureStream>();
};

class SoundPlayer final : public host::SoundPlayer, public Player {
 public:
  using Player::Player;
  void prepare() override { record("prepare"); }
  void setPan(double pan) override;
  void setVolume(double volume) override;
  void play() override { record("play"); }
  void pause() override { record("pause"); }
  void stop() override { record("stop"); }
  void seek(double seconds) override;
  double position() const override { return currentPosition; }
};

/// Records every call as "FILE audio play", "FILE video seek 12" and the like, FILE being the last part of the
/// address; "commit" only where a turn had commands.
class MediaEngine final : public host::MediaEngine {
 public:
  void expect(const std::string& url) override { expected.push_back(url); }
  host::MediaFacts facts(const std::string& url) override;
  std::unique_ptr<host::PicturePlayer> openPicture(const std::string& url, host::PlayerEvents events) override;
  std::unique_ptr<host::SoundPlayer> openSound(const std::string& url, host::PlayerEvents events) override;
  void setScrubbing(bool isScrubbing) override { scrubbing = isScrubbing; }
  void commit() override;

  /// The player that is open by that name ("a.mp4 video"); none when there is none.
  Player* player(const std::string& name) const;
  /// The calls since the last time this was asked.
  Lines takeCalls() { return std::exchange(calls, {}); }

  Lines calls;
  Lines expected;
  bool scrubbing = false;
  std::map<std::string, host::MediaFacts> factsByUrl;  ///< others are a readable film of 60 s with sound and picture

 private:
  friend class Player;
  std::map<std::string, Player*> players_;
  bool uncommitted_ = false;
};

class LibraryItems final : public host::LibraryItems {
 public:
  explicit LibraryItems(std::vector<host::LibraryItem> items) : items_(std::move(items)) {}
  std::size_t count() const override { return items_.size(); }
  host::LibraryItem item(std::size_t index) const override { return items_.at(index); }

 private:
  std::vector<host::LibraryItem> items_;
};

class MediaLibrary final : public host::MediaLibrary {
 public:
  host::LibraryAccess access() const override { return currentAccess; }
  void requestAccess(std::function<void(host::LibraryAccess)> answer) override {
    requests.push_back(std::move(answer));
  }
  /// Answers at once, unless `holdsPreparations`.
  void prepare(std::function<void(bool)> ready) override;
  std::shared_ptr<const host::LibraryItems> items(std::uint64_t mediaType) override;

  /// The library is ready now for those who wait for that, or they no longer want to wait.
  void answerPreparations(bool isReady);
  /// Answers the open requests with `access`, whatever the current one is.
  void answerRequests(host::LibraryAccess access);

  host::LibraryAccess currentAccess = host::LibraryAccess::Authorised;
  std::vector<std::function<void(host::LibraryAccess)>> requests;
  bool holdsPreparations = false;
  std::vector<std::function<void(bool)>> preparations;
  std::map<std::uint64_t, std::vector<host::LibraryItem>> itemsByType;
  bool fails = false;
  int queries = 0;
};

/// A film of `seconds` with one picture track (1) and one sound track (2).
host::MediaFacts filmFacts(double seconds);

struct Host {
  MainLoop mainLoop;
  Console console;
  Defaults defaults;
  Resources resources;
  Desktop desktop;
  Mail mail;
  Display display;
  Screen screen;
  MediaEngine mediaEngine;
  MediaLibrary mediaLibrary;

  host::Ports ports() {
    return {mainLoop, console, defaults, resources, desktop, mail, display, screen, mediaEngine, mediaLibrary};
  }
};

}  // namespace simulated
