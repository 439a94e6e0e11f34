#include "hosts/qtquick/AlertNode.h"

#include "platform/foundation/RunLoop.h"

#include <algorithm>

namespace qtquick {

QString AlertNode::title() const {
  const auto alert = alert_.lock();
  return alert ? QString::fromStdString(alert->title().value_or(std::string())) : QString();
}

QString AlertNode::message() const {
  const auto alert = alert_.lock();
  return alert ? QString::fromStdString(alert->message().value_or(std::string())) : QString();
}

QStringList AlertNode::actions() const {
  const auto alert = alert_.lock();
  QStringList titles;
  if (!alert) return titles;
  for (const auto& action : alert->actions()) titles << QString::fromStdString(action->title());
  return titles;
}

int AlertNode::preferred() const {
  const auto alert = alert_.lock();
  if (!alert) return 0;
  const auto& actions = alert->actions();
  const auto cancel = std::find_if(actions.begin(), actions.end(),
                                   [](const auto& action) { return action->style() == UIAlertActionStyle::Cancel; });
  return cancel == actions.end() ? 0 : static_cast<int>(cancel - actions.begin());
}

void AlertNode::press(int action) const {
  const auto alert = alert_.lock();
  if (!alert || action < 0) return;
  const RunLoop::Turn turn(RunLoop::main());
  alert->pressAction(static_cast<std::size_t>(action));
}

void AlertNode::cancel() const {
  const auto alert = alert_.lock();
  if (!alert) return;
  const RunLoop::Turn turn(RunLoop::main());
  alert->pressCancel();
}

}  // namespace qtquick
