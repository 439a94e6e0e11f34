#include "hosts/qtquick/ViewNode.h"

#include "hosts/qtquick/BalloonNode.h"
#include "hosts/qtquick/ButtonNode.h"
#include "hosts/qtquick/Contrast.h"
#include "hosts/qtquick/ImageNode.h"
#include "hosts/qtquick/LabelNode.h"
#include "hosts/qtquick/LayerNode.h"
#include "hosts/qtquick/Mirror.h"
#include "hosts/qtquick/PageControlNode.h"
#include "hosts/qtquick/Pictures.h"
#include "hosts/qtquick/ScrollNode.h"
#include "hosts/qtquick/SliderNode.h"
#include "hosts/qtquick/TableNode.h"
#include "hosts/qtquick/TouchTarget.h"
#include "platform/foundation/RunLoop.h"
#include "platform/uikit/UIGestureRecognizer.h"

#include <QQuickWindow>

#include <algorithm>

namespace qtquick {

namespace {

constexpr double sheetCornerRadius = 16;
constexpr double strongBorder = 2;

struct Kind {
  std::unique_ptr<ViewNode> node;
  const char* component;
};

/// Makes the node of class `Of` where `view` is a `View`.
template <class View, class Of>
bool makeFor(Mirror& mirror, const Strong<UIView>& view, const char* component, Kind& kind) {
  const auto typed = std::dynamic_pointer_cast<View>(view);
  if (typed) kind = {std::make_unique<Of>(mirror, typed), component};
  return typed != nullptr;
}

class PlainViewNode final : public ViewNode {
 public:
  PlainViewNode(Mirror& mirror, const Strong<UIView>& view) : ViewNode(mirror, view) {}
};

Kind kindOf(Mirror& mirror, const Strong<UIView>& view) {
  Kind kind{nullptr, nullptr};
  const bool isSpecial = makeFor<UIButton, ButtonNode>(mirror, view, "Button", kind) ||
                         makeFor<UISlider, SliderNode>(mirror, view, "Slider", kind) ||
                         makeFor<UILabel, LabelNode>(mirror, view, "Label", kind) ||
                         makeFor<UIImageView, ImageNode>(mirror, view, "ImageView", kind) ||
                         makeFor<UITableView, TableNode>(mirror, view, "TableView", kind) ||
                         makeFor<UIScrollView, ScrollNode>(mirror, view, "ScrollView", kind) ||
                         makeFor<UIPageControl, PageControlNode>(mirror, view, "PageControl", kind) ||
                         makeFor<PopTip, BalloonNode>(mirror, view, "Balloon", kind);
  if (isSpecial) return kind;
  // A view that has a name is one that people use: it can be reached, pressed and named.
  const char* const component = view->accessibilityLabel().empty() ? "View" : "PressableView";
  return {std::make_unique<PlainViewNode>(mirror, view), component};
}

bool isLine(const UIView& view) {
  return std::min(view.bounds().size.width, view.bounds().size.height) <= 1;
}

/// Where the item lies and how big it is before it is scaled.
CGRect unscaled(const UIView& view) {
  return {view.frame().origin, view.bounds().size};
}

}  // namespace

std::unique_ptr<ViewNode> ViewNode::make(Mirror& mirror, const Strong<UIView>& view, QQuickItem& parent) {
  Kind kind = kindOf(mirror, view);
  kind.node->makeItem(QString::fromLatin1(kind.component), parent, unscaled(*view));
  kind.node->item().setTransformOrigin(QQuickItem::TopLeft);
  kind.node->update();
  return std::move(kind.node);
}

ViewNode::ViewNode(Mirror& mirror, const Strong<UIView>& view)
    : Node(mirror), view_(view), layer_(view->layer()), key_(view.get()) {
  mirror.registerNode(key_, *this);
}

ViewNode::~ViewNode() {
  mirror().unregisterNode(key_, *this);
}

void ViewNode::update() {
  const auto view = this->view();
  if (!view) return;
  place(unscaled(*view));
  const bool isScaledAnew = item().scale() != view->scale();
  item().setScale(view->scale());
  if (view->isHidden()) leaveFocusToFilm(*view);
  emit changed();
  updateChildren(*view);
  if (isScaledAnew) readAgain();
}

void ViewNode::readAgain() {
  emit changed();
  for (const auto& child : children_) {
    if (auto* const node = dynamic_cast<ViewNode*>(child.node.get())) node->readAgain();
  }
}

void ViewNode::updateChildren(const UIView& view) {
  const auto layers = view.layer()->sublayers().value_or(std::vector<Strong<CALayer>>{});
  std::vector<Child> before = std::exchange(children_, {});
  for (const auto& layer : layers) {
    if (layer->view() == nullptr && !LayerNode::isSeen(*layer)) continue;
    const auto known =
        std::find_if(before.begin(), before.end(), [&](const Child& child) { return child.layer.lock() == layer; });
    const bool isKnown = known != before.end() && known->node;
    Child child{layer, isKnown ? std::move(known->node) : makeChild(layer)};
    // A layer has no changes of its own: its view speaks for it.
    if (isKnown && layer->view() == nullptr) child.node->update();
    children_.push_back(std::move(child));
  }
  before.clear();
  for (std::size_t place = 1; place < children_.size(); ++place) {
    children_[place].node->item().stackAfter(&children_[place - 1].node->item());
  }
}

std::unique_ptr<Node> ViewNode::makeChild(const Strong<CALayer>& layer) {
  if (layer->view() != nullptr) return ViewNode::make(mirror(), strongReference(layer->view()), inside());
  return LayerNode::make(mirror(), layer, inside());
}

void ViewNode::leaveFocusToFilm(const UIView& view) const {
  const auto film = mirror().filmOverlaidBy(view);
  auto* const focused = item().window() == nullptr ? nullptr : item().window()->activeFocusItem();
  if (film == nullptr || focused == nullptr || !item().isAncestorOf(focused)) return;
  film->item().forceActiveFocus(mirror().focusReason());
}

QColor ViewNode::color() const {
  const auto view = this->view();
  if (!view) return Qt::transparent;
  const QColor usual = colour(view->backgroundColor());
  return isLine(*view) ? mirror().contrast().ink(usual) : mirror().contrast().ground(usual);
}

bool ViewNode::isOutlined(const UIView& view) const {
  const bool isPanel = view.backgroundColor().alpha > 0 && cornerRadius() > 0;
  return isPanel && mirror().contrast().isHigh();
}

qreal ViewNode::cornerRadius() const {
  const auto view = this->view();
  if (!view) return 0;
  return mirror().isSheet(*view) ? sheetCornerRadius : view->layer()->cornerRadius();
}

qreal ViewNode::borderWidth() const {
  const auto view = this->view();
  if (!view) return 0;
  if (isOutlined(*view)) return strongBorder;
  const double width = view->layer()->borderWidth();
  // Of a line that is narrower than a pixel some edges would be missing.
  const double ratio = item().window() == nullptr ? 1 : item().window()->effectiveDevicePixelRatio();
  return width > 0 ? std::max(width, 1 / (ratio * scaleOnScreen())) : 0;
}

QColor ViewNode::borderColor() const {
  const auto view = this->view();
  if (!view) return Qt::transparent;
  return isOutlined(*view) ? QColor(Qt::white) : colour(view->layer()->borderColor());
}

double ViewNode::scaleOnScreen() const {
  double scale = 1;
  for (auto view = this->view(); view; view = view->superview()) scale *= view->scale();
  return scale;
}

bool ViewNode::clips() const {
  const auto view = this->view();
  return view && view->clipsToBounds();
}

bool ViewNode::isShown() const {
  const auto view = this->view();
  return view && !view->isHidden();
}

bool ViewNode::fades() const {
  const auto view = this->view();
  return view && mirror().movesThings() && mirror().filmOverlaidBy(*view) != nullptr;
}

bool ViewNode::isTappable() const {
  const auto view = this->view();
  return view && !view->gestureRecognizers().empty();
}

QString ViewNode::accessibleName() const {
  const auto view = this->view();
  return view ? QString::fromStdString(view->accessibilityLabel()) : QString();
}

bool ViewNode::isTouchedAt(QPointF point) const {
  return isMeantFor(item(), item().mapToScene(point), mirror().itemsThatTakeTouches());
}

void ViewNode::tap() const {
  const auto view = this->view();
  if (!view) return;
  const RunLoop::Turn turn(RunLoop::main());
  deliverTap(view);
}

void ViewNode::tapAt(QPointF point) const {
  const auto view = this->view();
  if (!view) return;
  const RunLoop::Turn turn(RunLoop::main());
  deliverTap(view, {point.x(), point.y()});
}

}  // namespace qtquick
