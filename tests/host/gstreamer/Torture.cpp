#include "tests/host/gstreamer/Torture.h"

#include "tests/host/gstreamer/Stage.h"

#include <array>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <random>

namespace gstreamer {

namespace {

namespace fs = std::filesystem;

std::string noisy(const std::string& whole) {
  const auto size = static_cast<long>(fs::file_size(whole));
  const std::string path = clips::truncated(whole, "engine-torture-noise.mp4", size);
  std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
  file.seekp(size / 2);
  for (long i = 0; i < size / 10; ++i) file.put(static_cast<char>(i * 31));
  return path;
}

std::vector<std::string> files() {
  const std::string whole = clips::film("engine-film.mp4", 320, 180, 6.0, 440, 2);
  return {whole,
          clips::film("engine-brief.mp4", 320, 180, 1.0, 440, 2),
          clips::clip("engine-silent.mp4", {"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=30:duration=1", "-c:v",
                                            "libx264", "-pix_fmt", "yuv420p"}),
          clips::truncated(whole, "engine-torture-cut.mp4", static_cast<long>(fs::file_size(whole) / 3)),
          noisy(whole),
          clips::truncated(whole, "engine-torture-unreadable.mp4", 100)};
}

constexpr double longest = 6.1;  ///< seconds; none of the films is longer
/// Seconds by which sound and picture may be apart: the players are asked one after the other.
constexpr double tolerance = 0.005;

long entriesOf(const char* folder) {
  return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

/// One film of the app: what it commands, and what it was told.
class Film {
 public:
  bool isLoaded() const { return sound_ != nullptr; }
  bool isPlaying() const { return playing_ && !isOver(); }
  bool isOver() const { return heardPicture_->ended + heardPicture_->failed > 0; }

  void load(Stage& stage, const std::string& path, double pan) {
    close();
    *heardSound_ = *heardPicture_ = {};
    sound_ = stage.sound(path, *heardSound_);
    picture_ = stage.picture(path, *heardPicture_);
    pictures_ = picture_->pictures();
    sound_->prepare();
    sound_->setPan(pan);
    play();
  }
  void close() {
    if (!isLoaded()) return;
    sound_->stop();
    picture_->pause();
    picture_.reset();
    sound_.reset();
    playing_ = false;
  }
  void play() { playing_ = true, sound_->play(), picture_->play(); }
  void pause() { playing_ = false, sound_->pause(), picture_->pause(); }
  void seek(double seconds) { picture_->seek(seconds), sound_->seek(seconds); }
  void setVolume(double volume) { sound_->setVolume(volume); }
  void resize(int width, int height) { pictures_->setBox(width, height); }
  double position() const { return picture_->position(); }
  bool isTogether() const { return std::fabs(sound_->position() - picture_->position()) < tolerance; }

  /// What must be true at any time; words for what is not.
  std::string fault() const {
    if (!isLoaded()) return pictures_ && pictures_->newest() ? "a closed film has a picture" : "";
    if (heardPicture_->ended + heardPicture_->failed > 1) return "the end was told twice";
    const double place = position();
    if (!(place >= 0.0) || place > longest) return "the position is outside of the film";
    return "";
  }

 private:
  std::shared_ptr<Heard> heardSound_ = std::make_shared<Heard>(), heardPicture_ = std::make_shared<Heard>();
  std::unique_ptr<host::SoundPlayer> sound_;
  std::unique_ptr<host::PicturePlayer> picture_;
  std::shared_ptr<host::PictureStream> pictures_;
  bool playing_ = false;
};

class Chamber {
 public:
  explicit Chamber(std::uint32_t seed) : random_(seed), stage_(std::make_unique<Stage>()) {}

  /// Words for what went wrong after one more command.
  std::string step() {
    Film& film = films_.at(below(2));
    command(film);
    stage_->engine().commit();
    if (film.isLoaded() && !film.isPlaying() && !film.isOver()) {
      const double place = film.position();
      stage_->loop().runFor(0.001 * static_cast<double>(below(10)));
      // A place beyond the end becomes the end once that is known.
      if (film.position() > place && !film.isOver()) return "a paused film moves";
    }
    for (const Film& each : films_) {
      if (auto fault = each.fault(); !fault.empty()) return fault;
      if (!staysTogether(each)) return "sound and picture are apart";
    }
    if (stage_->recording().forBothEars() > 0) return "a film is heard in both ears";
    if (below(20) == 0) stage_->loop().runFor(0.2);
    return below(3) == 0 ? progress() : "";
  }

  std::string closeAll() {
    for (Film& film : films_) film.close();
    stage_->engine().commit();
    return stage_->until([this] { return stage_->recording().openDevices() == 0; }) ? "" : "a closed film has sound";
  }

  void forget() { stage_.reset(); }

 private:
  std::size_t below(unsigned count) { return std::uniform_int_distribution<std::size_t>(0, count - 1)(random_); }
  double upTo(double most) { return std::uniform_real_distribution<double>(0.0, most)(random_); }

  void command(Film& film) {
    const std::size_t chosen = below(20);
    if (!film.isLoaded() || film.isOver() || chosen < 2) {
      film.load(*stage_, files_.at(below(static_cast<unsigned>(files_.size()))), &film == &films_[0] ? -1.0 : 1.0);
      film.resize(320, 180);
    } else if (chosen < 4) {
      film.close();
    } else if (chosen < 9) {
      film.isPlaying() ? film.pause() : film.play();
    } else if (chosen < 14) {
      film.seek(upTo(longest));
    } else if (chosen < 16) {
      film.setVolume(upTo(1.0));
    } else if (chosen < 17) {
      film.seek(longest);
    } else if (chosen < 18) {
      film.resize(static_cast<int>(below(3)) * 160, static_cast<int>(1 + below(3)) * 90);
    } else {
      goIntoTheBackground();
    }
  }

  void goIntoTheBackground() {
    for (Film& film : films_) {
      if (film.isLoaded() && film.isPlaying()) film.pause();
    }
  }

  bool staysTogether(const Film& film) {
    const auto isTogether = [&film] { return !film.isPlaying() || film.isTogether(); };
    if (isTogether()) return true;
    // Sound that is played on before anybody has heard of the end begins anew, and the end is told meanwhile.
    stage_->loop().runFor(0.1);
    return isTogether();
  }

  /// What plays moves or ends, and no more sound devices are open than there are films.
  std::string progress() {
    for (Film& film : films_) {
      if (!film.isLoaded() || !film.isPlaying()) continue;
      const double place = film.position();
      if (!stage_->until([&] { return film.isOver() || film.position() > place; })) return "a playing film stands";
    }
    const auto loaded = [this] {
      return static_cast<int>(films_[0].isLoaded()) + static_cast<int>(films_[1].isLoaded());
    };
    const bool few = stage_->until([&] { return stage_->recording().openDevices() <= loaded(); });
    return few ? "" : "a closed film has sound";
  }

  std::mt19937 random_;
  std::vector<std::string> files_ = files();
  std::unique_ptr<Stage> stage_;
  std::array<Film, 2> films_;
};

/// What the process holds besides the films.
struct Belongings {
  long threads = entriesOf("/proc/self/task");
  long descriptors = entriesOf("/proc/self/fd");
};

}  // namespace

Ordeal torture(std::uint32_t seed, int count) {
  Ordeal ordeal;
  Chamber chamber(seed);
  TestLoop loop;
  std::unique_ptr<Belongings> before;
  constexpr int warmUp = 50;
  for (; ordeal.commands < count && ordeal.fault.empty(); ++ordeal.commands) {
    if (ordeal.commands == warmUp) {
      ordeal.fault = chamber.closeAll();
      // Threads that GStreamer keeps for the next task leave by themselves after a while.
      loop.runFor(1.5);
      before = std::make_unique<Belongings>();
    }
    if (ordeal.fault.empty()) ordeal.fault = chamber.step();
  }
  if (ordeal.fault.empty()) ordeal.fault = chamber.closeAll();
  if (ordeal.fault.empty() && before && !loop.runUntil([&] {
        const Belongings after;
        return after.threads <= before->threads && after.descriptors <= before->descriptors;
      })) {
    ordeal.fault = "threads or descriptors are left over";
  }
  return ordeal;
}

}  // namespace gstreamer
