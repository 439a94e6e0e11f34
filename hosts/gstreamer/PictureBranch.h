#pragma once

#include "hosts/gstreamer/Branch.h"
#include "hosts/gstreamer/FrameMemory.h"
#include "hosts/gstreamer/Overload.h"
#include "hosts/gstreamer/PictureMaker.h"
#include "hosts/gstreamer/Shortcut.h"

#include <atomic>
#include <limits>
#include <memory>

namespace gstreamer {

/// Frames at their time, deinterlaced, as pictures on the board.
class PictureBranch final : public Branch {
 public:
  PictureBranch(std::shared_ptr<PictureMaker> maker, std::shared_ptr<PictureBoard> board, Orientation orientation);

  GstStreamType kind() const override { return GST_STREAM_TYPE_VIDEO; }
  bool build(GstBin& pipeline, std::string& reason) override;
  GstElement& entry() override { return *queue_; }
  GstElement& sink() override { return *sink_; }
  bool readsAhead() const override { return false; }
  void expectStill(bool expected) override;
  void expectStillNear(double position) override;
  void lead(GstElement& decoder) override;
  void beginAnew() override { hasStill_ = false; }
  bool hasStill() const override { return hasStill_; }
  void setDelay(double seconds) override;
  bool hasInStore() const override;
  void leave() override { left_ = true; }
  void countDropped() override { board_->countDropped(); }

 private:
  static constexpr double notNear = std::numeric_limits<double>::quiet_NaN();

  void configureSink();
  void watchSink();
  void takeStill(Sample frame);
  void take(Sample frame);
  static GstPadProbeReturn seeItem(GstPad* pad, GstPadProbeInfo* info, gpointer branch);
  static GstPadProbeReturn seeLateness(GstPad* pad, GstPadProbeInfo* info, gpointer branch);

  std::shared_ptr<PictureMaker> maker_;
  std::shared_ptr<PictureBoard> board_;
  const Orientation orientation_;
  FrameMemory memory_;
  Shortcut shortcut_;
  Overload overload_{[this] { countDropped(); }};
  Element queue_;
  Element sink_;
  std::atomic<bool> expectsStill_ = true;
  std::atomic<bool> hasStill_ = false;
  /// Where about right is right enough, in seconds; none where only the very place is.
  std::atomic<double> near_ = notNear;
  std::atomic<bool> left_ = false;
};

}  // namespace gstreamer
