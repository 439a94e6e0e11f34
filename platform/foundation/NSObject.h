#pragma once

#include <memory>
#include <utility>

/// Shared ownership of an object. An object lives as long as one of these refers to it.
template <class T>
using Strong = std::shared_ptr<T>;

/// A reference that does not keep its object alive: delegates, observers, targets of controls.
template <class T>
using Weak = std::weak_ptr<T>;

/// The root of all reference-counted objects. Create them with `make`.
class NSObject : public std::enable_shared_from_this<NSObject> {
 public:
  NSObject(const NSObject&) = delete;
  NSObject& operator=(const NSObject&) = delete;
  virtual ~NSObject() = default;

 protected:
  NSObject() = default;
};

/// Creates an object that is owned from its first moment.
template <class T, class... Arguments>
Strong<T> make(Arguments&&... arguments) {
  return std::make_shared<T>(std::forward<Arguments>(arguments)...);
}

/// A strong reference to `object`, typed as `object` is. Not to be used in its constructor.
template <class T>
Strong<T> strongReference(T* object) {
  return std::static_pointer_cast<T>(object->shared_from_this());
}

/// A weak reference to `object`. Not to be used in its constructor.
template <class T>
Weak<T> weakReference(T* object) {
  return strongReference(object);
}
