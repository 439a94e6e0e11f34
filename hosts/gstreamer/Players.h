#pragma once

#include "hosts/gstreamer/Conductor.h"

#include <memory>
#include <optional>
#include <string>

namespace gstreamer {

/// What the players were told since the last commit. Main thread.
class Turn {
 public:
  Turn(std::shared_ptr<Conductor> conductor, std::shared_ptr<TaskQueue> engine);

  Order& orderFor(const std::shared_ptr<Deck>& deck);
  /// The one instant at which everything that is paused in this turn stops.
  Instant instant();
  void commit();
  /// The player of `deck` is gone; nothing that it was told in this turn counts any more.
  void close(const std::shared_ptr<Deck>& deck);

 private:
  std::shared_ptr<Conductor> conductor_;
  std::shared_ptr<TaskQueue> engine_;
  Transaction transaction_;
  std::optional<Instant> instant_;
};

class PictureFace;

/// Opens players of pictures. One for a medium that is about to be used is made before it is asked for, so that its
/// first picture is decoded by then; nobody who does not ask for it within `Options::sparePatience` gets it. Main
/// thread.
class PictureOpener : public std::enable_shared_from_this<PictureOpener> {
 public:
  PictureOpener(std::shared_ptr<Turn> turn, std::shared_ptr<Surroundings> surroundings);
  ~PictureOpener();

  void expect(const std::string& url);
  std::unique_ptr<host::PicturePlayer> open(const std::string& url, host::PlayerEvents events);

 private:
  std::unique_ptr<PictureFace> make(const std::string& url, host::PlayerEvents events);
  void dropLater();

  std::shared_ptr<Turn> turn_;
  std::shared_ptr<Surroundings> surroundings_;
  std::unique_ptr<PictureFace> spare_;
  std::string spareUrl_;
  bool spareFailed_ = false;
  std::uint64_t spares_ = 0;  ///< so many were made
};

std::unique_ptr<host::SoundPlayer> makeSoundPlayer(std::shared_ptr<Turn> turn,
                                                   const std::shared_ptr<Surroundings>& surroundings,
                                                   const std::string& url, host::PlayerEvents events);

}  // namespace gstreamer
