#pragma once

#include "platform/Platform.h"
#include "tests/support/SimulatedHost.h"

#include <gtest/gtest.h>

#include <functional>
#include <utility>

/// A platform on the simulated host, without an app.
class BarePlatform : public testing::Test {
 protected:
  void advance(double seconds) { host.mainLoop.advance(seconds); }

  /// Runs `block` as one event of the main loop, and what it caused at once.
  void event(const std::function<void()>& block) {
    {
      const RunLoop::Turn turn(RunLoop::main());
      block();
    }
    advance(0);
  }

  /// To be used inside an event: it takes that long. Nothing else runs meanwhile.
  void takeSeconds(double seconds) { host.mainLoop.advance(seconds); }

  simulated::Lines takeLines() { return std::exchange(host.console.lines, {}); }

  simulated::Host host;
  Platform platform{host.ports()};
};
