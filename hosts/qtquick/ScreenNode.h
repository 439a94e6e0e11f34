#pragma once

#include "hosts/qtquick/Node.h"
#include "platform/uikit/UIWindow.h"

#include <QColor>
#include <QRectF>

namespace qtquick {

class AlertNode;
class ViewNode;

/// One screen of the window, the root screen or one presented over it: what lies between it and the screens beneath,
/// its view or alert, and its way in and out.
class ScreenNode final : public Node {
  Q_OBJECT
  Q_PROPERTY(bool active READ isActive NOTIFY changed)
  Q_PROPERTY(bool covered READ isCovered NOTIFY changed)
  Q_PROPERTY(bool present READ isPresent NOTIFY changed)
  Q_PROPERTY(bool dims READ dims NOTIFY changed)
  Q_PROPERTY(bool fills READ fills NOTIFY changed)
  Q_PROPERTY(bool slides READ slides NOTIFY changed)
  Q_PROPERTY(bool moves READ moves NOTIFY changed)
  Q_PROPERTY(int arrivalTime READ arrivalTime CONSTANT)
  Q_PROPERTY(int departureTime READ departureTime CONSTANT)
  Q_PROPERTY(QRectF sheet READ sheet NOTIFY changed)
  Q_PROPERTY(QColor sheetColor READ sheetColor NOTIFY changed)
  Q_PROPERTY(QString title READ title NOTIFY changed)
  Q_PROPERTY(QObject* alert READ alert CONSTANT)

 public:
  static std::unique_ptr<ScreenNode> make(Mirror& mirror, const Strong<UIViewController>& controller,
                                          QQuickItem& stage);
  /// Whether there is anything of that screen to be drawn in `window` already.
  static bool canShow(const Strong<UIViewController>& controller, const UIWindow& window);
  ~ScreenNode() override;

  void update() override;
  bool standsFor(const UIViewController& controller) const { return controller_.lock().get() == &controller; }
  void takeFocus(Qt::FocusReason reason);
  /// Presses what closes the screen; false where nothing does.
  bool escape();

  /// Whether it is the topmost screen and in reach: only that one takes input, focus and attention.
  bool isActive() const;
  /// Whether another screen hides it altogether.
  bool isCovered() const;
  /// Whether it is there to stay: neither about to come nor on its way out.
  bool isPresent() const;
  bool dims() const;
  /// Whether it hides the screens beneath, also where its own view leaves some of the window free.
  bool fills() const;
  bool slides() const;
  bool moves() const;
  /// Of a presentation or dismissal, in milliseconds.
  int arrivalTime() const;
  int departureTime() const;
  QRectF sheet() const;
  QColor sheetColor() const;
  /// What the screen is called: its first label. Empty for the root screen, for alerts, and where there is none.
  QString title() const;
  QObject* alert() const;

 private:
  ScreenNode(Mirror& mirror, const Strong<UIViewController>& controller);

  /// How the screen is presented; none for the root screen.
  const Presentation* presentation() const;
  void focusFirstView(Qt::FocusReason reason);

  Weak<UIViewController> controller_;
  std::unique_ptr<AlertNode> alert_;
  std::unique_ptr<ViewNode> view_;
  bool hasEntered_ = false;
};

}  // namespace qtquick
