#pragma once

#include "hosts/qtquick/ViewNode.h"
#include "platform/uikit/UIScrollView.h"

#include <QPointF>

namespace qtquick {

/// A view onto a larger content that a person moves sideways. Where it stands is the platform's to know: the item
/// shows the platform's offset at all times, and what a finger, a wheel or a key does to it goes to the platform
/// only.
class ScrollNode final : public ViewNode {
  Q_OBJECT
  Q_PROPERTY(QPointF offset READ offset NOTIFY changed)
  Q_PROPERTY(bool pages READ pages NOTIFY changed)
  Q_PROPERTY(bool scrolling READ isScrolling NOTIFY changed)

 public:
  ScrollNode(Mirror& mirror, const Strong<UIScrollView>& view) : ViewNode(mirror, view) {}

  void update() override;
  bool takesTouches() const override { return true; }

  /// Points from the upper left corner of the content.
  QPointF offset() const;
  /// Whether it comes to rest on whole pages only.
  bool pages() const;
  /// Whether it is on its way by itself.
  bool isScrolling() const;

  /// A person moves the content there, held inside it.
  Q_INVOKABLE void scrollTo(double x) const;
  /// Goes to the page of that number, counted from 0, or the one next to it that there is; softly where motion is
  /// wanted.
  Q_INVOKABLE void turnTo(double page) const;

 protected:
  QQuickItem& inside() const override;

 private:
  /// The view, or none while it is gone or not to be used.
  Strong<UIScrollView> usableView() const;
};

}  // namespace qtquick
