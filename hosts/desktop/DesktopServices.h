#pragma once

#include "platform/host/Services.h"

#include <functional>

namespace desktop {

/// The user's browser and file programs. "quillop-help:NAME" is the page NAME of the app's own help, "app-settings:"
/// the app's page in the system's settings.
class DesktopServices final : public host::Desktop {
 public:
  /// `openSettings` shows the settings page; where there is none, nothing takes that address.
  explicit DesktopServices(std::function<void()> openSettings = {}) : openSettings_(std::move(openSettings)) {}

  bool open(const std::string& url) override;

 private:
  std::function<void()> openSettings_;
};

}  // namespace desktop
