#pragma once

#include "platform/host/MediaLibrary.h"

#include <functional>

enum class MPMediaLibraryAuthorizationStatus { NotDetermined = 0, Denied = 1, Restricted = 2, Authorized = 3 };

/// Who may read the media library. Main thread only.
class MPMediaLibrary {
 public:
  using Handler = std::function<void(MPMediaLibraryAuthorizationStatus)>;

  static MPMediaLibraryAuthorizationStatus authorizationStatus();
  /// Asks the user where that is still open. `handler` hears the status in a later turn of the main loop, never from
  /// within this call.
  static void requestAuthorization(Handler handler);
};
