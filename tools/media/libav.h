// SPDX-License-Identifier: BSD-2-Clause
//
// RAII owners for FFmpeg's objects, and its error codes as text.
#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/avutil.h>
#include <libavutil/bswap.h>
#include <libavutil/channel_layout.h>
#include <libavutil/dict.h>
#include <libavutil/error.h>
#include <libavutil/imgutils.h>
#include <libavutil/mathematics.h>
#include <libavutil/opt.h>
#include <libavutil/parseutils.h>
#include <libavutil/pixdesc.h>
#include <libswresample/swresample.h>
#include <libswscale/swscale.h>
}

#include <functional>
#include <memory>
#include <new>
#include <string>

namespace nkdraw::media {

struct LibavDeleter {
  void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
  void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
  void operator()(AVPacket* packet) const { av_packet_free(&packet); }
  void operator()(AVFrame* frame) const { av_frame_free(&frame); }
  void operator()(AVCodecParameters* parameters) const { avcodec_parameters_free(&parameters); }
  void operator()(SwsContext* context) const { sws_freeContext(context); }
  void operator()(SwrContext* context) const { swr_free(&context); }
};

using InputContext = std::unique_ptr<AVFormatContext, LibavDeleter>;
using CodecContext = std::unique_ptr<AVCodecContext, LibavDeleter>;
using Packet = std::unique_ptr<AVPacket, LibavDeleter>;
using Frame = std::unique_ptr<AVFrame, LibavDeleter>;
using CodecParameters = std::unique_ptr<AVCodecParameters, LibavDeleter>;
using Resampler = std::unique_ptr<SwrContext, LibavDeleter>;
using Scaler = std::unique_ptr<SwsContext, LibavDeleter>;

/// Receives a packet or a frame that was read, decoded or encoded; the caller frees its data
/// afterwards.
using TakePacket = std::function<void(AVPacket& packet)>;
using TakeFrame = std::function<void(AVFrame& frame)>;

/// Options for an open call, which removes those that it knows from the dictionary.
class Options {
 public:
  Options() = default;
  Options(const Options&) = delete;
  Options& operator=(const Options&) = delete;
  ~Options() { av_dict_free(&dictionary_); }

  void set(const char* key, const char* value) { av_dict_set(&dictionary_, key, value, 0); }
  [[nodiscard]] AVDictionary** get() { return &dictionary_; }
  /// An option that the last open call did not know, or null.
  [[nodiscard]] const char* unused() const {
    const AVDictionaryEntry* const entry =
        av_dict_get(dictionary_, "", nullptr, AV_DICT_IGNORE_SUFFIX);
    return entry != nullptr ? entry->key : nullptr;
  }

 private:
  AVDictionary* dictionary_ = nullptr;
};

/// Returns `made`; throws if memory ran out.
template <class Owner, class Object>
[[nodiscard]] Owner owned(Object* made) {
  if (made == nullptr)
    throw std::bad_alloc();
  return Owner(made);
}

[[nodiscard]] inline Packet makePacket() {
  return owned<Packet>(av_packet_alloc());
}
[[nodiscard]] inline Frame makeFrame() {
  return owned<Frame>(av_frame_alloc());
}

/// A frame with memory for its pixels.
[[nodiscard]] inline Frame makeFrame(int pixelFormat, int width, int height) {
  Frame frame = makeFrame();
  frame->format = pixelFormat;
  frame->width = width;
  frame->height = height;
  if (av_frame_get_buffer(frame.get(), 0) < 0)
    throw std::bad_alloc();
  return frame;
}

[[nodiscard]] inline std::string errorText(int error) {
  char text[AV_ERROR_MAX_STRING_SIZE] = {};
  av_strerror(error, text, sizeof text);
  return text;
}

}  // namespace nkdraw::media
