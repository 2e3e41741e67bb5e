// SPDX-License-Identifier: BSD-2-Clause
//
// Memory for copies of frames, used again and again.
#pragma once

#include "media/libav.h"

#include <memory>

namespace nkdraw::media {

class FramePool {
 public:
  /// Gives the frame memory of its own if others share it, as decoders do with frames that they
  /// still need. Unlike FFmpeg's function of that name, it allocates nothing once as many frames
  /// are in use as ever will be.
  void makeWritable(AVFrame& frame);

 private:
  struct Deleter {
    void operator()(AVBufferPool* pool) const { av_buffer_pool_uninit(&pool); }
  };

  [[nodiscard]] AVBufferRef* takeBuffer(std::size_t bytes);

  std::unique_ptr<AVBufferPool, Deleter> pool_;
  std::size_t bytes_ = 0;  // of each of its buffers
};

}  // namespace nkdraw::media
