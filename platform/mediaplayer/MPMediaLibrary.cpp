#include "platform/mediaplayer/MPMediaLibrary.h"

#include "platform/Platform.h"

namespace {

MPMediaLibraryAuthorizationStatus statusFor(host::LibraryAccess access) {
  return static_cast<MPMediaLibraryAuthorizationStatus>(access);  // the same numbers
}

}  // namespace

MPMediaLibraryAuthorizationStatus MPMediaLibrary::authorizationStatus() {
  return statusFor(Platform::current().ports().mediaLibrary.access());
}

void MPMediaLibrary::requestAuthorization(Handler handler) {
  Platform::current().ports().mediaLibrary.requestAccess(
      [handler = std::move(handler)](host::LibraryAccess access) { handler(statusFor(access)); });
}
