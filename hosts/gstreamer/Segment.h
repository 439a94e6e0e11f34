#pragma once

#include "hosts/gstreamer/Handles.h"

namespace gstreamer {

/// A segment event like `event`, whose segment `change` has changed. Takes `event` and gives another one.
template <typename Change>
GstEvent* withSegment(GstEvent* event, Change change) {
  const Event old(event);
  const GstSegment* found = nullptr;
  gst_event_parse_segment(old.get(), &found);
  GstSegment segment = *found;
  change(segment);
  GstEvent* changed = gst_event_new_segment(&segment);
  gst_event_set_seqnum(changed, gst_event_get_seqnum(old.get()));
  return changed;
}

}  // namespace gstreamer
