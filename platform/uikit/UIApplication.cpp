#include "platform/uikit/UIApplication.h"

#include "platform/Platform.h"
#include "platform/foundation/ClassRegistry.h"
#include "platform/foundation/Console.h"
#include "platform/foundation/DispatchQueue.h"
#include "platform/uikit/UIStoryboard.h"
#include "platform/uikit/UIWindow.h"

const Strong<UIApplication>& UIApplication::sharedApplication() {
  return Platform::current().application();
}

Strong<UIWindow> UIApplication::keyWindow() const {
  return delegate_ ? delegate_->window() : nullptr;
}

void UIApplication::openURL_options_completionHandler(const Strong<NSURL>& url,
                                                      const std::map<std::string, std::string>& /*options*/,
                                                      std::function<void(bool)> completionHandler) {
  const bool opened = Platform::current().ports().desktop.open(url->absoluteString());
  if (completionHandler) {
    DispatchQueue::main().async([handler = std::move(completionHandler), opened] { handler(opened); });
  }
}

void UIApplication::launch(const std::string& delegateClassName) {
  const RunLoop::Turn turn(RunLoop::main());
  delegate_ = std::dynamic_pointer_cast<UIApplicationDelegate>(ClassRegistry::create(delegateClassName, NSCoder()));
  if (!delegate_) fatalError(delegateClassName + " is no application delegate");
  const auto& screen = Platform::current().ports().screen;
  const auto window = make<UIWindow>(CGRectMake(0, 0, screen.width(), screen.height()));
  window->setRootViewController(UIStoryboard::storyboardWithName("Main")->instantiateInitialViewController());
  delegate_->setWindow(window);
  delegate_->application_didFinishLaunchingWithOptions(sharedApplication(), {});
  window->makeKeyAndVisible();
  delegate_->applicationDidBecomeActive(sharedApplication());
}

void UIApplication::enterBackground() {
  if (inBackground_ || !delegate_) return;
  inBackground_ = true;
  delegate_->applicationWillResignActive(sharedApplication());
  delegate_->applicationDidEnterBackground(sharedApplication());
}

void UIApplication::enterForeground() {
  if (!inBackground_) return;
  inBackground_ = false;
  delegate_->applicationWillEnterForeground(sharedApplication());
  delegate_->applicationDidBecomeActive(sharedApplication());
}

void UIApplication::terminate() {
  if (terminated_ || !delegate_) return;
  terminated_ = true;
  delegate_->applicationWillTerminate(sharedApplication());
}
