// SPDX-License-Identifier: BSD-2-Clause
#include "media/video_decoder.h"

#include "media/failure.h"
#include "media/libav_log.h"

namespace nkdraw::media {

VideoDecoder::VideoDecoder(const AVCodecParameters& video, AVRational timeBase,
                           const std::string& name)
    : name_(name) {
  const AVCodec* const codec = avcodec_find_decoder(video.codec_id);
  if (codec == nullptr)
    throw Failure(ExitCode::kInput, "no decoder for the video", name,
                  std::string("its codec is ") + avcodec_get_name(video.codec_id) +
                      "; convert the clip first");
  decoder_ = owned<CodecContext>(avcodec_alloc_context3(codec));
  if (avcodec_parameters_to_context(decoder_.get(), &video) < 0)
    throw std::bad_alloc();
  decoder_->pkt_timebase = timeBase;
  decoder_->thread_count = 0;
  if (const int error = avcodec_open2(decoder_.get(), codec, nullptr); error < 0)
    throw Failure(ExitCode::kInput, "the video can't be decoded", name,
                  explained(error) + "; check it with ffprobe");
}

void VideoDecoder::decode(const AVPacket* packet, const TakeFrame& take) {
  int error = avcodec_send_packet(decoder_.get(), packet);
  while (error >= 0) {
    error = avcodec_receive_frame(decoder_.get(), frame_.get());
    if (error < 0)
      break;
    begun_ = true;
    take(*frame_);
    av_frame_unref(frame_.get());
  }
  if (error != AVERROR(EAGAIN) && error != AVERROR_EOF && begun_)
    throw Failure(ExitCode::kProcessing, "the video can't be decoded", name_,
                  explained(error) + "; the input may be damaged");
}

}  // namespace nkdraw::media
