#pragma once

#include "hosts/desktop/SoundOutput.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace desktop {

/// Follows which device the sound server (PulseAudio, or PipeWire speaking its protocol) plays to by default. The
/// server tells of changes by itself, on a thread of this object's own, which otherwise sleeps; where there is no
/// server, it looks for one now and then. No server is ever started.
class SoundOutputWatch final {
 public:
  /// The state of things that is known first, and each further one. No output: the server has no device, or there is
  /// no server any more. Called on the watch's thread; it must only pass the word on.
  using Tell = std::function<void(std::optional<SoundOutput> output, Passing passing)>;

  /// `server` as PulseAudio's own tools take it; empty for the user's usual one. Returns at once.
  explicit SoundOutputWatch(Tell tell, const std::string& server = {});
  /// Returns when the thread has ended; nothing is told any more.
  ~SoundOutputWatch();
  SoundOutputWatch(const SoundOutputWatch&) = delete;
  SoundOutputWatch& operator=(const SoundOutputWatch&) = delete;

 private:
  class Connection;
  std::unique_ptr<Connection> connection_;
};

}  // namespace desktop
