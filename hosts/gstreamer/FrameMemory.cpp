#include "hosts/gstreamer/FrameMemory.h"

#include <gst/video/video.h>

#include <algorithm>
#include <cstdlib>
#include <mutex>
#include <utility>
#include <vector>

namespace gstreamer {

namespace {

/// The decoders of libav forget what they were offered when the width is not a whole number of blocks, and ask again
/// for every frame. After so many questions they are left to themselves, and copy.
constexpr int mostOffers = 6;
/// Free blocks that are kept: about as many as a decoder takes before it gives any back.
constexpr std::size_t mostFree = 3;
/// Rows that decoders add below a frame for their own use. More of them come of a film that is cut to its size by the
/// decoder.
constexpr guint mostRowsBelow = 34;

struct Free {
  void operator()(std::uint8_t* data) const { std::free(data); }
};

/// Memory for one frame.
struct Block {
  std::unique_ptr<std::uint8_t, Free> data;
  std::size_t size = 0;
  std::size_t alignment = 0;
};

/// Blocks that nobody looks at any more, for the next frames. The newest first: it is still in the caches.
class Stock : public std::enable_shared_from_this<Stock> {
 public:
  /// None where there is no memory.
  std::shared_ptr<Block> take(std::size_t size, std::size_t alignment) {
    std::unique_ptr<Block> block = kept(size, alignment);
    if (!block) block = std::make_unique<Block>(Block{allocate(size, alignment), size, alignment});
    if (!block->data) return nullptr;
    return {block.release(), [stock = weak_from_this()](Block* given) {
              std::unique_ptr<Block> owned(given);
              if (const auto home = stock.lock()) home->giveBack(std::move(owned));
            }};
  }

 private:
  static std::unique_ptr<std::uint8_t, Free> allocate(std::size_t size, std::size_t alignment) {
    const std::size_t whole = (size + alignment - 1) / alignment * alignment;
    return std::unique_ptr<std::uint8_t, Free>(static_cast<std::uint8_t*>(std::aligned_alloc(alignment, whole)));
  }

  std::unique_ptr<Block> kept(std::size_t size, std::size_t alignment) {
    const std::lock_guard lock(mutex_);
    // Blocks of another size are those of frames that do not come any more.
    std::erase_if(free_, [&](const auto& each) { return each->size != size || each->alignment != alignment; });
    if (free_.empty()) return nullptr;
    std::unique_ptr<Block> block = std::move(free_.back());
    free_.pop_back();
    return block;
  }

  void giveBack(std::unique_ptr<Block> block) {
    const std::lock_guard lock(mutex_);
    if (free_.size() < mostFree) free_.push_back(std::move(block));
  }

