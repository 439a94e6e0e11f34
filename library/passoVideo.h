#pragma once

#include "platform/foundation/Values.h"

/// Who receives a chosen video. (The class cannot carry the name of its own operation; the alias does.)
class passoVideoProtocol {
 public:
  virtual ~passoVideoProtocol() = default;
  /// `url` is the chosen item's media address; `video1` is true for film 1 and false for film 2.
  virtual void passoVideo(const Strong<NSURL>& url, bool video1) = 0;
};

using passoVideo = passoVideoProtocol;
