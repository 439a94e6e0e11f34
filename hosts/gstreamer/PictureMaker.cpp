#include "hosts/gstreamer/PictureMaker.h"

#include "hosts/gstreamer/Instant.h"
#include "hosts/gstreamer/PictureDrawing.h"

#include <cmath>

namespace gstreamer {

double timeOf(GstSample& frame) {
  const GstClockTime time = GST_BUFFER_PTS(gst_sample_get_buffer(&frame));
  const guint64 place = gst_segment_to_stream_time(gst_sample_get_segment(&frame), GST_FORMAT_TIME, time);
  return GST_CLOCK_TIME_IS_VALID(place) ? seconds(static_cast<Instant>(place)) : HUGE_VAL;
}

/// Memory of pictures that nobody looks at any more, for the next ones. The pictures themselves may outlive it.
class PictureMaker::Pool : public std::enable_shared_from_this<Pool> {
 public:
  using Memory = std::vector<std::uint8_t>;

  std::shared_ptr<Memory> take(std::size_t size) {
    std::unique_ptr<Memory> memory = free(size);
    Memory* const taken = memory.release();
    return {taken, [pool = weak_from_this()](Memory* given) {
              std::unique_ptr<Memory> owned(given);
              if (const auto home = pool.lock()) home->giveBack(std::move(owned));
            }};
  }

 private:
  /// As many as are commonly out at the same time: on the board, on the screen, in the making.
  static constexpr std::size_t most = 4;

  std::unique_ptr<Memory> free(std::size_t size) {
    const std::lock_guard lock(mutex_);
    if (size != size_) free_.clear();
    size_ = size;
    if (free_.empty()) return std::make_unique<Memory>(size);
    std::unique_ptr<Memory> memory = std::move(free_.back());
    free_.pop_back();
    return memory;
  }

  void giveBack(std::unique_ptr<Memory> memory) {
    const std::lock_guard lock(mutex_);
    if (memory->size() == size_ && free_.size() < most) free_.push_back(std::move(memory));
  }

  std::mutex mutex_;
  std::size_t size_ = 0;
  std::vector<std::unique_ptr<Memory>> free_;
};

PictureMaker::PictureMaker(std::shared_ptr<PictureBoard> board)
    : board_(std::move(board)), pool_(std::make_shared<Pool>()), drawing_(std::make_unique<PictureDrawing>()) {}

PictureMaker::~PictureMaker() = default;

void PictureMaker::take(Sample frame, Orientation orientation) {
  const std::lock_guard lock(mutex_);
  frame_ = std::move(frame);
  orientation_ = orientation;
  make();
}

void PictureMaker::makeAgain() {
  const std::lock_guard lock(mutex_);
  if (frame_) make();
}

void PictureMaker::forget() {
  const std::lock_guard lock(mutex_);
  frame_.reset();
}

std::optional<double> PictureMaker::time() {
  const std::lock_guard lock(mutex_);
  return frame_ ? std::optional(timeOf(*frame_)) : std::nullopt;
}

void PictureMaker::make() {
  const Box box = board_->box();
  if (box.empty()) return;
  const MappedFrame frame(*frame_);
  if (!frame) return;
  const Box size = fitted(frame.info(), orientation_, box);
  const int stride = strideOf(size.width);
  const auto memory = pool_->take(static_cast<std::size_t>(stride) * static_cast<std::size_t>(size.height));
  if (!drawing_->draw(frame, orientation_, size, {memory->data(), stride})) return;
  board_->show(
      std::make_shared<host::Picture>(host::Picture{size.width, size.height, stride, memory->data(), memory}), box);
}

}  // namespace gstreamer
