#pragma once

#include "platform/Platform.h"
#include "platform/foundation/Console.h"
#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIButton.h"
#include "platform/uikit/UILabel.h"
#include "platform/uikit/UISlider.h"
#include "platform/uikit/UIStoryboard.h"
#include "platform/uikit/UIStoryboardSegue.h"
#include "platform/uikit/UITableView.h"
#include "platform/uikit/UIWindow.h"
#include "tests/support/SimulatedHost.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>

/// A screen that prints what happens to it, each line beginning with its name: the class of its scene ("Root",
/// "Sheet", "Full"), or the name that it was made with.
class NotedScreen : public UIViewController, public UITableViewDataSource, public UITableViewDelegate {
 public:
  explicit NotedScreen(const NSCoder& coder) : UIViewController(coder), name(coder.scene()) {}
  explicit NotedScreen(std::string itsName) : name(std::move(itsName)) {}
  ~NotedScreen() override = default;

  void viewDidLoad() override;
  void viewWillAppear(bool animated) override { note("will appear", animated); }
  void viewDidAppear(bool animated) override { note("did appear", animated); }
  void viewWillDisappear(bool animated) override { note("will disappear", animated); }
  void viewDidDisappear(bool animated) override { note("did disappear", animated); }
  void viewWillLayoutSubviews() override { ++layoutsBegun; }
  void viewDidLayoutSubviews() override { ++layoutsEnded; }
  void willTransitionToTraitCollection_withTransitionCoordinator(
      const UITraitCollection& newCollection, UIViewControllerTransitionCoordinator& coordinator) override;
  void prepareForSegue_sender(const Strong<UIStoryboardSegue>& segue, const Strong<NSObject>& sender) override;
  InterfaceTable interfaceTable() override;

  long tableView_numberOfRowsInSection(const Strong<UITableView>& tableView, long section) override;
  Strong<UITableViewCell> tableView_cellForRowAtIndexPath(const Strong<UITableView>& tableView,
                                                          NSIndexPath indexPath) override;
  void tableView_didSelectRowAtIndexPath(const Strong<UITableView>& tableView, NSIndexPath indexPath) override;

  void pressed(const Strong<UIControl>& sender);
  void moved(const Strong<UIControl>& sender);

  const std::string name;
  Strong<UIView> box;
  Strong<UILabel> label;
  Strong<UIButton> button;
  Strong<UISlider> slider;
  Strong<UITableView> table;
  long rows = 0;
  bool givesCells = true;
  int cellsMade = 0;
  int layoutsBegun = 0;
  int layoutsEnded = 0;
  int layoutsWhenLoaded = 0;
  std::optional<CGRect> boxWhenLoaded;
  std::optional<UITraitCollection> traits;
  std::function<void(const UIStoryboardSegue&)> preparing;

 private:
  void note(const std::string& what, bool animated) const {
    print(name + " " + what + (animated ? " animated" : ""));
  }
};

class NotedDelegate final : public NSObject, public UIApplicationDelegate {
 public:
  const Strong<UIWindow>& window() const override { return window_; }
  void setWindow(const Strong<UIWindow>& window) override { window_ = window; }
  bool application_didFinishLaunchingWithOptions(const Strong<UIApplication>& application,
                                                 const LaunchOptions& options) override;
  void applicationWillResignActive(const Strong<UIApplication>&) override { print("will resign active"); }
  void applicationDidEnterBackground(const Strong<UIApplication>&) override { print("did enter background"); }
  void applicationWillEnterForeground(const Strong<UIApplication>&) override { print("will enter foreground"); }
  void applicationDidBecomeActive(const Strong<UIApplication>&) override { print("did become active"); }
  void applicationWillTerminate(const Strong<UIApplication>&) override { print("will terminate"); }

 private:
  Strong<UIWindow> window_;
};

/// A window of noted screens on the simulated host: a root screen with a box, a button, a slider and a table, a page
/// sheet and a full screen one. No part of the app is in it.
class WindowFixture : public testing::Test {
 protected:
  WindowFixture();
  ~WindowFixture() override;

  /// Shows the root screen; what that printed is forgotten.
  void launch();
  void setStoryboard(const std::string& text) { host.resources.texts["Main.storyboard.xml"] = text; }

  const Strong<UIWindow>& window() const { return UIApplication::sharedApplication()->delegate()->window(); }
  NotedScreen& root() const { return dynamic_cast<NotedScreen&>(*window()->rootViewController()); }
  NotedScreen& top() const { return dynamic_cast<NotedScreen&>(*window()->topmostViewController()); }

  void advance(double seconds) { host.mainLoop.advance(seconds); }
  void finishTransition() { advance(UIWindow::transitionDuration); }
  /// Runs `block` as one event of the main loop, and what it caused at once.
  void event(const std::function<void()>& block);
  /// Performs a segue of the root screen and waits until its destination is there.
  void show(const std::string& segue);
  simulated::Lines takeLines() { return std::exchange(host.console.lines, {}); }

  simulated::Host host;
  std::unique_ptr<Platform> platform = std::make_unique<Platform>(host.ports());
};