  std::mutex mutex_;
  std::vector<std::unique_ptr<Block>> free_;
};

/// A handle to a block, as GStreamer wants it.
struct FrameHandle {
  GstMemory memory;
  std::shared_ptr<Block> block;
};

FrameHandle& handleOf(GstMemory* memory) {
  return *static_cast<FrameHandle*>(static_cast<void*>(memory));
}

GstMemory* makeHandle(GstAllocator* allocator, std::shared_ptr<Block> block, gsize offset, gsize size) {
  auto* handle = new FrameHandle{{}, std::move(block)};
  gst_memory_init(&handle->memory, GstMemoryFlags{}, allocator, nullptr, handle->block->size,
                  handle->block->alignment - 1, offset, size);
  return &handle->memory;
}

gpointer map(GstMemory* memory, gsize, GstMapFlags) {
  return handleOf(memory).block->data.get();
}

GstMemory* share(GstMemory* memory, gssize offset, gssize size) {
  const gsize from = memory->offset + static_cast<gsize>(offset);
  const gsize length = size < 0 ? memory->size - static_cast<gsize>(offset) : static_cast<gsize>(size);
  return makeHandle(memory->allocator, handleOf(memory).block, from, length);
}

struct FrameAllocator {
  GstAllocator allocator;
  std::shared_ptr<Stock> stock;
};

FrameAllocator& allocatorOf(gpointer object) {
  return *static_cast<FrameAllocator*>(object);
}

GstMemory* allocate(GstAllocator* allocator, gsize size, GstAllocationParams* wanted) {
  const std::size_t alignment = std::max<std::size_t>(wanted->align + 1, 64);
  auto block = allocatorOf(allocator).stock->take(wanted->prefix + size + wanted->padding, alignment);
  return block ? makeHandle(allocator, std::move(block), wanted->prefix, size) : nullptr;
}

void release(GstAllocator*, GstMemory* memory) {
  delete &handleOf(memory);
}

void initialise(GTypeInstance* instance, gpointer) {
  auto& self = allocatorOf(instance);
  new (&self.stock) std::shared_ptr<Stock>(std::make_shared<Stock>());
  self.allocator.mem_type = "QuillopFrame";
  self.allocator.mem_map = map;
  self.allocator.mem_unmap = [](GstMemory*) {};
  self.allocator.mem_copy = share;
  self.allocator.mem_share = share;
}

gpointer parentOfAllocator = nullptr;

void finalise(GObject* object) {
  allocatorOf(object).stock.~shared_ptr();
  G_OBJECT_CLASS(parentOfAllocator)->finalize(object);
}

GType allocatorType() {
  static const GType type = g_type_register_static_simple(
      GST_TYPE_ALLOCATOR, "QuillopFrameAllocator", sizeof(GstAllocatorClass),
      [](gpointer madeClass, gpointer) {
        parentOfAllocator = g_type_class_peek_parent(madeClass);
        auto* own = static_cast<GstAllocatorClass*>(madeClass);
        own->alloc = allocate;
        own->free = release;
        G_OBJECT_CLASS(own)->finalize = finalise;
      },
      sizeof(FrameAllocator), initialise, GTypeFlags{});
  return type;
}

gpointer parentOfPool = nullptr;

/// Frames that come back are not used again by the pool, which cannot know whether somebody still looks at their
/// memory. The stock knows.
void reset(GstBufferPool* pool, GstBuffer* frame) {
  GST_BUFFER_POOL_CLASS(parentOfPool)->reset_buffer(pool, frame);
  GST_BUFFER_FLAG_SET(frame, GST_BUFFER_FLAG_TAG_MEMORY);
}

/// Whoever cuts a frame at the top as well does not say so of memory that is not his. Then he is to copy.
gboolean configure(GstBufferPool* pool, GstStructure* configuration) {
  GstVideoAlignment room;
  gst_video_alignment_reset(&room);
  gst_buffer_pool_config_get_video_alignment(configuration, &room);
  return room.padding_bottom <= mostRowsBelow && GST_BUFFER_POOL_CLASS(parentOfPool)->set_config(pool, configuration);
}

GType poolType() {
  static const GType type = g_type_register_static_simple(
      GST_TYPE_VIDEO_BUFFER_POOL, "QuillopFramePool", sizeof(GstVideoBufferPoolClass),
      [](gpointer madeClass, gpointer) {
        parentOfPool = g_type_class_peek_parent(madeClass);
        auto* own = static_cast<GstBufferPoolClass*>(madeClass);
        own->reset_buffer = reset;
        own->set_config = configure;
      },
      sizeof(GstVideoBufferPool), [](GTypeInstance*, gpointer) {}, GTypeFlags{});
  return type;
}

BufferPool makePool(GstCaps& caps, guint size, GstAllocator& allocator) {
  auto* made = GST_BUFFER_POOL(gst_object_ref_sink(g_object_new(poolType(), nullptr)));
  BufferPool pool(made);
  GstStructure* configuration = gst_buffer_pool_get_config(made);
  gst_buffer_pool_config_set_params(configuration, &caps, size, 0, 0);
  gst_buffer_pool_config_set_allocator(configuration, &allocator, nullptr);
  gst_buffer_pool_config_add_option(configuration, GST_BUFFER_POOL_OPTION_VIDEO_META);
  return gst_buffer_pool_set_config(made, configuration) ? std::move(pool) : nullptr;
}

}  // namespace

FrameMemory::FrameMemory() : allocator_(GST_ALLOCATOR(gst_object_ref_sink(g_object_new(allocatorType(), nullptr)))) {}

void FrameMemory::offer(GstQuery& query) {
  // Whoever does not say that it reads a frame's own strides and offsets is given a copy of each frame; the
  // application sink of GStreamer 1.22 does not say it.
  gst_query_add_allocation_meta(&query, GST_VIDEO_META_API_TYPE, nullptr);
  GstCaps* caps = nullptr;
  gboolean wantsPool = FALSE;
  gst_query_parse_allocation(&query, &caps, &wantsPool);
  GstVideoInfo info{};
  if (!wantsPool || !caps || !gst_video_info_from_caps(&info, caps) || offers_++ >= mostOffers) return;
  const auto size = static_cast<guint>(GST_VIDEO_INFO_SIZE(&info));
  const BufferPool pool = makePool(*caps, size, *allocator_);
  if (!pool) return;
  gst_query_add_allocation_param(&query, allocator_.get(), nullptr);
  gst_query_add_allocation_pool(&query, pool.get(), size, 0, 0);
}

}  // namespace gstreamer
