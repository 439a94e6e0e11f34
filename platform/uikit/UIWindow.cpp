#include "platform/uikit/UIWindow.h"

#include "platform/Platform.h"
#include "platform/foundation/DispatchQueue.h"

#include <algorithm>
#include <cmath>

namespace {

// A page sheet leaves a margin where there is room for one, and never grows wider or higher than is easy to read.
constexpr double sheetMargin = 32;
constexpr double sheetWidth = 960;
constexpr double sheetHeight = 900;
constexpr double roomForMargins = 700;
constexpr double shortWindow = 480;
constexpr double sheetTop = 24;
// High enough for a sheet that begins below what most screens have along their upper edge.
constexpr double highWindow = 640;
constexpr double highSheetTop = 64;

}  // namespace

UIWindow::~UIWindow() {
  // A screen that holds its presenter, as a list holds its delegate, would keep both of them.
  for (const auto& presentation : presentations_) {
    if (const auto presenter = presentation.controller->presentingViewController()) presenter->presented_ = nullptr;
  }
}

void UIWindow::makeKeyAndVisible() {
  traits_ = UITraitCollection::forWindow(frame().size, Platform::current().ports().screen.isResizable());
  addSubview(root_->view());
  layoutIfNeeded();
  visible_ = true;
  const auto root = root_;
  root->viewWillAppear(false);
  DispatchQueue::main().async([root, self = strongReference(this)] {
    root->viewDidAppear(false);
    self->startWaiting();
  });
}

void UIWindow::setSize(CGSize size) {
  if (size == frame().size) return;
  setFrame({{0, 0}, size});
  const auto traits = UITraitCollection::forWindow(size, Platform::current().ports().screen.isResizable());
  std::vector<Strong<UIViewController>> screens{root_};
  for (const auto& presentation : presentations_) screens.push_back(presentation.controller);
  const bool differs = visible_ && !(traits == traits_);
  traits_ = traits;
  UIViewControllerTransitionCoordinator coordinator;
  for (const auto& screen : screens) {
    if (!screen || !screen->isViewLoaded()) continue;
    if (differs) screen->willTransitionToTraitCollection_withTransitionCoordinator(traits_, coordinator);
    place(*screen);
  }
}

CGRect UIWindow::frameForScreen(const UIViewController& controller) const {
  const CGSize window = frame().size;
  const bool isSheet = &controller != root_.get() && !controller.coversItsPresenter();
  if (!isSheet) return {{0, 0}, window};
  if (window.height < shortWindow) return {{0, 0}, window};
  const bool isHigh = window.height >= highWindow;
  if (window.width < roomForMargins) {
    const double top = isHigh ? highSheetTop : sheetTop;
    return {{0, top}, {window.width, window.height - top}};
  }
  const CGSize wanted = controller.preferredContentSize();
  const double most = window.height - 2 * (isHigh ? highSheetTop : sheetMargin);
  const double width = std::min(window.width - 2 * sheetMargin, wanted.width > 0 ? wanted.width : sheetWidth);
  const double height = std::min(most, wanted.height > 0 ? wanted.height : sheetHeight);
  return {{std::round((window.width - width) / 2), std::round((window.height - height) / 2)}, {width, height}};
}

void UIWindow::place(UIViewController& screen) const {
  UIView& view = *screen.view();
  const CGRect room = frameForScreen(screen);
  if (!screen.builtSize_ || screen.builtSize_->width <= 0 || screen.builtSize_->height <= 0) {
    view.setFrame(room);
    return;
  }
  const CGSize built = *screen.builtSize_;
  const double scale = std::min(room.size.width / built.width, room.size.height / built.height);
  const CGSize size{built.width * scale, built.height * scale};
  view.setScale(scale);
  view.setFrame(
      {{room.origin.x + (room.size.width - size.width) / 2, room.origin.y + (room.size.height - size.height) / 2},
       size});
}

Strong<UIViewController> UIWindow::topmostViewController() const {
  return presentations_.empty() ? root_ : presentations_.back().controller;
}

