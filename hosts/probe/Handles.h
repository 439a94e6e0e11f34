#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswscale/swscale.h>
}

#include <memory>

/// One owning type for each of FFmpeg's handles.
namespace probe {

template <class Handle, void (*release)(Handle**)>
struct ReleaseThroughPointer {
  void operator()(Handle* handle) const { release(&handle); }
};

struct ReleaseInputOutput {
  void operator()(AVIOContext* context) const {
    av_freep(&context->buffer);  // may have become another buffer than the one it was made with
    avio_context_free(&context);
  }
};

struct ReleaseScaler {
  void operator()(SwsContext* scaler) const { sws_freeContext(scaler); }
};

using InputOutput = std::unique_ptr<AVIOContext, ReleaseInputOutput>;
using Format = std::unique_ptr<AVFormatContext, ReleaseThroughPointer<AVFormatContext, avformat_close_input>>;
using Decoder = std::unique_ptr<AVCodecContext, ReleaseThroughPointer<AVCodecContext, avcodec_free_context>>;
using Packet = std::unique_ptr<AVPacket, ReleaseThroughPointer<AVPacket, av_packet_free>>;
using Frame = std::unique_ptr<AVFrame, ReleaseThroughPointer<AVFrame, av_frame_free>>;
using Scaler = std::unique_ptr<SwsContext, ReleaseScaler>;

}  // namespace probe
