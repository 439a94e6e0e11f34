#pragma once

#include "platform/host/Services.h"

namespace desktop {

/// The user's browser and file programs. "quillop-help:NAME" is the page NAME of the app's own help.
class DesktopServices final : public host::Desktop {
 public:
  bool open(const std::string& url) override;
};

}  // namespace desktop
