#pragma once

#include "hosts/gstreamer/Instant.h"

#include <optional>

namespace gstreamer {

/// Where a pipeline has to be brought, and in which steps. Under a moving finger each place is shown by a key frame
/// near it, which comes at once, and then by the very picture, unless the finger is somewhere else by then. What
/// takes long, and all sound, waits until the finger rests: it would be in vain, and in the way of what is to be
/// shown at once. Knows no pipeline, and no clock but what it is told.
class Target {
 public:
  struct Step {
    double position = 0.0;
    bool isPreview = false;
  };

  /// Sound has no previews.
  explicit Target(bool hasPreviews) : hasPreviews_(hasPreviews) {}

  /// A person wants to be at `position`; `isHeld` while the finger has not left its slider.
  void seek(double position, Instant time, bool isHeld);
  /// Nobody asked for it but the deck.
  void set(double position) { position_ = position; }
  void clear();
  bool isSet() const { return position_.has_value(); }
  /// No further place is to be expected.
  void settle() { settlesAt_ = 0; }
  /// When the next step may be made; an instant that has passed where nothing is waited for.
  Instant due() const;
  /// Makes the next step towards what is set. After the last one nothing is set any more.
  Step next();

 private:
  bool hasPreviews_;
  std::optional<double> position_;
  std::optional<double> previewed_;
  Instant lastSeek_ = 0;
  bool fingerMoves_ = false;
  Instant settlesAt_ = 0;
};

}  // namespace gstreamer
