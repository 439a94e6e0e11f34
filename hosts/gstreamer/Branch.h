#pragma once

#include "hosts/gstreamer/Handles.h"

#include <optional>
#include <string>

namespace gstreamer {

/// What becomes of the decoded stream of one kind: the end of a pipeline. Used by the thread that builds the
/// pipeline, unless stated otherwise, and for one pipeline only.
class Branch {
 public:
  virtual ~Branch() = default;

  /// The kind of stream that the branch takes.
  virtual GstStreamType kind() const = 0;
  /// Puts the branch's elements into `pipeline`. False, with a reason, when one of them does not exist.
  virtual bool build(GstBin& pipeline, std::string& reason) = 0;
  /// The element that decoded data goes into, and the one where it ends.
  virtual GstElement& entry() = 0;
  virtual GstElement& sink() = 0;
  /// Whether the branch wants a buffer of encoded data before the decoder, so that a slow disk is not heard.
  virtual bool readsAhead() const = 0;
  /// Whether what arrives at the sink while the pipeline stands still is to be put up: true around opening and
  /// seeking, false after a pause, when it is what would come next.
  virtual void expectStill(bool expected) = 0;
  /// The same while a finger moves, where something near `position` (in seconds) will do for a moment: only what is
  /// nearer to it than what is up already.
  virtual void expectStillNear(double position) = 0;
  /// The decoder of what the branch takes is found, and gets nothing yet.
  virtual void lead(GstElement&) {}
  /// The pipeline is about to be sought: what was before does not count any more.
  virtual void beginAnew() {}
  /// Whether something was put up since then. Any thread.
  virtual bool hasStill() const { return true; }
  /// Seconds by which what comes out is behind the pipeline's time, where that can be told. May block.
  virtual std::optional<double> lag() const { return std::nullopt; }
  /// Lets everything come out `seconds` later than its time. Any thread, once built.
  virtual void setDelay(double) {}
  /// Whether something decoded waits for its time here. Any thread, once built.
  virtual bool hasInStore() const { return true; }
  /// Nothing comes out any more, whatever still arrives. Any thread, once built.
  virtual void leave() {}
  /// A frame was dropped, here or in a decoder. Any thread.
  virtual void countDropped() = 0;
};

}  // namespace gstreamer
