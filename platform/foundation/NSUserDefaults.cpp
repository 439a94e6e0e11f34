#include "platform/foundation/NSUserDefaults.h"

#include "platform/Platform.h"
#include "platform/foundation/Console.h"

NSUserDefaults& NSUserDefaults::standardUserDefaults() {
  static NSUserDefaults defaults;  // holds nothing: the values are the host's
  return defaults;
}

Strong<NSObject> NSUserDefaults::objectForKey(const std::string& key) const {
  const auto value = Platform::current().ports().defaults.value(key);
  if (!value) return nullptr;
  if (const auto* text = std::get_if<std::string>(&*value)) return make<NSString>(*text);
  return NSNumber::numberWithDouble(std::get<double>(*value));
}

void NSUserDefaults::setObject_forKey(const Strong<NSObject>& object, const std::string& key) {
  auto& defaults = Platform::current().ports().defaults;
  if (!object) {
    defaults.setValue(key, std::nullopt);
  } else if (const auto text = std::dynamic_pointer_cast<NSString>(object)) {
    defaults.setValue(key, text->text());
  } else if (const auto number = std::dynamic_pointer_cast<NSNumber>(object)) {
    defaults.setValue(key, number->doubleValue());
  } else {
    fatalError("user defaults hold texts and numbers only");
  }
}
