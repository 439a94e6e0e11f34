#pragma once

#include "platform/foundation/Values.h"

#include <string>

/// The app's small persistent state: texts and numbers under keys. Main thread only.
class NSUserDefaults {
 public:
  static NSUserDefaults& standardUserDefaults();

  /// The text (`NSString`) or number (`NSNumber`) under `key`, or none.
  Strong<NSObject> objectForKey(const std::string& key) const;
  /// Stores a text or a number and writes it through at once; none removes the entry. Stops the app for an
  /// object of any other class.
  void setObject_forKey(const Strong<NSObject>& object, const std::string& key);
};
