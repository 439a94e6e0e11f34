#pragma once

#include "platform/foundation/Values.h"
#include "platform/uikit/UIResponder.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

class NSCoder;
class UIWindow;

/// The text of the address of the app's page in the system settings.
inline constexpr const char* UIApplicationOpenSettingsURLString = "app-settings:";

class UIApplication;

class UIApplicationDelegate {
 public:
  using LaunchOptions = std::map<std::string, std::string>;

  virtual ~UIApplicationDelegate() = default;
  virtual const Strong<UIWindow>& window() const = 0;
  virtual void setWindow(const Strong<UIWindow>& window) = 0;
  virtual bool application_didFinishLaunchingWithOptions(const Strong<UIApplication>& application,
                                                         const LaunchOptions& options) = 0;
  virtual void applicationWillResignActive(const Strong<UIApplication>& application) = 0;
  virtual void applicationDidEnterBackground(const Strong<UIApplication>& application) = 0;
  virtual void applicationWillEnterForeground(const Strong<UIApplication>& application) = 0;
  virtual void applicationDidBecomeActive(const Strong<UIApplication>& application) = 0;
  virtual void applicationWillTerminate(const Strong<UIApplication>& application) = 0;
};

/// The running app. Main thread only.
class UIApplication final : public UIResponder {
 public:
  static const Strong<UIApplication>& sharedApplication();

  const Strong<UIApplicationDelegate>& delegate() const { return delegate_; }
  /// The delegate's window, or none before it exists.
  Strong<UIWindow> keyWindow() const;

  /// Opens `url` outside the app. `completionHandler` (may be empty) hears in a later turn whether something took it.
  void openURL_options_completionHandler(const Strong<NSURL>& url, const std::map<std::string, std::string>& options,
                                         std::function<void(bool)> completionHandler);

  /// Makes the delegate, the window and the root screen of the interface resource "Main", and lets them appear.
  /// The screen host is ready to draw when this is called.
  void launch(const std::string& delegateClassName);
  /// The app is no longer in sight, or is again. Told twice, it counts once: minimised and then locked is one entry
  /// into the background.
  void enterBackground();
  void enterForeground();
  /// The app is about to end; the delegate hears of it once.
  void terminate();

 private:
  Strong<UIApplicationDelegate> delegate_;
  bool inBackground_ = false;
  bool terminated_ = false;
};

/// Runs the app until it ends and gives the process's exit status. `principalClassName` none means the default
/// application class, the only one there is. Comes from the composition root, which alone knows the hosts.
int UIApplicationMain(int argumentCount, char* arguments[], const char* principalClassName,
                      const std::string& delegateClassName);
