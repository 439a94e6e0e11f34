#pragma once

#include "platform/uikit/FilmControls.h"
#include "platform/uikit/InterfaceTable.h"
#include "platform/uikit/UIResponder.h"
#include "platform/uikit/UITraitCollection.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

class NSBundle;
class NSCoder;
class UIStoryboard;
class UIStoryboardSegue;
class UIView;

enum class UIModalPresentationStyle { FullScreen = 0, PageSheet = 1 };
enum class UIModalTransitionStyle { CoverVertical = 0, FlipHorizontal = 1, CrossDissolve = 2 };

/// One screen: a root view, its appearance callbacks, and the screens that it presents. Main thread only.
class UIViewController : public UIResponder {
 public:
  /// `initWithNibName:bundle:`: a controller whose view is built by code. Both arguments may be none; no nib files
  /// are read.
  explicit UIViewController(const std::optional<std::string>& nibName = std::nullopt, NSBundle* bundle = nullptr);
  /// `initWithCoder:`: a controller of a scene of the interface resource.
  explicit UIViewController(const NSCoder& coder);
  ~UIViewController() override;

  /// The root view; loaded, laid out at the size it will have, and followed by `viewDidLoad`, when first asked for.
  const Strong<UIView>& view();
  bool isViewLoaded() const { return view_ != nullptr; }

  virtual void viewDidLoad() {}
  virtual void viewWillAppear(bool /*animated*/) {}
  virtual void viewDidAppear(bool /*animated*/) {}
  virtual void viewWillDisappear(bool /*animated*/) {}
  virtual void viewDidDisappear(bool /*animated*/) {}
  virtual void viewWillLayoutSubviews() {}
  virtual void viewDidLayoutSubviews() {}
  virtual void didReceiveMemoryWarning() {}
  /// The room for the screen is about to change. At most once per frame, only for a real change, never for the
  /// first size; the views have been laid out anew before work deferred here runs.
  virtual void willTransitionToTraitCollection_withTransitionCoordinator(
      const UITraitCollection& /*newCollection*/, UIViewControllerTransitionCoordinator& /*coordinator*/) {}

  /// A segue of this screen is about to run: the destination exists, its view is not loaded yet.
  virtual void prepareForSegue_sender(const Strong<UIStoryboardSegue>& /*segue*/,
                                      const Strong<NSObject>& /*sender*/) {}
  /// Runs the segue of that identifier. Refused, without any effect, while this screen presents another already or
  /// a presentation or dismissal is under way. Stops the app when the scene has no such segue.
  ///
  /// A segue that waits for the media library runs within this call where the library is prepared already. Otherwise
  /// its presentation is pending until the library is: no control of this screen acts, and what is presented over it
  /// waits its turn. Where the person does not want to wait, or this screen is gone by then, nothing happens.
  void performSegueWithIdentifier_sender(const std::string& identifier, const Strong<NSObject>& sender);

  /// Presents `controller` over this screen. Waits its turn where this screen is not in the window yet, presents
  /// another already, or a presentation or dismissal is under way. `completion` runs after `viewDidAppear`.
  void presentViewController_animated_completion(const Strong<UIViewController>& controller, bool animated,
                                                 std::function<void()> completion = nullptr);
  /// Dismisses what this screen presents, else this screen itself. `completion` runs once it is gone and the
  /// appearance callbacks were delivered. Nothing happens for a screen that neither presents nor was presented.
  void dismissViewControllerAnimated_completion(bool animated, std::function<void()> completion = nullptr);

  const Strong<UIViewController>& presentedViewController() const { return presented_; }
  Strong<UIViewController> presentingViewController() const { return presenting_.lock(); }
  UIModalPresentationStyle modalPresentationStyle() const { return presentationStyle_; }
  void setModalPresentationStyle(UIModalPresentationStyle style) { presentationStyle_ = style; }
  /// How large a page sheet is to be where there is room around it; 0 x 0: as large as is easy to read.
  CGSize preferredContentSize() const { return preferredContentSize_; }
  void setPreferredContentSize(CGSize size) { preferredContentSize_ = size; }
  UIModalTransitionStyle modalTransitionStyle() const { return transitionStyle_; }
  void setModalTransitionStyle(UIModalTransitionStyle style) { transitionStyle_ = style; }
  /// Whether presenting it in full screen makes the screen beneath disappear. Alerts never do.
  virtual bool coversItsPresenter() const { return presentationStyle_ == UIModalPresentationStyle::FullScreen; }
  /// Whether it is drawn by the screen host from its own properties instead of a view.
  virtual bool isDrawnByHost() const { return false; }

  /// Delivers the will-appear or will-disappear callback at once, and `endAppearanceTransition` the matching did.
  /// Always: also when nothing balanced the last pair.
  void beginAppearanceTransition_animated(bool isAppearing, bool animated);
  void endAppearanceTransition();

  /// The outlets and actions that the interface resource may name.
  virtual InterfaceTable interfaceTable() { return {}; }
  /// The films that the interface resource declares for this screen.
  const std::vector<FilmControls>& films() const { return films_; }

 private:
  friend class UIStoryboard;
  friend class UIWindow;

  void loadView();
  void runReservedSegue(const std::string& identifier, const Strong<NSObject>& sender);
  void runSegueOncePrepared(const std::string& identifier, const Strong<NSObject>& sender);

  Strong<UIStoryboard> storyboard_;
  std::string scene_;
  Strong<UIView> view_;
  std::optional<CGSize> builtSize_;  // of a view built by code
  Strong<UIViewController> presented_;
  Weak<UIViewController> presenting_;
  std::vector<FilmControls> films_;
  CGSize preferredContentSize_;
  UIModalPresentationStyle presentationStyle_ = UIModalPresentationStyle::FullScreen;
  UIModalTransitionStyle transitionStyle_ = UIModalTransitionStyle::CoverVertical;
  bool transitionIsAppearing_ = false;
  bool transitionIsAnimated_ = false;
};
