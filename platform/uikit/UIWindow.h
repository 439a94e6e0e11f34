#pragma once

#include "platform/uikit/UIViewController.h"

#include <functional>
#include <vector>

enum class PresentationPhase { Presenting, Shown, Dismissing };

/// A screen that lies over the one that presented it.
struct Presentation {
  Strong<UIViewController> controller;
  PresentationPhase phase = PresentationPhase::Presenting;
  bool animated = false;
};

/// The app's window: the root screen and the screens presented over it. Main thread only.
class UIWindow final : public UIView {
 public:
  using UIView::UIView;
  ~UIWindow() override;

  /// How long a presentation takes, in seconds, where motion is wanted.
  static constexpr double transitionDuration = 0.22;
  /// The same of a dismissal: who lets a screen go is waiting for what comes after it.
  static constexpr double dismissalDuration = 0.13;

  const Strong<UIViewController>& rootViewController() const { return root_; }
  void setRootViewController(const Strong<UIViewController>& controller) { root_ = controller; }
  /// Puts the root screen into the window and lets it appear, `viewDidAppear` in the next turn.
  void makeKeyAndVisible();

  /// The window got another size. To be called at most once per frame. Screens hear of it when their traits change;
  /// views are laid out at the end of the turn.
  void setSize(CGSize size);
  const UITraitCollection& traitCollection() const { return traits_; }
  /// The room that `controller` has in the window, by its presentation style. A view from the interface resource
  /// fills it; one built by code keeps the geometry that it was built with, and the whole of it is scaled to fit and
  /// centred.
  CGRect frameForScreen(const UIViewController& controller) const;

  /// What lies over the root screen, from the bottom to the top.
  const std::vector<Presentation>& presentations() const { return presentations_; }
  /// The topmost screen; the root screen where nothing is presented.
  Strong<UIViewController> topmostViewController() const;
  /// `controller` is the topmost screen, no presentation or dismissal is running, and none is reserved over it.
  bool isTopmostAtRest(const UIViewController& controller) const;
  /// Whether anything in the window takes input; true at first. False while the host shows something over the window
  /// that is not the app's, such as a question of the system's. Meanwhile a full-screen presentation waits, so that
  /// the screen beneath the question stays the one over which it was asked; an alert may come.
  bool isUserInteractionEnabled() const { return userInteractionEnabled_; }
  /// To be called in a turn: what waited for it starts at once.
  void setUserInteractionEnabled(bool enabled);
  /// Whether input in `view` counts: it lies in the topmost screen, at rest, and the window takes input.
  bool acceptsInputIn(const UIView& view) const;
  bool canPresentOver(const UIViewController& presenter) const;

  void present(const Strong<UIViewController>& presenter, const Strong<UIViewController>& controller, bool animated,
               std::function<void()> completion);
  void dismiss(const Strong<UIViewController>& controller, bool animated, std::function<void()> completion);

  /// Keeps a place in the line of presentations for a screen that `presenter` cannot present yet. Until it is used or
  /// cancelled that presentation counts as pending: nothing in `presenter` takes input, and whatever else is
  /// presented over it comes afterwards. The place is lost when `presenter` leaves the window. `presenter` is not
  /// kept alive.
  void reservePresentation(const Strong<UIViewController>& presenter);
  /// Whether `presenter` has a place reserved and is still the topmost screen, not on its way out.
  bool canPresentReserved(const UIViewController& presenter) const;
  /// Presents `controller` in the place that `presenter` reserved; does nothing where there is none.
  void presentReserved(const Strong<UIViewController>& presenter, const Strong<UIViewController>& controller,
                       bool animated);
  /// What waited behind the place goes on. `presenter` is null where it is gone already.
  void cancelReservation(const Strong<UIViewController>& presenter);

  /// Views that changed in any way since the last call, each once, in the order of their first change. Those that
  /// left the window meanwhile are not among them. For the screen host, once per frame.
  std::vector<Strong<UIView>> takeChanges();
  void noteChange(UIView& view);

 protected:
  Strong<UIWindow> asWindow() override { return strongReference(this); }

 private:
  struct Waiting {
    enum class Kind { Presentation, Dismissal, Reservation } kind;
    Weak<UIViewController> presenter;
    Strong<UIViewController> controller;  // none for a reservation
    bool animated;
    std::function<void()> completion;
  };

  bool isInTransition() const;
  void place(UIViewController& screen) const;
  bool isShown(const UIViewController& controller) const;
  void startWaiting();
  bool canStart(const Waiting& waiting) const;
  bool canStillStart(const Waiting& waiting) const;
  bool hasReservation(const UIViewController& presenter) const;
  void startPresentation(const Waiting& work);
  void endPresentation(const Waiting& work);
  void startDismissal(const Waiting& work);
  void endDismissal(const Waiting& work);
  void afterTransition(bool animated, double duration, std::function<void()> block);

  Strong<UIViewController> root_;
  UITraitCollection traits_;
  std::vector<Presentation> presentations_;
  std::vector<Waiting> waiting_;
  std::vector<Weak<UIView>> changes_;
  bool visible_ = false;
  bool userInteractionEnabled_ = true;
};
