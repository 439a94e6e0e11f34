#pragma once

#include "hosts/gstreamer/FactsCache.h"
#include "hosts/gstreamer/Handles.h"

#include <functional>
#include <string>

namespace gstreamer {

/// The sink that sound normally goes to: the sound server's (PulseAudio, or PipeWire speaking its protocol), or what
/// the system offers instead where there is none of that plugin. None when there is no sink at all.
Element makeSoundServerSink();

struct Options {
  /// Looks into the file at a path for at most so many seconds, on a thread of its own. Without it no file is
  /// readable.
  FactsCache::Look look;
  /// Makes the element that a sound player's samples go into: interleaved stereo. Called on a thread of the player,
  /// anew each time the sound device is taken. None: the film plays without being heard.
  std::function<Element()> makeSoundSink = makeSoundServerSink;
  /// Told the name of the factory of each element that becomes part of a pipeline, for a log. On any thread.
  std::function<void(const std::string& factory)> tellElement;
  /// Called, on any thread, when the sound server has silenced a player in favour of something else, such as a call.
  std::function<void()> soundTaken;
  /// Seconds that a look into a file may take; past it the file counts as unreadable.
  double factsDeadline = 5.0;
  /// Seconds for which the others of a transaction wait for a sound device.
  double soundPatience = 0.5;
  /// Seconds for which the others of a transaction wait for a picture, which may have to be decoded from a key frame
  /// that lies far before it.
  double picturePatience = 3.0;
  /// Seconds for which a picture that was decoded before it was asked for is kept.
  double sparePatience = 5.0;
  /// Seconds for which a hardware decoder may neither take nor give anything before it counts as stuck.
  double decoderPatience = 2.5;
  /// Seconds between attempts to get at a sound device that failed, while the film plays.
  double soundRetry = 3.0;
  /// Seconds that the end of the engine waits for pipelines that do not close (a sound server that hangs).
  double closingPatience = 2.0;
};

}  // namespace gstreamer
