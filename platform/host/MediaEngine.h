#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace host {

enum class TrackKind { Video, Audio, Other };

struct TrackFacts {
  int identifier = 0;  ///< unique within its file, from 1
  TrackKind kind = TrackKind::Other;
};

/// How stored pixels are turned to stand upright: first the two sides may be swapped (a reflection at the falling
/// diagonal), then the result may be mirrored in either direction. That covers all quarter turns and mirror images.
struct Orientation {
  bool swapsSides = false;
  bool mirrorsHorizontally = false;
  bool mirrorsVertically = false;
  bool operator==(const Orientation&) const = default;
};

/// What one look into a media file told.
struct MediaFacts {
  bool readable = false;             ///< a media file whose structure could be read
  bool hasProtectedContent = false;  ///< holds encrypted tracks; told from the structure alone
  /// The sound can be played: the first samples were decoded, or the file is a readable video without any sound
  /// track, which plays as silence.
  bool soundOpens = false;
  double duration = 0.0;           ///< seconds up to the end of the longest track; always finite, 0 if unknown
  std::vector<TrackFacts> tracks;  ///< in file order
  Orientation orientation;         ///< of the moving pictures
};

/// One picture, ready to be shown: 32 bits a pixel, in memory blue, green, red, unused; already upright, of
/// square pixels and scaled to fit the box that was asked for.
struct Picture {
  int width = 0;  ///< pixels
  int height = 0;
  int stride = 0;  ///< bytes from one row to the next
  const std::uint8_t* pixels = nullptr;
  std::shared_ptr<const void> memory;  ///< owns `pixels`
};

/// The pictures of one player, from the engine to the screen. Every operation may be called on any thread.
class PictureStream {
 public:
  virtual ~PictureStream() = default;
  /// The box, in device pixels, that the pictures are to fit into, proportions kept. The current picture is made
  /// again at the new size, also while paused. 0 x 0: nobody looks, no picture is made.
  virtual void setBox(int width, int height) = 0;
  /// The newest picture, or none: before the first one, while nobody looks, and for good once the player is gone.
  virtual std::shared_ptr<const Picture> newest() const = 0;
  /// `tell` is called, on any thread, each time `newest` has become another; it must only pass the word on.
  /// Returns once the previous listener is not running any more. An empty one takes it away.
  virtual void setListener(std::function<void()> tell) = 0;
  struct Counts {
    std::uint64_t shown = 0;    ///< pictures that became the newest one
    std::uint64_t dropped = 0;  ///< pictures that came too late or were skipped
  };
  virtual Counts counts() const = 0;
};

/// Facts that a player reports, on the main thread inside a turn, never from within a command.
struct PlayerEvents {
  std::function<void()> ended;   ///< the end of the media was reached while playing
  std::function<void()> failed;  ///< nothing more can be played; counts as reaching the end
};

/// The picture side of one medium. Created paused at 0. Destroying it stops everything; no event follows.
/// Main thread; no operation waits for a pipeline.
class PicturePlayer {
 public:
  virtual ~PicturePlayer() = default;
  /// Tracks whose sound is not to be heard; they are not decoded at all. An engine whose picture players never make
  /// any sound may take every audio track as silenced.
  virtual void setSilenced(const std::vector<int>& trackIdentifiers) = 0;
  virtual void play() = 0;
  virtual void pause() = 0;
  virtual void seek(double seconds) = 0;
  /// Seconds from the start; the target while a seek is under way.
  virtual double position() const = 0;
  virtual std::shared_ptr<PictureStream> pictures() = 0;
};

/// The sound side of one medium, routed to one or both channels. Created stopped at 0, volume 1, pan 0.
/// Its time line is the whole length of the medium, so that a sound track that ends early, or none at all, is
/// continued by silence. Main thread; no operation waits for a pipeline or for the sound server.
class SoundPlayer {
 public:
  virtual ~SoundPlayer() = default;
  /// Gets everything ready for `play`; asked for again, or by `play` itself, it does nothing more.
  virtual void prepare() = 0;
  /// -1: all of the source's channels, mixed without clipping, to the left and exact zeros to the right;
  /// +1 the other way round; 0: the source's own left and right.
  virtual void setPan(double pan) = 0;
  /// Linear gain from 0 to 1.
  virtual void setVolume(double volume) = 0;
  virtual void play() = 0;
  virtual void pause() = 0;
  /// Pauses and gives the sound device back; the position stays.
  virtual void stop() = 0;
  virtual void seek(double seconds) = 0;
  virtual double position() const = 0;
};

/// Plays media. All commands that players were given since the last `commit` take effect together at `commit`,
/// in the order in which they were given, so that players started (or sought) in one turn of the main loop run on
/// one clock from one instant. Main thread unless stated otherwise.
class MediaEngine {
 public:
  virtual ~MediaEngine() = default;

  /// `url` is about to be used: starts looking into it, and makes its first picture ready from the end of the turn
  /// on, off the main thread. Never waits.
  virtual void expect(const std::string& url) = 0;
  /// What is known of `url`; waits for the look into it, at most up to the engine's deadline, after which the
  /// file counts as unreadable. Kept for as long as the file does not change.
  virtual MediaFacts facts(const std::string& url) = 0;

  virtual std::unique_ptr<PicturePlayer> openPicture(const std::string& url, PlayerEvents events) = 0;
  virtual std::unique_ptr<SoundPlayer> openSound(const std::string& url, PlayerEvents events) = 0;

  /// Whether a finger holds a slider, so that seek may follow seek at any moment. Meanwhile a picture near the target
  /// that is there soon is worth more than the exact one.
  virtual void setScrubbing(bool isScrubbing) = 0;

  /// The end of a turn: what was commanded since the last time takes effect. Never waits.
  virtual void commit() = 0;
};

}  // namespace host
