#pragma once

#include "hosts/gstreamer/Options.h"
#include "platform/host/MainLoop.h"
#include "platform/host/MediaEngine.h"

#include <memory>

namespace gstreamer {

/// The engine that plays with GStreamer. `mainLoop` must outlive it; events of players are posted there. Nothing of
/// GStreamer is touched on the calling thread, so that this returns at once even when GStreamer has to look through
/// its plugins first (which it does, for seconds, the first time after they changed).
///
/// Destroying the engine closes what is still open and waits for it for `Options::closingPatience`, and as long once
/// more where something is stuck that has to be left to itself.
std::unique_ptr<host::MediaEngine> makeEngine(host::MainLoop& mainLoop, Options options = {});

}  // namespace gstreamer