bool UIWindow::isInTransition() const {
  return std::any_of(presentations_.begin(), presentations_.end(),
                     [](const Presentation& each) { return each.phase != PresentationPhase::Shown; });
}

bool UIWindow::isShown(const UIViewController& controller) const {
  if (&controller == root_.get()) return visible_;
  return std::any_of(presentations_.begin(), presentations_.end(),
                     [&](const Presentation& each) { return each.controller.get() == &controller; });
}

bool UIWindow::isTopmostAtRest(const UIViewController& controller) const {
  return visible_ && !isInTransition() && !hasReservation(controller) && topmostViewController().get() == &controller;
}

bool UIWindow::acceptsInputIn(const UIView& view) const {
  const auto top = topmostViewController();
  return userInteractionEnabled_ && top && isTopmostAtRest(*top) && top->isViewLoaded() &&
         top->view()->contains(view);
}

void UIWindow::setUserInteractionEnabled(bool enabled) {
  userInteractionEnabled_ = enabled;
  if (enabled) startWaiting();
}

bool UIWindow::canPresentOver(const UIViewController& presenter) const {
  return isTopmostAtRest(presenter) && waiting_.empty();
}

void UIWindow::present(const Strong<UIViewController>& presenter, const Strong<UIViewController>& controller,
                       bool animated, std::function<void()> completion) {
  waiting_.push_back({Waiting::Kind::Presentation, presenter, controller, animated, std::move(completion)});
  startWaiting();
}

void UIWindow::dismiss(const Strong<UIViewController>& controller, bool animated, std::function<void()> completion) {
  if (!isShown(*controller) || controller == root_) return;
  waiting_.push_back({Waiting::Kind::Dismissal, controller->presentingViewController(), controller, animated,
                      std::move(completion)});
  startWaiting();
}

void UIWindow::reservePresentation(const Strong<UIViewController>& presenter) {
  waiting_.push_back({Waiting::Kind::Reservation, presenter, nullptr, false, nullptr});
}

bool UIWindow::hasReservation(const UIViewController& presenter) const {
  return std::any_of(waiting_.begin(), waiting_.end(), [&](const Waiting& each) {
    return each.kind == Waiting::Kind::Reservation && each.presenter.lock().get() == &presenter;
  });
}

bool UIWindow::canPresentReserved(const UIViewController& presenter) const {
  return visible_ && !isInTransition() && hasReservation(presenter) && topmostViewController().get() == &presenter;
}

void UIWindow::presentReserved(const Strong<UIViewController>& presenter, const Strong<UIViewController>& controller,
                               bool animated) {
  for (auto& each : waiting_) {
    if (each.kind != Waiting::Kind::Reservation || each.presenter.lock() != presenter) continue;
    each = {Waiting::Kind::Presentation, presenter, controller, animated, nullptr};
    break;
  }
  startWaiting();
}

void UIWindow::cancelReservation(const Strong<UIViewController>& presenter) {
  std::erase_if(waiting_, [&](const Waiting& each) {
    return each.kind == Waiting::Kind::Reservation && each.presenter.lock() == presenter;
  });
  startWaiting();
}

bool UIWindow::canStart(const Waiting& waiting) const {
  if (isInTransition() || waiting.kind == Waiting::Kind::Reservation) return false;
  if (waiting.kind == Waiting::Kind::Dismissal) return true;
  if (!userInteractionEnabled_ && waiting.controller->coversItsPresenter()) return false;
  const auto presenter = waiting.presenter.lock();
  return presenter && isTopmostAtRest(*presenter);
}

/// Not what a screen that has gone wanted to present, nor a second dismissal of the same screen.
bool UIWindow::canStillStart(const Waiting& waiting) const {
  if (waiting.kind == Waiting::Kind::Dismissal) return isShown(*waiting.controller);
  const auto presenter = waiting.presenter.lock();
  return presenter && (waiting.kind == Waiting::Kind::Presentation || isShown(*presenter));
}

