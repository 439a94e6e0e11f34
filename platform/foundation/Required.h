#pragma once

#include "platform/foundation/Console.h"
#include "platform/foundation/NSObject.h"

#include <string>
#include <string_view>

/// The object that the code takes for granted; stops the app when it is missing. `what` says which, for the message.
template <class T>
T& required(const Strong<T>& object, std::string_view what) {
  if (!object) fatalError("missing: " + std::string(what));
  return *object;
}
