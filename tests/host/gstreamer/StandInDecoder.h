#pragma once

namespace gstreamer {

/// A decoder that GStreamer takes for one of hardware: it decodes H.264, is ranked above every other one, and gives
/// pictures that are white all over. For as long as an object exists.
class StandInDecoder {
 public:
  enum class Fault {
    None,
    /// There is no device any more.
    DoesNotOpen,
    RefusesTheFormat,
    /// Takes everything, and nothing comes of it.
    GivesNothing,
    Fails,
    /// Does not return from decoding before the object is gone.
    Hangs
  };

  /// `Fails` and `Hangs` begin after `goodPictures`.
  explicit StandInDecoder(Fault fault, int goodPictures = 0);
  ~StandInDecoder();
  StandInDecoder(const StandInDecoder&) = delete;
  StandInDecoder& operator=(const StandInDecoder&) = delete;

  static constexpr const char* name = "quillopstandindecoder";
};

}  // namespace gstreamer
