#pragma once

#include "platform/uikit/UIApplication.h"

/// The application's delegate: when the app goes to the background, the root screen lives through a disappearance.
class AppDelegate final : public UIResponder, public UIApplicationDelegate {
 public:
  const Strong<UIWindow>& window() const override { return window_; }
  void setWindow(const Strong<UIWindow>& window) override { window_ = window; }

  bool application_didFinishLaunchingWithOptions(const Strong<UIApplication>& application,
                                                 const LaunchOptions& options) override;
  void applicationWillResignActive(const Strong<UIApplication>& application) override;
  void applicationDidEnterBackground(const Strong<UIApplication>& application) override;
  void applicationWillEnterForeground(const Strong<UIApplication>& application) override;
  void applicationDidBecomeActive(const Strong<UIApplication>& application) override;
  void applicationWillTerminate(const Strong<UIApplication>& application) override;

 private:
  Strong<UIWindow> window_;
};
