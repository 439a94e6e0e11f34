#pragma once

#include "hosts/qtquick/Node.h"
#include "platform/uikit/UIView.h"

#include <QColor>

#include <vector>

namespace qtquick {

/// A view and the items of everything in it.
class ViewNode : public Node {
  Q_OBJECT
  Q_PROPERTY(QColor color READ color NOTIFY changed)
  Q_PROPERTY(qreal cornerRadius READ cornerRadius NOTIFY changed)
  Q_PROPERTY(qreal borderWidth READ borderWidth NOTIFY changed)
  Q_PROPERTY(QColor borderColor READ borderColor NOTIFY changed)
  Q_PROPERTY(bool clips READ clips NOTIFY changed)
  Q_PROPERTY(bool shown READ isShown NOTIFY changed)
  Q_PROPERTY(bool fades READ fades NOTIFY changed)
  Q_PROPERTY(bool tappable READ isTappable NOTIFY changed)
  Q_PROPERTY(QString accessibleName READ accessibleName NOTIFY changed)

 public:
  /// The node for `view`, by its class, with its item in `parent` and everything in it.
  static std::unique_ptr<ViewNode> make(Mirror& mirror, const Strong<UIView>& view, QQuickItem& parent);
  ~ViewNode() override;

  void update() override;
  bool standsFor(const CALayer& layer) const { return layer_.lock().get() == &layer; }

  virtual QColor color() const;
  qreal cornerRadius() const;
  qreal borderWidth() const;
  QColor borderColor() const;
  bool clips() const;
  bool isShown() const;
  /// Whether it appears and disappears softly: the overlays do.
  bool fades() const;
  /// Whether a tap on the view itself means anything.
  bool isTappable() const;
  virtual QString accessibleName() const;

  /// How many points of the window one of the view's own takes.
  double scaleOnScreen() const;
  /// Whether a touch or click there, in the view's own points, is meant for the view: also a little beside a control
  /// that is small.
  Q_INVOKABLE bool isTouchedAt(QPointF point) const;
  /// Whether touches are for the view itself, so that no other view's target reaches into it.
  virtual bool takesTouches() const { return isTappable(); }
  /// A tap that has no place.
  Q_INVOKABLE void tap() const;
  Q_INVOKABLE void tapAt(QPointF point) const;

 protected:
  ViewNode(Mirror& mirror, const Strong<UIView>& view);

  /// The view, or none once it is gone.
  template <class View>
  Strong<View> viewAs() const {
    return std::static_pointer_cast<View>(view_.lock());
  }
  Strong<UIView> view() const { return view_.lock(); }
  /// The item in which the items of the view's layers lie.
  virtual QQuickItem& inside() const { return item(); }
  /// For the items of this view and of all below it, which depend on more than their own views: on the scale, and on
  /// what a strip shows.
  void readAgain();

 private:
  friend class Mirror;

  struct Child {
    Weak<CALayer> layer;
    std::unique_ptr<Node> node;
  };

  /// Whether it has an edge of its own in high contrast.
  bool isOutlined(const UIView& view) const;
  void updateChildren(const UIView& view);
  std::unique_ptr<Node> makeChild(const Strong<CALayer>& layer);
  void leaveFocusToFilm(const UIView& view) const;

  Weak<UIView> view_;
  Weak<CALayer> layer_;
  const UIView* key_;  // never dereferenced: the name under which the mirror finds this node
  std::vector<Child> children_;
};

}  // namespace qtquick
