// SPDX-License-Identifier: BSD-2-Clause
#include "media/frame_pool.h"

#include <new>

extern "C" {
#include <libavutil/imgutils.h>
}

namespace nkdraw::media {
namespace {

constexpr int kAlignment = 64;  // of rows, for the instructions of encoders
constexpr int kBeyond = 256;    // bytes that encoders may read behind the last row

}  // namespace

AVBufferRef* FramePool::takeBuffer(std::size_t bytes) {
  if (bytes != bytes_) {
    pool_.reset(av_buffer_pool_init(bytes, nullptr));
    bytes_ = bytes;
  }
  AVBufferRef* const buffer = pool_ != nullptr ? av_buffer_pool_get(pool_.get()) : nullptr;
  if (buffer == nullptr)
    throw std::bad_alloc();
  return buffer;
}

void FramePool::makeWritable(AVFrame& frame) {
  if (av_frame_is_writable(&frame) > 0)
    return;
  const auto format = static_cast<AVPixelFormat>(frame.format);
  const int bytes = av_image_get_buffer_size(format, frame.width, frame.height, kAlignment);
  if (bytes < 0)
    throw std::bad_alloc();
  Frame copy = makeFrame();
  copy->format = frame.format;
  copy->width = frame.width;
  copy->height = frame.height;
  copy->buf[0] = takeBuffer(static_cast<std::size_t>(bytes) + kBeyond);
  if (av_image_fill_arrays(copy->data, copy->linesize, copy->buf[0]->data, format, frame.width,
                           frame.height, kAlignment) < 0 ||
      av_frame_copy(copy.get(), &frame) < 0 || av_frame_copy_props(copy.get(), &frame) < 0)
    throw std::bad_alloc();
  av_frame_unref(&frame);
  av_frame_move_ref(&frame, copy.get());
}

}  // namespace nkdraw::media
