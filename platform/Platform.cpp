#include "platform/Platform.h"

#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIWindow.h"

#include <cstdio>
#include <cstdlib>

namespace {
Platform* currentPlatform = nullptr;
}

Platform::Platform(const host::Ports& ports) : ports_(ports), application_(make<UIApplication>()) {
  currentPlatform = this;
}

Platform::~Platform() {
  application_ = nullptr;
  runLoop_.clear();  // a screen kept by a timer asks for the platform once more as it goes
  currentPlatform = nullptr;
}

Platform& Platform::current() {
  if (currentPlatform == nullptr) {
    std::fputs("Fatal error: there is no platform\n", stderr);
    std::abort();
  }
  return *currentPlatform;
}

Strong<Wakefulness> Platform::wakefulness() {
  auto shared = wakefulness_.lock();
  if (!shared) wakefulness_ = shared = std::make_shared<Wakefulness>(ports_.display);
  return shared;
}

Strong<Scrubbing> Platform::scrubbing() {
  auto shared = scrubbing_.lock();
  if (!shared) scrubbing_ = shared = std::make_shared<Scrubbing>(ports_.mediaEngine);
  return shared;
}

void Platform::finishTurn() {
  if (const auto window = application_->keyWindow()) window->layoutIfNeeded();
  ports_.mediaEngine.commit();
}
