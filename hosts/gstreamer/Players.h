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

std::unique_ptr<host::PicturePlayer> makePicturePlayer(std::shared_ptr<Turn> turn,
                                                       const std::shared_ptr<Surroundings>& surroundings,
                                                       const std::string& url, host::PlayerEvents events);
std::unique_ptr<host::SoundPlayer> makeSoundPlayer(std::shared_ptr<Turn> turn,
                                                   const std::shared_ptr<Surroundings>& surroundings,
                                                   const std::string& url, host::PlayerEvents events);

}  // namespace gstreamer
