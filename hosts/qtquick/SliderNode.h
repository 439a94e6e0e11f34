#pragma once

#include "hosts/qtquick/ViewNode.h"
#include "platform/uikit/UISlider.h"

namespace qtquick {

/// A slider. A film's position slider shows and tells its value as time.
class SliderNode final : public ViewNode {
  Q_OBJECT
  Q_PROPERTY(double value READ value NOTIFY changed)
  Q_PROPERTY(double minimum READ minimum NOTIFY changed)
  Q_PROPERTY(double maximum READ maximum NOTIFY changed)
  Q_PROPERTY(QColor tint READ tint NOTIFY changed)
  Q_PROPERTY(bool tracking READ isTracking NOTIFY changed)
  Q_PROPERTY(bool showsTime READ showsTime NOTIFY changed)
  Q_PROPERTY(QString elapsed READ elapsed NOTIFY changed)
  Q_PROPERTY(QString length READ length NOTIFY changed)
  Q_PROPERTY(QString spokenValue READ spokenValue NOTIFY changed)
  Q_PROPERTY(double keyStep READ keyStep NOTIFY changed)
  Q_PROPERTY(double pageStep READ pageStep NOTIFY changed)

 public:
  SliderNode(Mirror& mirror, const Strong<UISlider>& slider) : ViewNode(mirror, slider) {}

  bool takesTouches() const override { return true; }
  double value() const;
  double minimum() const;
  double maximum() const;
  QColor tint() const;
  bool isTracking() const;
  /// Whether this is the position in a film.
  bool showsTime() const;
  QString elapsed() const;
  QString length() const;
  /// What a screen reader says of the value.
  QString spokenValue() const;
  /// How far an arrow key moves it: one step, or a twentieth of the range where it has none.
  double keyStep() const;
  /// How far Page Up and Page Down move it; a notch of the wheel, half as far.
  double pageStep() const;

  /// The time of that value, as `elapsed` would have it.
  Q_INVOKABLE QString clockAt(double value) const;
  Q_INVOKABLE void beginTracking() const;
  Q_INVOKABLE void track(double value) const;
  Q_INVOKABLE void endTracking() const;
  Q_INVOKABLE void adjust(double value) const;
  /// By parts of a notch, as touchpads tell of them: where that is less than a step, it counts next time.
  Q_INVOKABLE void turnWheel(double notches);

 private:
  /// The whole second that is told.
  double second() const;
  /// What it is always moved by whole ones of; 0 where there is none.
  double step() const;
  Strong<UISlider> slider() const { return viewAs<UISlider>(); }

  double restOfWheel_ = 0;  ///< less than a step
};

}  // namespace qtquick
