#pragma once

#include "hosts/qtquick/ScreenHost.h"
#include "platform/uikit/FilmControls.h"
#include "platform/uikit/UIWindow.h"

#include <QHash>
#include <QQmlComponent>
#include <QString>

#include <map>
#include <memory>
#include <vector>

class QQmlContext;
class QQmlEngine;
class QQuickItem;

namespace host {
class Screen;
}

namespace qtquick {

class Contrast;
class ScreenNode;
class ViewNode;

/// The items standing for the views of one window. Main thread.
class Mirror final {
 public:
  /// Items are made by `engine`, into `stage`. `focusReason` is asked where the focus itself does not tell how it
  /// came there.
  Mirror(QQmlEngine& engine, QQuickItem& stage, const host::Screen& screen, const Contrast& contrast,
         std::function<Qt::FocusReason()> focusReason);
  ~Mirror();
  Mirror(const Mirror&) = delete;
  Mirror& operator=(const Mirror&) = delete;

  /// Shows `window` from the next pass on; nothing when there is none.
  void setWindow(const Strong<UIWindow>& window);
  Strong<UIWindow> window() const { return window_.lock(); }
  /// As `ScreenHost` has them.
  void setListedItems(ListedItems items) { listedItems_ = std::move(items); }
  std::shared_ptr<const host::LibraryItems> listedItems() const { return listedItems_ ? listedItems_() : nullptr; }
  /// Takes the window's changes and brings the items up to date.
  void pass();
  /// Escape or Back: what closes the topmost screen is pressed. False where there is nothing to close.
  bool escape();
  /// Whether anything of the app can be used: not while something that is not the app's lies over all of it. Then no
  /// screen takes input, focus or attention, those that come meanwhile included.
  bool isInReach() const { return inReach_; }
  void setInReach(bool inReach);
  /// Whether the main screen can be used: no other screen is over it.
  bool isMainScreenInReach() const;
  /// Whether `point` of the stage is in the bar above the films of the main screen, on nothing that can be used.
  bool isInBar(QPointF point) const;

  /// The film that `view` or control belongs to, or none. Valid until the next turn.
  const FilmControls* filmOf(const UIView& view) const;
  /// The node of the film view over which `view` lays its controls; none where `view` is no overlay.
  ViewNode* filmOverlaidBy(const UIView& view) const;
  /// Whether `view` is the root view of a sheet that leaves some of the window free above it.
  bool isSheet(const UIView& view) const;
  /// The reason to give for moving the focus on from where it is: the keyboard's where the keyboard led there, so
  /// that the focus goes on being shown.
  Qt::FocusReason focusReason() const;
  /// Which colours the desktop asks for.
  const Contrast& contrast() const { return contrast_; }
  /// Has all items read everything again.
  void readAgain();
  /// Whether the desktop lets things move.
  bool movesThings() const;

  // For the nodes.
  QQmlComponent& component(const QString& name);
  QQmlContext* context() const;
  /// `view` is a name only.
  void registerNode(const UIView* view, ViewNode& node) { nodes_[view] = &node; }
  void unregisterNode(const UIView* view, const ViewNode& node);
  /// Those of all views that take touches themselves, in no order; not all of them can be used now.
  std::vector<const QQuickItem*> itemsThatTakeTouches() const;
  ViewNode* nodeOf(const UIView& view) const { return nodes_.value(&view, nullptr); }

 private:
  void updateScreens(const UIWindow& window);
  void focusTopmost(const UIWindow& window, Qt::FocusReason reason);

  QQmlEngine& engine_;
  QQuickItem& stage_;
  const host::Screen& screen_;
  const Contrast& contrast_;
  std::function<Qt::FocusReason()> usualFocusReason_;
  ListedItems listedItems_;
  Weak<UIWindow> window_;
  Weak<UIViewController> topmost_;
  bool inReach_ = true;
  std::map<QString, std::unique_ptr<QQmlComponent>> components_;
  QHash<const UIView*, ViewNode*> nodes_;
  std::vector<std::unique_ptr<ScreenNode>> screens_;  // from the bottom to the top
};

}  // namespace qtquick
