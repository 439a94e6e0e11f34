#include "hosts/gstreamer/PipelineThread.h"

namespace gstreamer {

PipelineThread::PipelineThread(const char* name, std::shared_ptr<TaskQueue> engine)
    : name_(name), engine_(std::move(engine)), thread_(std::make_unique<TaskThread>(name)) {}

void PipelineThread::tell(std::function<void(Pipeline&)> work) const {
  queue()->post([pipeline = pipeline_, work = std::move(work)] { work(*pipeline); });
}

void PipelineThread::drop() {
  pipeline_->interrupt();
  queue()->post([pipeline = std::move(pipeline_)] { pipeline->close(); });
  pipeline_.reset();
}

void PipelineThread::replace() {
  abandon();
  thread_ = std::make_unique<TaskThread>(name_);
}

void PipelineThread::close(std::function<void()> last, std::function<void()> closed) {
  if (pipeline_) pipeline_->interrupt();
  queue()->post([pipeline = std::move(pipeline_), engine = engine_, last = std::move(last), closed] {
    if (pipeline) pipeline->close();
    last();
    engine->post(closed);
  });
  pipeline_.reset();
}

}  // namespace gstreamer
