#pragma once

#include "hosts/gstreamer/Handles.h"

#include <atomic>

namespace gstreamer {

/// Where decoders put their frames: memory that is used again and again, and never copied.
///
/// A decoder that keeps a frame, to predict others from it, has its memory open for writing, though it will not write
/// any more. GStreamer therefore hands on a copy of every frame. Here the copy is the same memory under another
/// handle, and it is free for the next frame once nobody has any handle to it. Nothing in a branch for pictures
/// writes into the frames that it is given.
///
/// Any thread. What was given out may outlive the object.
class FrameMemory {
 public:
  FrameMemory();

  /// Answers a decoder's question about allocation (a GST_QUERY_ALLOCATION).
  void offer(GstQuery& query);

 private:
  using Allocator = std::unique_ptr<GstAllocator, ObjectRelease>;

  Allocator allocator_;
  std::atomic<int> offers_ = 0;
};

}  // namespace gstreamer
