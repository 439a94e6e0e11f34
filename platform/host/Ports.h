#pragma once

#include "platform/host/Mail.h"
#include "platform/host/MainLoop.h"
#include "platform/host/MediaEngine.h"
#include "platform/host/MediaLibrary.h"
#include "platform/host/Screen.h"
#include "platform/host/Services.h"

namespace host {

/// Everything that comes from outside. The composition root (or a test) owns what these refer to and keeps it
/// longer than the `Platform` made from it.
struct Ports {
  MainLoop& mainLoop;
  Console& console;
  Defaults& defaults;
  Resources& resources;
  Desktop& desktop;
  Mail& mail;
  Display& display;
  Screen& screen;
  MediaEngine& mediaEngine;
  MediaLibrary& mediaLibrary;
};

}  // namespace host
