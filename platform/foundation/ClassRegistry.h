#pragma once

#include "platform/foundation/NSObject.h"

#include <functional>
#include <string>
#include <string_view>
#include <typeindex>

class NSCoder;

/// Knows the classes that are created by name: the application delegate and the controllers that the interface
/// resource mentions. A class registers itself where it is defined:
///
///     const ClassRegistration registration = registerClass<ListaVideo>("ListaVideo");
class ClassRegistry {
 public:
  using FromCoder = std::function<Strong<NSObject>(const NSCoder&)>;

  static void add(std::type_index type, std::string_view name, FromCoder create);
  /// A new object of the class called `name`; stops the app when there is none.
  static Strong<NSObject> create(const std::string& name, const NSCoder& coder);
  /// The registered name of `type`; stops the app when it has none.
  static std::string nameOf(std::type_index type);
};

struct ClassRegistration {};

template <class T>
ClassRegistration registerClass(std::string_view name) {
  ClassRegistry::add(typeid(T), name, [](const NSCoder& coder) -> Strong<NSObject> {
    if constexpr (std::is_constructible_v<T, const NSCoder&>) {
      return make<T>(coder);
    } else {
      return make<T>();
    }
  });
  return {};
}

/// The name under which a class can be created at run time.
template <class T>
std::string NSStringFromClass() {
  return ClassRegistry::nameOf(typeid(T));
}
