#include "platform/foundation/NSNotificationCenter.h"

#include "platform/Platform.h"

#include <algorithm>

NSNotificationCenter& NSNotificationCenter::defaultCenter() {
  return Platform::current().notificationCenter();
}

void NSNotificationCenter::postNotificationName_object(const std::string& name, const Strong<NSObject>& object) {
  std::erase_if(registrations_, [](const Registration& each) { return each.observer.expired(); });
  const auto registrations = registrations_;  // an observer may register more while it is told
  for (const auto& each : registrations) {
    const auto observer = each.observer.lock();
    if (!observer || each.name != name) continue;
    if (each.onlyThatObject && (!object || each.object.lock() != object)) continue;
    each.tell({name, object});
  }
}

void NSNotificationCenter::removeObserver(const NSObject& observer) {
  std::erase_if(registrations_, [&](const Registration& each) { return each.observer.lock().get() == &observer; });
}

std::size_t NSNotificationCenter::registrationsOf(const NSObject& observer) const {
  return static_cast<std::size_t>(
      std::count_if(registrations_.begin(), registrations_.end(),
                    [&](const Registration& each) { return each.observer.lock().get() == &observer; }));
}
