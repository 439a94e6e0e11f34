#include "platform/uikit/UIViewController.h"

#include "platform/Platform.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIStoryboard.h"
#include "platform/uikit/UIStoryboardSegue.h"
#include "platform/uikit/UIView.h"
#include "platform/uikit/UIWindow.h"

UIViewController::UIViewController(const std::optional<std::string>& /*nibName*/, NSBundle* /*bundle*/) {}

UIViewController::UIViewController(const NSCoder& coder) : storyboard_(coder.storyboard()), scene_(coder.scene()) {}

UIViewController::~UIViewController() = default;

const Strong<UIView>& UIViewController::view() {
  if (!view_) loadView();
  return view_;
}

void UIViewController::loadView() {
  const auto window = UIApplication::sharedApplication()->keyWindow();
  view_ = make<UIView>(window ? window->frameForScreen(*this) : CGRectZero);
  if (storyboard_) {
    storyboard_->buildView(scene_, *this);
  } else {
    builtSize_ = view_->frame().size;
  }
  view_->layoutIfNeeded();
  view_->viewController_ = weakReference(this);  // only now: no layout is reported before viewDidLoad
  viewDidLoad();
}

void UIViewController::performSegueWithIdentifier_sender(const std::string& identifier,
                                                         const Strong<NSObject>& sender) {
  if (!storyboard_) fatalError("a segue of a screen that is not in the interface resource: " + identifier);
  const auto description = storyboard_->segue(scene_, identifier);
  const auto window = UIApplication::sharedApplication()->keyWindow();
  if (!window || !window->canPresentOver(*this)) return;
  window->reservePresentation(strongReference(this));
  if (description.condition == UIStoryboard::Condition::MediaLibraryPrepared) {
    runSegueOncePrepared(identifier, sender);
  } else {
    runReservedSegue(identifier, sender);
  }
}

void UIViewController::runReservedSegue(const std::string& identifier, const Strong<NSObject>& sender) {
  const auto description = storyboard_->segue(scene_, identifier);
  const auto self = strongReference(this);
  const auto destination = storyboard_->instantiateViewController(description.destinationClass);
  destination->setModalPresentationStyle(description.presentationStyle);
  prepareForSegue_sender(make<UIStoryboardSegue>(identifier, self, destination), sender);
  UIApplication::sharedApplication()->keyWindow()->presentReserved(self, destination, true);
}

void UIViewController::runSegueOncePrepared(const std::string& identifier, const Strong<NSObject>& sender) {
  // The sender may be this screen itself, which a library that takes its time is not to keep.
  const auto kept = sender.get() == static_cast<const NSObject*>(this) ? nullptr : sender;
  const bool isOwnSegue = sender != nullptr && kept == nullptr;
  const Weak<UIWindow> window = UIApplication::sharedApplication()->keyWindow();
  const auto run = [screen = weakReference(this), window, identifier, kept, isOwnSegue](bool isReady) {
    const auto there = window.lock();
    if (!there) return;
    const auto self = screen.lock();
    if (isReady && self && there->canPresentReserved(*self)) {
      self->runReservedSegue(identifier, isOwnSegue ? self : kept);
    } else {
      there->cancelReservation(self);
    }
  };
  Platform::current().ports().mediaLibrary.prepare(run);
}

void UIViewController::presentViewController_animated_completion(const Strong<UIViewController>& controller,
                                                                 bool animated, std::function<void()> completion) {
  const auto window = UIApplication::sharedApplication()->keyWindow();
  if (!window) fatalError("a presentation without a window");
  window->present(strongReference(this), controller, animated, std::move(completion));
}

void UIViewController::dismissViewControllerAnimated_completion(bool animated, std::function<void()> completion) {
  const auto window = UIApplication::sharedApplication()->keyWindow();
  if (!window) return;
  const auto top = presented_ ? presented_ : strongReference(this);
  window->dismiss(top, animated, std::move(completion));
}

void UIViewController::beginAppearanceTransition_animated(bool isAppearing, bool animated) {
  transitionIsAppearing_ = isAppearing;
  transitionIsAnimated_ = animated;
  if (isAppearing) {
    viewWillAppear(animated);
  } else {
    viewWillDisappear(animated);
  }
}

void UIViewController::endAppearanceTransition() {
  if (transitionIsAppearing_) {
    viewDidAppear(transitionIsAnimated_);
  } else {
    viewDidDisappear(transitionIsAnimated_);
  }
}
