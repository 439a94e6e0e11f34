#pragma once

#include "hosts/gstreamer/Branch.h"
#include "hosts/gstreamer/DeviceWatch.h"
#include "hosts/gstreamer/Mix.h"

#include <functional>

namespace gstreamer {

/// Samples mixed and routed to the channel that they belong on, into the sound device.
class SoundBranch final : public Branch {
 public:
  SoundBranch(std::function<Element()> makeSink, double pan, double volume);

  GstStreamType kind() const override { return GST_STREAM_TYPE_AUDIO; }
  bool build(GstBin& pipeline, std::string& reason) override;
  GstElement& entry() override { return *entry_; }
  GstElement& sink() override { return *sink_; }
  bool readsAhead() const override { return true; }
  void expectStill(bool) override {}
  void expectStillNear(double) override {}
  void beginAnew() override { device_.forget(); }
  std::optional<double> lag() const override { return device_.lag(); }
  void countDropped() override {}

  /// Linear gain. Any thread, once the branch is built.
  void setVolume(double volume);

 private:
  void route(const GstCaps& caps);
  static GstPadProbeReturn seeEvent(GstPad* pad, GstPadProbeInfo* info, gpointer branch);

  std::function<Element()> makeSink_;
  double pan_;
  double firstVolume_;
  Element entry_;
  Element volume_;
  Element router_;
  Element sink_;
  DeviceWatch device_;
};

}  // namespace gstreamer
