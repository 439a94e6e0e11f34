#pragma once

#include "hosts/qtquick/ViewNode.h"
#include "platform/uikit/UIPageControl.h"

namespace qtquick {

/// A row of dots that tells which page is in sight.
class PageControlNode final : public ViewNode {
  Q_OBJECT
  Q_PROPERTY(int pages READ pages NOTIFY changed)
  Q_PROPERTY(int page READ page NOTIFY changed)
  Q_PROPERTY(QColor tint READ tint NOTIFY changed)
  Q_PROPERTY(QColor currentTint READ currentTint NOTIFY changed)

 public:
  PageControlNode(Mirror& mirror, const Strong<UIPageControl>& control) : ViewNode(mirror, control) {}

  int pages() const;
  /// Counted from 0.
  int page() const;
  QColor tint() const;
  QColor currentTint() const;
  /// Its own, else "Page 1 of 2"; empty where there are no pages.
  QString accessibleName() const override;

 private:
  Strong<UIPageControl> control() const { return viewAs<UIPageControl>(); }
};

}  // namespace qtquick
