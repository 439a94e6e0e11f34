#pragma once

#include "platform/host/Services.h"

namespace desktop {

/// The console on the process's standard output.
class StandardOutput final : public host::Console {
 public:
  /// From now on a closed standard output is no reason to end the process.
  StandardOutput();
  void writeLine(std::string_view line) override;
};

}  // namespace desktop
