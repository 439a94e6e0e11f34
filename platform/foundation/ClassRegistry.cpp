#include "platform/foundation/ClassRegistry.h"

#include "platform/foundation/Console.h"

#include <map>

namespace {

struct Registered {
  std::map<std::string, ClassRegistry::FromCoder, std::less<>> creators;
  std::map<std::type_index, std::string> names;
};

Registered& registered() {
  static Registered classes;  // filled before main, by the registrations
  return classes;
}

}  // namespace

void ClassRegistry::add(std::type_index type, std::string_view name, FromCoder create) {
  registered().creators.insert_or_assign(std::string(name), std::move(create));
  registered().names.insert_or_assign(type, std::string(name));
}

Strong<NSObject> ClassRegistry::create(const std::string& name, const NSCoder& coder) {
  const auto found = registered().creators.find(name);
  if (found == registered().creators.end()) fatalError("no class is called " + name);
  return found->second(coder);
}

std::string ClassRegistry::nameOf(std::type_index type) {
  const auto found = registered().names.find(type);
  if (found == registered().names.end()) fatalError("a class without a registered name");
  return found->second;
}
