#pragma once

#include "hosts/gstreamer/Pipeline.h"
#include "hosts/gstreamer/TaskThread.h"

#include <functional>
#include <memory>
#include <utility>

namespace gstreamer {

/// The thread on which a deck's pipelines do whatever may block, in order, and the one pipeline that is on it now.
/// What a pipeline answers after it was dropped is not heard any more. Engine's thread.
class PipelineThread {
 public:
  /// `name` is what system tools show; `engine` is where answers are heard.
  PipelineThread(const char* name, std::shared_ptr<TaskQueue> engine);

  /// None while there is none. Of it only what it allows on any thread.
  const std::shared_ptr<Pipeline>& pipeline() const { return pipeline_; }
  void put(std::unique_ptr<Pipeline> pipeline) { pipeline_ = std::move(pipeline); }
  /// Work that needs no pipeline.
  const std::shared_ptr<TaskQueue>& queue() const { return thread_->queue(); }
  /// Has the pipeline that is there now do `work`.
  void tell(std::function<void(Pipeline&)> work) const;
  /// The same, and calls `answer` on the engine's thread with `owner`, which has this thread, and with what `work`
  /// returned: if the owner and the pipeline are still there.
  template <class Owner, class Work, class Answer>
  void ask(const std::weak_ptr<Owner>& owner, Work work, Answer answer) const;
  /// Gives the pipeline up, even where it is stuck, and closes it behind what is under way.
  void drop();
  /// Leaves the thread to itself, which may never come back from closing a pipeline, and takes another one.
  void replace();
  /// Closes the pipeline, if there is one, does `last` on the thread, and calls `closed` on the engine's.
  void close(std::function<void()> last, std::function<void()> closed);
  /// Leaves the thread to itself.
  void abandon() { thread_->end(0.0); }

 private:
  const char* name_;
  std::shared_ptr<TaskQueue> engine_;
  std::shared_ptr<Pipeline> pipeline_;
  /// Last, so that it ends first.
  std::unique_ptr<TaskThread> thread_;
};

template <class Owner, class Work, class Answer>
void PipelineThread::ask(const std::weak_ptr<Owner>& owner, Work work, Answer answer) const {
  queue()->post([this, owner, engine = engine_, pipeline = pipeline_, work, answer] {
    engine->post([this, owner, pipeline, answer, result = std::invoke(work, *pipeline)] {
      const auto asker = owner.lock();
      if (asker && pipeline_ == pipeline) std::invoke(answer, *asker, result);
    });
  });
}

}  // namespace gstreamer
