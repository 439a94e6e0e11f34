#pragma once

#include <optional>

namespace gstreamer {

/// How much to leave out of a track that is damaged: more each time, until enough was tried at that place. Knows no
/// clock and no pipeline.
class Leaps {
 public:
  /// Seconds to leave out of what was met at `place`; none once enough was tried there.
  std::optional<double> next(double place);
  /// Somebody has gone elsewhere.
  void forget() { tried_ = 0; }

 private:
  int tried_ = 0;  ///< in a row
  double metAt_ = 0.0;
};

}  // namespace gstreamer
