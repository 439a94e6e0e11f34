#include "hosts/qtquick/ScreenNode.h"

#include "hosts/qtquick/AlertNode.h"
#include "hosts/qtquick/Contrast.h"
#include "hosts/qtquick/Mirror.h"
#include "hosts/qtquick/Pictures.h"
#include "hosts/qtquick/ViewNode.h"
#include "platform/foundation/RunLoop.h"
#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UILabel.h"
#include "platform/uikit/UIPageControl.h"
#include "platform/uikit/UITableView.h"

#include <QQmlProperty>

#include <algorithm>
#include <cmath>

namespace qtquick {

namespace {

constexpr const char* closeLabel = "Close";

/// The first view, depth first, of which `matches` is true.
template <class Matches>
Strong<UIView> firstView(const Strong<UIView>& view, const Matches& matches) {
  if (matches(view)) return view;
  for (const auto& subview : view->subviews()) {
    if (auto found = firstView(subview, matches)) return found;
  }
  return nullptr;
}

}  // namespace

bool ScreenNode::canShow(const Strong<UIViewController>& controller, const UIWindow& window) {
  if (!controller) return false;
  if (controller->isDrawnByHost()) return true;
  return controller->isViewLoaded() && controller->view()->window().get() == &window;
}

std::unique_ptr<ScreenNode> ScreenNode::make(Mirror& mirror, const Strong<UIViewController>& controller,
                                             QQuickItem& stage) {
  std::unique_ptr<ScreenNode> node(new ScreenNode(mirror, controller));
  node->makeItem(QStringLiteral("Screen"), stage, {{0, 0}, {stage.width(), stage.height()}});
  if (!controller->isDrawnByHost()) {
    auto* const card = node->item().property("card").value<QQuickItem*>();
    node->view_ = ViewNode::make(mirror, controller->view(), *card);
  }
  node->hasEntered_ = true;
  node->update();
  return node;
}

ScreenNode::ScreenNode(Mirror& mirror, const Strong<UIViewController>& controller)
    : Node(mirror), controller_(controller) {
  const auto alert = std::dynamic_pointer_cast<UIAlertController>(controller);
  if (alert) alert_ = std::make_unique<AlertNode>(alert);
}

ScreenNode::~ScreenNode() {
  view_ = nullptr;
  dropItem();
}

void ScreenNode::update() {
  const auto window = mirror().window();
  if (!window) return;
  const CGSize size = window->frame().size;
  place({{0, 0}, size});
  emit changed();
}

void ScreenNode::takeFocus(Qt::FocusReason reason) {
  item().forceActiveFocus(reason);
  // The root screen waits for the first Tab; whoever opened a sheet wants to go on inside it.
  if (presentation() != nullptr && view_ && item().scopedFocusItem() == nullptr) focusFirstView(reason);
}

void ScreenNode::focusFirstView(Qt::FocusReason reason) {
  const auto controller = controller_.lock();
  if (!controller) return;
  const auto isTable = [](const auto& view) { return std::dynamic_pointer_cast<UITableView>(view) != nullptr; };
  const auto isControl = [](const auto& view) {
    return std::dynamic_pointer_cast<UIControl>(view) && !std::dynamic_pointer_cast<UIPageControl>(view);
  };
  auto first = firstView(controller->view(), isTable);
  if (!first) first = firstView(controller->view(), isControl);
  auto* const node = first ? mirror().nodeOf(*first) : nullptr;
  if (node == nullptr) return;
  node->item().forceActiveFocus(reason);
  if (reason == Qt::TabFocusReason) QQmlProperty::write(&node->item(), QStringLiteral("showsFocus"), true);
}

bool ScreenNode::escape() {
  const auto controller = controller_.lock();
  if (!controller) return false;
  if (alert_) {
    alert_->cancel();
    return true;
  }
  const auto isClose = [](const auto& view) {
    return view->accessibilityLabel() == closeLabel && std::dynamic_pointer_cast<UIButton>(view) != nullptr;
  };
  const auto button = std::dynamic_pointer_cast<UIButton>(firstView(controller->view(), isClose));
  if (!button) return false;
  const RunLoop::Turn turn(RunLoop::main());
  button->press();
  return true;
}

const Presentation* ScreenNode::presentation() const {
  const auto window = mirror().window();
  if (!window) return nullptr;
  const auto& all = window->presentations();
  const auto found =
      std::find_if(all.begin(), all.end(), [this](const Presentation& each) { return standsFor(*each.controller); });
  return found == all.end() ? nullptr : &*found;
}

bool ScreenNode::isActive() const {
  const auto window = mirror().window();
  return mirror().isInReach() && window && window->topmostViewController() == controller_.lock();
}

bool ScreenNode::isCovered() const {
  const auto window = mirror().window();
  if (!window) return false;
  bool isBeneath = presentation() == nullptr;
  for (const auto& each : window->presentations()) {
    if (isBeneath && each.phase == PresentationPhase::Shown && each.controller->coversItsPresenter()) return true;
    if (standsFor(*each.controller)) isBeneath = true;
  }
  return false;
}

bool ScreenNode::isPresent() const {
  const auto* const own = presentation();
  return own == nullptr || (hasEntered_ && own->phase != PresentationPhase::Dismissing);
}

bool ScreenNode::dims() const {
  const auto controller = controller_.lock();
  return presentation() != nullptr && controller && !controller->coversItsPresenter();
}

bool ScreenNode::fills() const {
  const auto controller = controller_.lock();
  return presentation() != nullptr && controller && controller->coversItsPresenter();
}

bool ScreenNode::slides() const {
  const auto controller = controller_.lock();
  return !alert_ && controller && controller->modalTransitionStyle() == UIModalTransitionStyle::CoverVertical;
}

bool ScreenNode::moves() const {
  const auto* const own = presentation();
  return own != nullptr && own->animated && mirror().movesThings();
}

int ScreenNode::arrivalTime() const {
  return static_cast<int>(std::lround(UIWindow::transitionDuration * 1000));
}

int ScreenNode::departureTime() const {
  return static_cast<int>(std::lround(UIWindow::dismissalDuration * 1000));
}

QRectF ScreenNode::sheet() const {
  const auto controller = controller_.lock();
  if (!controller || !controller->isViewLoaded()) return {};
  const CGRect frame = controller->view()->frame();
  return {frame.origin.x, frame.origin.y, frame.size.width, frame.size.height};
}

QColor ScreenNode::sheetColor() const {
  const auto controller = controller_.lock();
  return controller && controller->isViewLoaded()
             ? mirror().contrast().ground(colour(controller->view()->backgroundColor()))
             : QColor();
}

QString ScreenNode::title() const {
  const auto controller = controller_.lock();
  if (presentation() == nullptr || !controller || !controller->isViewLoaded()) return {};
  const auto isLabel = [](const auto& view) { return std::dynamic_pointer_cast<UILabel>(view) != nullptr; };
  const auto label = std::dynamic_pointer_cast<UILabel>(firstView(controller->view(), isLabel));
  return label ? QString::fromStdString(label->text().value_or(std::string())) : QString();
}

QObject* ScreenNode::alert() const {
  return alert_.get();
}

}  // namespace qtquick
