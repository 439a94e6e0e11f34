#include "hosts/qtquick/SliderNode.h"

#include "hosts/qtquick/Mirror.h"
#include "hosts/qtquick/Pictures.h"
#include "hosts/qtquick/TimeText.h"
#include "platform/foundation/RunLoop.h"

#include <algorithm>
#include <cmath>

namespace qtquick {

namespace {
constexpr double keySteps = 20;  // from one end to the other, where the slider has no step of its own
constexpr double stepsOfAPage = 10;
constexpr double pagesWithoutStep = 5;
}  // namespace

double SliderNode::value() const {
  const auto slider = this->slider();
  return slider ? slider->value() : 0;
}

double SliderNode::minimum() const {
  const auto slider = this->slider();
  return slider ? slider->minimumValue() : 0;
}

double SliderNode::maximum() const {
  const auto slider = this->slider();
  return slider ? slider->maximumValue() : 1;
}

QColor SliderNode::tint() const {
  const auto slider = this->slider();
  return slider ? colour(slider->tintColor()) : QColor(Qt::white);
}

bool SliderNode::isTracking() const {
  const auto slider = this->slider();
  return slider && slider->isTracking();
}

bool SliderNode::showsTime() const {
  const auto slider = this->slider();
  const auto film = slider ? mirror().filmOf(*slider) : nullptr;
  return film && film->position == slider;
}

double SliderNode::second() const {
  // The app brings the value up once a second, a little after the whole second was asked of a player that took a
  // moment to start: 2.95 is the third second, not the second one.
  return std::min(std::round(value()), maximum());
}

QString SliderNode::elapsed() const {
  return clockText(second());
}

QString SliderNode::clockAt(double value) const {
  return clockText(std::round(value));
}

QString SliderNode::length() const {
  return clockText(maximum());
}

QString SliderNode::spokenValue() const {
  if (showsTime()) return QStringLiteral("%1 of %2").arg(spokenTime(second()), spokenTime(maximum()));
  const double range = maximum() - minimum();
  return QStringLiteral("%1 percent").arg(range > 0 ? std::lround((value() - minimum()) / range * 100) : 0);
}

double SliderNode::step() const {
  const auto slider = this->slider();
  return slider ? std::max(0.0, static_cast<double>(slider->step())) : 0;
}

double SliderNode::keyStep() const {
  return step() > 0 ? step() : (maximum() - minimum()) / keySteps;
}

double SliderNode::pageStep() const {
  return step() > 0 ? step() * stepsOfAPage : (maximum() - minimum()) / pagesWithoutStep;
}

void SliderNode::beginTracking() const {
  const auto slider = this->slider();
  if (!slider) return;
  const RunLoop::Turn turn(RunLoop::main());
  slider->beginTracking();
}

void SliderNode::track(double value) const {
  const auto slider = this->slider();
  if (!slider) return;
  const RunLoop::Turn turn(RunLoop::main());
  slider->track(static_cast<float>(value));
}

void SliderNode::endTracking() const {
  const auto slider = this->slider();
  if (!slider) return;
  const RunLoop::Turn turn(RunLoop::main());
  slider->endTracking();
}

void SliderNode::adjust(double value) const {
  const auto slider = this->slider();
  if (!slider) return;
  const RunLoop::Turn turn(RunLoop::main());
  slider->adjust(static_cast<float>(value));
  // Whatever the platform made of it (held in the range, rounded, refused) is what the item is to show.
  slider->changed();
}

void SliderNode::turnWheel(double notches) {
  const double wanted = restOfWheel_ + notches * pageStep() / 2;
  const double distance = step() > 0 ? std::round(wanted / step()) * step() : wanted;
  restOfWheel_ = wanted - distance;
  if (distance != 0) adjust(value() + distance);
}

}  // namespace qtquick
