#include "hosts/qtquick/Mirror.h"

#include "hosts/qtquick/Levels.h"
#include "hosts/qtquick/ScreenNode.h"
#include "hosts/qtquick/ViewNode.h"
#include "platform/foundation/RunLoop.h"
#include "platform/host/Screen.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QUrl>

#include <algorithm>

namespace qtquick {

Mirror::Mirror(QQmlEngine& engine, QQuickItem& stage, const host::Screen& screen, const Contrast& contrast,
               std::function<Qt::FocusReason()> focusReason)
    : engine_(engine),
      stage_(stage),
      screen_(screen),
      contrast_(contrast),
      usualFocusReason_(std::move(focusReason)) {}

Mirror::~Mirror() {
  screens_.clear();
}

void Mirror::setWindow(const Strong<UIWindow>& window) {
  screens_.clear();
  topmost_.reset();
  window_ = window;
  if (!window) return;
  const RunLoop::Turn turn(RunLoop::main());
  window->setUserInteractionEnabled(inReach_);
}

void Mirror::pass() {
  const auto window = window_.lock();
  if (!window) {
    screens_.clear();
    return;
  }
  const auto reason = focusReason();  // screens that are covered lose the focus on the way
  const auto changes = window->takeChanges();
  updateScreens(*window);
  for (const auto& view : changes) {
    if (auto* const node = nodeOf(*view)) node->update();
  }
  focusTopmost(*window, reason);
}

void Mirror::updateScreens(const UIWindow& window) {
  std::vector<Strong<UIViewController>> controllers{window.rootViewController()};
  for (const auto& presentation : window.presentations()) controllers.push_back(presentation.controller);
  auto before = std::exchange(screens_, {});
  for (const auto& controller : controllers) {
    if (!ScreenNode::canShow(controller, window)) continue;
    const auto known = std::find_if(before.begin(), before.end(),
                                    [&](const auto& screen) { return screen && screen->standsFor(*controller); });
    if (known == before.end()) {
      screens_.push_back(ScreenNode::make(*this, controller, stage_));
    } else {
      screens_.push_back(std::move(*known));
      screens_.back()->update();
    }
  }
  before.clear();
  if (!screens_.empty()) screens_.front()->item().setZ(mainScreenLevel);
  for (std::size_t place = 1; place < screens_.size(); ++place) {
    screens_[place]->item().setZ(presentedScreenLevel);
    screens_[place]->item().stackAfter(&screens_[place - 1]->item());
  }
}

void Mirror::focusTopmost(const UIWindow& window, Qt::FocusReason reason) {
  const auto top = window.topmostViewController();
  if (!inReach_ || top == topmost_.lock() || screens_.empty() || !screens_.back()->standsFor(*top)) return;
  topmost_ = top;
  screens_.back()->takeFocus(reason);
}

bool Mirror::escape() {
  return !screens_.empty() && screens_.back()->escape();
}

void Mirror::setInReach(bool inReach) {
  inReach_ = inReach;
  if (const auto window = window_.lock()) {
    const RunLoop::Turn turn(RunLoop::main());
    window->setUserInteractionEnabled(inReach);
  }
  for (const auto& screen : screens_) screen->update();
  topmost_.reset();  // the next pass gives the focus back
}

bool Mirror::isMainScreenInReach() const {
  const auto window = window_.lock();
  return inReach_ && window && window->presentations().empty();
}

bool Mirror::isInBar(QPointF point) const {
  const auto window = window_.lock();
  if (!inReach_ || !window || !window->presentations().empty() || !window->rootViewController()) return false;
  const auto& films = window->rootViewController()->films();
  const bool isAboveFilms = !films.empty() && std::all_of(films.begin(), films.end(), [&](const FilmControls& film) {
    return point.y() < film.view->frame().origin.y;
  });
  const auto hit = window->hitTest({point.x(), point.y()});
  return isAboveFilms && hit && std::dynamic_pointer_cast<UIControl>(hit) == nullptr;
}

const FilmControls* Mirror::filmOf(const UIView& view) const {
  const auto window = window_.lock();
  if (!window || !window->rootViewController()) return nullptr;
  const auto& films = window->rootViewController()->films();
  const auto film = std::find_if(films.begin(), films.end(), [&](const FilmControls& each) {
    return each.view.get() == &view || each.view->contains(view);
  });
  return film == films.end() ? nullptr : &*film;
}

ViewNode* Mirror::filmOverlaidBy(const UIView& view) const {
  const auto* const film = filmOf(view);
  return film != nullptr && film->overlay.get() == &view ? nodeOf(*film->view) : nullptr;
}

bool Mirror::isSheet(const UIView& view) const {
  const auto controller = view.viewController();
  const bool isScreen = controller && view.superview() == window_.lock();
  return isScreen && !controller->coversItsPresenter() && view.frame().origin.y > 0;
}

Qt::FocusReason Mirror::focusReason() const {
  const QQuickItem* item = stage_.window() == nullptr ? nullptr : stage_.window()->activeFocusItem();
  QVariant shown = item == nullptr ? QVariant() : item->property("visualFocus");
  // A list shows it at its current row.
  for (; item != nullptr && !shown.toBool(); item = item->parentItem()) {
    const QVariant ofList = item->property("showsFocus");
    if (ofList.isValid()) shown = ofList;
  }
  // What had it may be gone: a question that was answered.
  if (!shown.isValid()) return usualFocusReason_();
  return shown.toBool() ? Qt::TabFocusReason : Qt::OtherFocusReason;
}

void Mirror::readAgain() {
  for (const auto& screen : screens_) emit screen->changed();
  for (auto* const node : std::as_const(nodes_)) emit node->changed();
}

bool Mirror::movesThings() const {
  return !screen_.reducesMotion();
}

QQmlComponent& Mirror::component(const QString& name) {
  auto& component = components_[name];
  if (!component) {
    component = std::make_unique<QQmlComponent>(
        &engine_, QUrl(QStringLiteral("qrc:/quillop/screen/") + name + QStringLiteral(".qml")));
    if (component->isError()) qFatal("%s", qPrintable(component->errorString()));
  }
  return *component;
}

QQmlContext* Mirror::context() const {
  return engine_.rootContext();
}

std::vector<const QQuickItem*> Mirror::itemsThatTakeTouches() const {
  std::vector<const QQuickItem*> items;
  for (const auto* const node : nodes_) {
    if (node->takesTouches()) items.push_back(&node->item());
  }
  return items;
}

void Mirror::unregisterNode(const UIView* view, const ViewNode& node) {
  const auto found = nodes_.constFind(view);
  if (found != nodes_.constEnd() && *found == &node) nodes_.erase(found);
}

}  // namespace qtquick
