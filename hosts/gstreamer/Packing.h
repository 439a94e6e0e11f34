#pragma once

#include "hosts/gstreamer/Handles.h"

#include <optional>

namespace gstreamer {

/// How the parts of a picture (NAL units) are packed in a stream of H.264 or H.265, and how they tell what needs
/// them.
struct Packing {
  enum class Format { H264, H265 };
  Format format = Format::H264;
  /// Bytes in which each part's length stands before it; 0 where a start code does.
  int lengthSize = 0;

  /// None where the stream is of another format, does not hold whole pictures, or does not tell.
  static std::optional<Packing> of(const GstCaps& caps);
  /// Whether no other picture of the stream is decoded with the help of this one.
  bool isDisposable(GstBuffer& picture) const;
  /// Whether neither this picture nor any after it is decoded with the help of one before it.
  bool isFreshStart(GstBuffer& picture) const;
};

}  // namespace gstreamer
