#pragma once

#include "platform/foundation/NSNotificationCenter.h"
#include "platform/foundation/RunLoop.h"
#include "platform/host/Ports.h"

class UIApplication;

/// Keeps the display lit from its beginning to its end.
class Wakefulness final {
 public:
  explicit Wakefulness(host::Display& display) : display_(display) { display_.keepAwake(true); }
  ~Wakefulness() { display_.keepAwake(false); }
  Wakefulness(const Wakefulness&) = delete;
  Wakefulness& operator=(const Wakefulness&) = delete;

 private:
  host::Display& display_;
};

/// From its beginning to its end, fingers hold sliders.
class Scrubbing final {
 public:
  explicit Scrubbing(host::MediaEngine& engine) : engine_(engine) { engine_.setScrubbing(true); }
  ~Scrubbing() { engine_.setScrubbing(false); }
  Scrubbing(const Scrubbing&) = delete;
  Scrubbing& operator=(const Scrubbing&) = delete;

 private:
  host::MediaEngine& engine_;
};

/// One running platform: the state behind the frameworks' shared objects (the main run loop, the default
/// notification centre, the shared application), on the ports of one host. The composition root makes one, each
/// test its own. Main thread only.
class Platform {
 public:
  /// Becomes the current platform; at most one exists at a time.
  explicit Platform(const host::Ports& ports);
  ~Platform();
  Platform(const Platform&) = delete;
  Platform& operator=(const Platform&) = delete;

  /// The one that exists; stops the app when there is none.
  static Platform& current();

  const host::Ports& ports() const { return ports_; }
  RunLoop& runLoop() { return runLoop_; }
  NSNotificationCenter& notificationCenter() { return notificationCenter_; }
  const Strong<UIApplication>& application() const { return application_; }
  /// For as long as somebody holds one, the display stays lit.
  Strong<Wakefulness> wakefulness();
  /// For as long as somebody holds one, the media engine knows of it.
  Strong<Scrubbing> scrubbing();

  /// The end of a turn of the main loop: lays out what asked for it, and lets media commands take effect.
  void finishTurn();

 private:
  host::Ports ports_;
  RunLoop runLoop_;
  NSNotificationCenter notificationCenter_;
  Strong<UIApplication> application_;
  Weak<Wakefulness> wakefulness_;
  Weak<Scrubbing> scrubbing_;
};
