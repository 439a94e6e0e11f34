#pragma once

#include "platform/foundation/NSObject.h"

#include <functional>
#include <string>
#include <vector>

/// What an observer is told.
struct NSNotification {
  std::string name;
  Strong<NSObject> object;
};

/// Tells observers of named events. Main thread only.
///
/// Neither observer nor object is kept alive by a registration, and a registration belongs to the object itself,
/// not to its address: once the object is gone, a new one in the same place is not heard.
class NSNotificationCenter {
 public:
  static NSNotificationCenter& defaultCenter();

  /// From now on sends `selector` (no arguments) to `observer` for each post of `name` by `object`, or by any
  /// object where `object` is none. The same registration made twice is told twice.
  template <class Observer>
  void addObserver_selector_name_object(const Strong<Observer>& observer, void (Observer::*selector)(),
                                        const std::string& name, const Strong<NSObject>& object) {
    add({name, observer, object, object != nullptr,
         [target = observer.get(), selector](const NSNotification&) { (target->*selector)(); }});
  }

  /// Tells every observer registered for `name` and `object`, in order of registration.
  void postNotificationName_object(const std::string& name, const Strong<NSObject>& object);

  void removeObserver(const NSObject& observer);
  /// How many registrations stand for `observer`.
  std::size_t registrationsOf(const NSObject& observer) const;

 private:
  struct Registration {
    std::string name;
    Weak<NSObject> observer;
    Weak<NSObject> object;
    bool onlyThatObject;
    std::function<void(const NSNotification&)> tell;
  };

  void add(Registration registration) { registrations_.push_back(std::move(registration)); }

  std::vector<Registration> registrations_;
};
