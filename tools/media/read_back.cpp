// SPDX-License-Identifier: BSD-2-Clause
#include "media/read_back.h"

#include "media/failure.h"
#include "media/interrupt.h"
#include "media/libav_log.h"
#include "media/pipe_name.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace nkdraw::media {
namespace {

/// One pass over a file from some place on. Every pass opens the file anew, as a player would.
class Reader {
 public:
  Reader(const std::string& file, std::string name) : name_(std::move(name)) {
    forgetLibavErrors();
    AVFormatContext* context = nullptr;
    check(avformat_open_input(&context, ("file:" + file).c_str(), nullptr, nullptr));
    file_.reset(context);
    check(avformat_find_stream_info(context, nullptr));
    index_ = av_find_best_stream(context, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    check(index_);
    for (unsigned i = 0; i < context->nb_streams; ++i)
      context->streams[i]->discard =
          static_cast<int>(i) == index_ ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
  }

  /// Decodes the first frame from here on; with `toTheEnd` all that follow, too. False if the video
  /// has no key frame from here on.
  [[nodiscard]] bool decode(bool toTheEnd) {
    openDecoder(toTheEnd);
    const Packet packet = makePacket();
    bool begun = false;
    while (!isDone(toTheEnd) && av_read_frame(file_.get(), packet.get()) >= 0) {
      throwIfInterrupted();
      begun = begun || (packet->stream_index == index_ && (packet->flags & AV_PKT_FLAG_KEY) != 0);
      if (begun && packet->stream_index == index_)
        send(packet.get());
      av_packet_unref(packet.get());
    }
    if (!isDone(toTheEnd))
      send(nullptr);
    if (begun && frames_ == 0)
      fail("no frame comes out of it");
    return begun;
  }

  /// Goes to the key frame that many seconds before the end; false if that can't be done.
  [[nodiscard]] bool goBack(int seconds) {
    constexpr AVRational kMicroseconds = {1, AV_TIME_BASE};
    if (file_->duration == AV_NOPTS_VALUE || file_->duration <= 0)
      return false;
    const std::int64_t start = file_->start_time != AV_NOPTS_VALUE ? file_->start_time : 0;
    const std::int64_t end = start + file_->duration - std::int64_t{seconds} * AV_TIME_BASE;
    const std::int64_t time =
        av_rescale_q(std::max(start, end), kMicroseconds, file_->streams[index_]->time_base);
    return av_seek_frame(file_.get(), index_, time, AVSEEK_FLAG_BACKWARD) >= 0;
  }

 private:
  [[nodiscard]] bool isDone(bool toTheEnd) const { return frames_ > 0 && !toTheEnd; }

  /// The way to the end may be long: then frames to which no other refers are left out, and the
  /// others are not smoothed.
  void openDecoder(bool toTheEnd) {
    const AVCodecParameters& video = *file_->streams[index_]->codecpar;
    const AVCodec* const codec = avcodec_find_decoder(video.codec_id);
    if (codec == nullptr)
      fail(std::string("no decoder for ") + avcodec_get_name(video.codec_id));
    decoder_ = owned<CodecContext>(avcodec_alloc_context3(codec));
    check(avcodec_parameters_to_context(decoder_.get(), &video));
    if (toTheEnd) {
      decoder_->thread_count = 0;
      decoder_->skip_frame = AVDISCARD_NONREF;
      decoder_->skip_loop_filter = AVDISCARD_ALL;
    }
    check(avcodec_open2(decoder_.get(), codec, nullptr));
  }

  void send(const AVPacket* packet) {
    int error = avcodec_send_packet(decoder_.get(), packet);
    while (error >= 0) {
      error = avcodec_receive_frame(decoder_.get(), frame_.get());
      if (error < 0)
        break;
      ++frames_;
      if (frame_->decode_error_flags != 0 || (frame_->flags & AV_FRAME_FLAG_CORRUPT) != 0)
        fail("a frame is damaged");
      av_frame_unref(frame_.get());
    }
    if (error != AVERROR(EAGAIN) && error != AVERROR_EOF)
      check(error);
  }

  void check(int error) const {
    if (error < 0) {
      throwIfInterrupted();
      fail(explained(error, firstLibavError()));
    }
  }

  [[noreturn]] void fail(const std::string& why) const {
    throw Failure(ExitCode::kOutput, "the output can't be read back", name_,
                  why + "; nothing was written, choose another codec or kind of file");
  }

  std::string name_;
  InputContext file_;
  int index_ = -1;
  CodecContext decoder_;
  Frame frame_ = makeFrame();
  int frames_ = 0;
};

}  // namespace

void checkReadable(const std::string& file, const AVOutputFormat& format, const std::string& name) {
  if (isPipedOutput(file) || std::string_view(format.name) == "rawvideo")
    return;
  if (!Reader(file, name).decode(false))
    throw Failure(ExitCode::kOutput, "the output can't be read back", name,
                  "it has no key frame; choose another codec or kind of file");
  // Where a search ends on any frame, its key frame lies further back.
  for (const int seconds : {0, 1, 4, 16, 64}) {
    Reader last(file, name);
    if (!last.goBack(seconds) || last.decode(true))
      return;
  }
}

}  // namespace nkdraw::media