void UIWindow::startWaiting() {
  std::erase_if(waiting_, [this](const Waiting& each) { return !canStillStart(each); });
  const auto next =
      std::find_if(waiting_.begin(), waiting_.end(), [this](const Waiting& each) { return canStart(each); });
  if (next == waiting_.end()) return;
  const Waiting work = std::move(*next);
  waiting_.erase(next);
  if (work.kind == Waiting::Kind::Presentation) {
    startPresentation(work);
  } else {
    startDismissal(work);
  }
}

void UIWindow::startPresentation(const Waiting& work) {
  const auto presenter = work.presenter.lock();
  const auto controller = work.controller;
  presenter->presented_ = controller;
  controller->presenting_ = presenter;
  presentations_.push_back({controller, PresentationPhase::Presenting, work.animated});
  if (!controller->isDrawnByHost()) {
    place(*controller);
    addSubview(controller->view());
  }
  changed();
  if (controller->coversItsPresenter()) presenter->viewWillDisappear(work.animated);
  controller->viewWillAppear(work.animated);
  afterTransition(work.animated, transitionDuration,
                  [this, self = shared_from_this(), work] { endPresentation(work); });
}

void UIWindow::endPresentation(const Waiting& work) {
  for (auto& each : presentations_) {
    if (each.controller == work.controller) each.phase = PresentationPhase::Shown;
  }
  changed();
  const auto presenter = work.presenter.lock();
  if (presenter && work.controller->coversItsPresenter()) presenter->viewDidDisappear(work.animated);
  work.controller->viewDidAppear(work.animated);
  if (work.completion) work.completion();
  startWaiting();
}

void UIWindow::startDismissal(const Waiting& work) {
  const auto from = std::find_if(presentations_.begin(), presentations_.end(),
                                 [&](const Presentation& each) { return each.controller == work.controller; });
  const auto presenter = work.controller->presentingViewController();
  std::vector<Strong<UIViewController>> leaving;
  for (auto each = from; each != presentations_.end(); ++each) {
    each->phase = PresentationPhase::Dismissing;
    each->animated = work.animated;
    leaving.insert(leaving.begin(), each->controller);
  }
  changed();
  bool covered = false;  // what lies under a full screen has disappeared already
  for (const auto& screen : leaving) {
    if (!covered) screen->viewWillDisappear(work.animated);
    covered = screen->coversItsPresenter();
  }
  if (presenter && covered) presenter->viewWillAppear(work.animated);
  afterTransition(work.animated, dismissalDuration, [this, self = shared_from_this(), work] { endDismissal(work); });
}

void UIWindow::endDismissal(const Waiting& work) {
  const auto presenter = work.controller->presentingViewController();
  bool covered = false;
  while (!presentations_.empty()) {
    const auto gone = presentations_.back().controller;
    presentations_.pop_back();
    if (gone->isViewLoaded()) gone->view()->removeFromSuperview();
    if (const auto below = gone->presentingViewController()) below->presented_ = nullptr;
    gone->presenting_.reset();
    if (!covered) gone->viewDidDisappear(work.animated);
    covered = gone->coversItsPresenter();
    if (gone == work.controller) break;
  }
  changed();
  if (presenter && covered) presenter->viewDidAppear(work.animated);
  if (work.completion) work.completion();
  startWaiting();
}

void UIWindow::afterTransition(bool animated, double duration, std::function<void()> block) {
  const bool moves = animated && !Platform::current().ports().screen.reducesMotion();
  DispatchQueue::main().asyncAfter(moves ? duration : 0, std::move(block));
}

std::vector<Strong<UIView>> UIWindow::takeChanges() {
  std::vector<Strong<UIView>> views;
  for (const auto& change : std::exchange(changes_, {})) {
    const auto view = change.lock();
    if (!view) continue;
    view->changeNoted_ = false;
    if (view->window().get() == this) views.push_back(view);
  }
  return views;
}

void UIWindow::noteChange(UIView& view) {
  if (view.changeNoted_) return;
  view.changeNoted_ = true;
  changes_.push_back(weakReference(&view));
  Platform::current().ports().screen.needsFrame();
}
