#include "app/AppDelegate.h"

#include "platform/foundation/ClassRegistry.h"
#include "platform/foundation/Console.h"
#include "platform/uikit/UIWindow.h"

namespace {

const ClassRegistration delegateRegistration = registerClass<AppDelegate>("AppDelegate");

}  // namespace

bool AppDelegate::application_didFinishLaunchingWithOptions(const Strong<UIApplication>& /*application*/,
                                                            const LaunchOptions& /*options*/) {
  return true;
}

void AppDelegate::applicationWillResignActive(const Strong<UIApplication>& /*application*/) {}

void AppDelegate::applicationDidEnterBackground(const Strong<UIApplication>& /*application*/) {
  print("applicationDidEnterBackground");
  if (window_ && window_->rootViewController()) {
    window_->rootViewController()->beginAppearanceTransition_animated(false, false);
  }
  // Asked for again: what the first call set off may have changed the window.
  if (window_ && window_->rootViewController()) window_->rootViewController()->endAppearanceTransition();
}

void AppDelegate::applicationWillEnterForeground(const Strong<UIApplication>& /*application*/) {}

void AppDelegate::applicationDidBecomeActive(const Strong<UIApplication>& /*application*/) {}

void AppDelegate::applicationWillTerminate(const Strong<UIApplication>& /*application*/) {}
