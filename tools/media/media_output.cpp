// SPDX-License-Identifier: BSD-2-Clause
#include "media/media_output.h"

#include "media/failure.h"
#include "media/interrupt.h"
#include "media/libav_log.h"
#include "media/pipe_name.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <utility>

namespace nkdraw::media {
namespace {

constexpr char kY4M[] = "yuv4mpegpipe";

int stopWhenInterrupted(void* /*context*/) {
  return pendingInterrupt() != 0 ? 1 : 0;
}

void setMuxerOptions(const std::vector<std::string>& options, Options& all) {
  for (const std::string& option : options) {
    const std::size_t equals = option.find('=');
    const std::string key = option.substr(0, equals);
    const bool adds = option.compare(equals + 1, 1, "+") == 0;
    av_dict_set(all.get(), key.c_str(), option.c_str() + equals + 1, adds ? AV_DICT_APPEND : 0);
  }
}

/// Sound files whose only video is a cover picture.
bool holdsCoversOnly(const AVOutputFormat& format) {
  return format.video_codec == AV_CODEC_ID_PNG && format.audio_codec != AV_CODEC_ID_NONE;
}

bool holdsVideo(const AVOutputFormat* format) {
  constexpr int kNoSingleFile = AVFMT_NOFILE | AVFMT_NEEDNUMBER;
  return format != nullptr && (format->flags & kNoSingleFile) == 0 &&
         format->video_codec != AV_CODEC_ID_NONE && !holdsCoversOnly(*format);
}

/// FFmpeg's name for Y4M differs from everybody's.
const char* longName(const std::string& format) {
  return format == "y4m" ? kY4M : format.c_str();
}

/// What a muxer needs that can't go back in its output, or would grow with it.
void setPipeOptions(const AVOutputFormat& format, Options& options) {
  const std::string_view name = format.name;
  if (name == "nut")
    options.set("write_index", "0");
  else if (name == "mov" || name == "mp4")
    options.set("movflags", "+frag_keyframe+empty_moov+default_base_moof");
}

}  // namespace

const AVOutputFormat& formatFor(const std::string& path, const std::optional<std::string>& asked) {
  if (asked) {
    const AVOutputFormat* const named = av_guess_format(longName(*asked), nullptr, nullptr);
    if (!holdsVideo(named))
      throw Failure(ExitCode::kUsage, "no such kind of video file", *asked, "see ffmpeg -muxers");
    return *named;
  }
  // Only the suffix, so that a folder's name plays no part.
  const std::string suffix = std::filesystem::path(path).extension().string();
  // FFmpeg would take a DVD's files for those of a Super Video CD.
  const AVOutputFormat* format = suffix == ".vob"
                                     ? av_guess_format("vob", nullptr, nullptr)
                                     : av_guess_format(nullptr, suffix.c_str(), nullptr);
  if (format == nullptr && isPipedOutput(path))
    format = av_guess_format("nut", nullptr, nullptr);
  if (!holdsVideo(format))
    throw Failure(ExitCode::kUsage, "the output's suffix names no video file", path,
                  "use .mov, .avi, .mkv or .nut, or another of FFmpeg's");
  return *format;
}

bool holds(const AVOutputFormat& format, AVCodecID codec) {
  return avformat_query_codec(&format, codec, FF_COMPLIANCE_NORMAL) == 1;
}

MediaOutput::MediaOutput(const std::string& file, const AVOutputFormat& format, std::string name)
    : name_(std::move(name)), piped_(isPipedOutput(file)) {
  // Some muxers open the file again to bring its index to the front.
  const std::string url = piped_ ? "" : "file:" + file;
  if (avformat_alloc_output_context2(&file_, &format, nullptr, url.c_str()) < 0)
    throw std::bad_alloc();
  const AVIOInterruptCB interrupt = {stopWhenInterrupted, nullptr};
  file_->interrupt_callback = interrupt;
  if (std::string_view(format.name) == kY4M)
    file_->strict_std_compliance = FF_COMPLIANCE_UNOFFICIAL;  // more than 8 bits
  const int error =
      avio_open2(&file_->pb, outputUrl(file).c_str(), AVIO_FLAG_WRITE, &interrupt, nullptr);
  if (error < 0) {
    avformat_free_context(file_);
    throwIfInterrupted();
    throw Failure(ExitCode::kOutput, "cannot write the output", name_,
                  errorText(error) + "; choose another place");
  }
}

MediaOutput::~MediaOutput() {
  close();
}

void MediaOutput::close() {
  if (file_ == nullptr)
    return;
  avio_closep(&file_->pb);
  avformat_free_context(file_);
  file_ = nullptr;
}

void MediaOutput::fail(const char* what, int error) const {
  throwIfInterrupted();
  if (piped_ && error == AVERROR(EPIPE))
    throw ReaderGone();
  throw Failure(
      ExitCode::kOutput, what, name_,
      explained(error) + (piped_ ? "; the output is incomplete" : "; nothing was written"));
}

AVStream& MediaOutput::addStream() {
  AVStream* const stream = avformat_new_stream(file_, nullptr);
  if (stream == nullptr)
    throw std::bad_alloc();
  return *stream;
}

void MediaOutput::begin(const std::vector<std::string>& options) {
  setOption("allow_raw_vfw", "1");  // Matroska: keep uncompressed RGB as Windows programs do
  if (piped_)
    setPipeOptions(format(), options_);
  setMuxerOptions(options, options_);
  if (const int error = avformat_write_header(file_, options_.get()); error < 0)
    fail("the output's head can't be written", error);
  for (const std::string& option : options)
    checkTaken(option);
}

void MediaOutput::checkTaken(const std::string& option) {
  const std::string key = option.substr(0, option.find('='));
  if (av_dict_get(*options_.get(), key.c_str(), nullptr, 0) != nullptr)
    throw Failure(ExitCode::kUsage, "this kind of file has no such option", key,
                  std::string("see ffmpeg -h muxer=") + file_->oformat->name);
}

int MediaOutput::tryWrite(AVPacket& packet, AVRational timeBase) {
  av_packet_rescale_ts(&packet, timeBase, file_->streams[packet.stream_index]->time_base);
  packet.pos = -1;
  const int stream = packet.stream_index;
  const int error = av_interleaved_write_frame(file_, &packet);
  if (error < 0 && error != AVERROR_INVALIDDATA && error != AVERROR(EINVAL))
    fail("the output can't be written", error);
  if (error >= 0)
    written_.insert(stream);
  return std::min(error, 0);
}

void MediaOutput::write(AVPacket& packet, AVRational timeBase) {
  if (const int error = tryWrite(packet, timeBase); error < 0)
    fail("the output can't be written", error);
}

void MediaOutput::finish() {
  if (const int error = av_write_trailer(file_); error < 0)
    fail("the output's end can't be written", error);
  if (const int error = avio_closep(&file_->pb); error < 0)
    fail("the output can't be closed", error);
  close();
}

}  // namespace nkdraw::media
