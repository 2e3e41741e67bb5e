// SPDX-License-Identifier: BSD-2-Clause
//
// The media reader, a module loaded at run time: the first frame of anything that FFmpeg opens, as
// 32-bit BGRA.
#include <nkdraw/platform/media_reader.h>

#include <nkdraw/constants.h>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/imgutils.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

#include <cstdint>
#include <limits>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <string_view>
#include <utility>

namespace {

struct Release {
  void operator()(AVFormatContext* file) const { avformat_close_input(&file); }
  void operator()(AVCodecContext* decoder) const { avcodec_free_context(&decoder); }
  void operator()(AVPacket* packet) const { av_packet_free(&packet); }
  void operator()(AVFrame* frame) const { av_frame_free(&frame); }
  void operator()(SwsContext* scaler) const { sws_freeContext(scaler); }
};
template <class Object>
using Owner = std::unique_ptr<Object, Release>;

/// While an object lives, FFmpeg's own messages stay out of the host's error output.
class QuietFfmpeg {
 public:
  QuietFfmpeg() : alone_(mutex()), level_(av_log_get_level()) { av_log_set_level(AV_LOG_QUIET); }
  QuietFfmpeg(const QuietFfmpeg&) = delete;
  QuietFfmpeg& operator=(const QuietFfmpeg&) = delete;
  ~QuietFfmpeg() { av_log_set_level(level_); }

 private:
  /// The level belongs to the process, so only one object at a time may change it.
  static std::mutex& mutex() {
    static std::mutex only;
    return only;
  }
  const std::scoped_lock<std::mutex> alone_;
  const int level_;
};

Owner<AVFormatContext> openFile(const char* path) {
  AVFormatContext* file = nullptr;
  // A name is taken literally: the option stops a '%' from meaning numbered pictures, and the
  // prefix stops a colon from meaning a protocol.
  AVDictionary* options = nullptr;
  av_dict_set(&options, "pattern_type", "none", 0);
  const int status =
      avformat_open_input(&file, (std::string("file:") + path).c_str(), nullptr, &options);
  av_dict_free(&options);
  if (status < 0)
    return nullptr;
  Owner<AVFormatContext> opened(file);
  return avformat_find_stream_info(file, nullptr) >= 0 ? std::move(opened) : nullptr;
}

Owner<AVCodecContext> openDecoder(const AVCodec* codec, const AVCodecParameters& parameters) {
  Owner<AVCodecContext> decoder(avcodec_alloc_context3(codec));
  const bool opened = decoder && avcodec_parameters_to_context(decoder.get(), &parameters) >= 0 &&
                      avcodec_open2(decoder.get(), codec, nullptr) >= 0;
  return opened ? std::move(decoder) : nullptr;
}

/// A clip's first frame, in its own format; null if there is none.
Owner<AVFrame> firstFrame(const char* path) {
  const auto file = openFile(path);
  if (!file)
    return nullptr;
  const AVCodec* codec = nullptr;
  const int stream = av_find_best_stream(file.get(), AVMEDIA_TYPE_VIDEO, -1, -1, &codec, 0);
  if (stream < 0)
    return nullptr;
  const auto decoder = openDecoder(codec, *file->streams[stream]->codecpar);
  Owner<AVPacket> packet(av_packet_alloc());
  Owner<AVFrame> frame(av_frame_alloc());
  if (!decoder || !packet || !frame)
    return nullptr;
  for (bool more = true; more; av_packet_unref(packet.get())) {
    more = av_read_frame(file.get(), packet.get()) >= 0;
    if (more && packet->stream_index != stream)
      continue;
    // Packets that can't be decoded are skipped; at the end of the file the decoder is flushed.
    avcodec_send_packet(decoder.get(), more ? packet.get() : nullptr);
    if (avcodec_receive_frame(decoder.get(), frame.get()) >= 0)
      return frame;
  }
  return nullptr;
}

bool hasFullRange(const AVFrame& frame) {
  const AVPixFmtDescriptor& format = *av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
  return frame.color_range == AVCOL_RANGE_JPEG || (format.flags & AV_PIX_FMT_FLAG_RGB) != 0 ||
         format.nb_components < 3 || std::string_view(format.name).starts_with("yuvj");
}

/// The matrix of a picture without a tag, by its size.
int matrixOf(const AVFrame& frame) {
  constexpr int kHighDefinition = 1280;
  if (frame.colorspace != AVCOL_SPC_UNSPECIFIED && frame.colorspace != AVCOL_SPC_RGB)
    return frame.colorspace;
  return frame.width >= kHighDefinition ? AVCOL_SPC_BT709 : AVCOL_SPC_SMPTE170M;
}

/// Converts the frame to packed BGRA at `pixels`.
bool convert(const AVFrame& frame, char* pixels) {
  const Owner<SwsContext> scaler(sws_getContext(
      frame.width, frame.height, static_cast<AVPixelFormat>(frame.format), frame.width,
      frame.height, AV_PIX_FMT_BGRA,
      SWS_BICUBIC | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT | SWS_FULL_CHR_H_INP | SWS_BITEXACT,
      nullptr, nullptr, nullptr));
  if (!scaler)
    return false;
  constexpr int kUnity = 1 << 16;
  const int* const matrix = sws_getCoefficients(matrixOf(frame));
  sws_setColorspaceDetails(scaler.get(), matrix, hasFullRange(frame) ? 1 : 0, matrix, 1, 0, kUnity,
                           kUnity);
  // The scaler may write past the end of its rows.
  const Owner<AVFrame> picture(av_frame_alloc());
  if (!picture)
    return false;
  picture->format = AV_PIX_FMT_BGRA;
  picture->width = frame.width;
  picture->height = frame.height;
  if (av_frame_get_buffer(picture.get(), 0) < 0 ||
      sws_scale(scaler.get(), frame.data, frame.linesize, 0, frame.height, picture->data,
                picture->linesize) != frame.height)
    return false;
  const int rowBytes = frame.width * 4;
  av_image_copy_plane(reinterpret_cast<std::uint8_t*>(pixels), rowBytes, picture->data[0],
                      picture->linesize[0], rowBytes, frame.height);
  return true;
}

struct Clip {
  Owner<AVFrame> frame;

  /// 0 for a frame whose size does not fit into 32 bits.
  [[nodiscard]] std::uint32_t bytes() const {
    const std::uint64_t size = std::uint64_t{4} * static_cast<std::uint32_t>(frame->width) *
                               static_cast<std::uint32_t>(frame->height);
    return size <= std::numeric_limits<std::int32_t>::max() ? static_cast<std::uint32_t>(size) : 0;
  }
};

Clip* clipOf(const nkHandle* file) {
  return file == nullptr ? nullptr : reinterpret_cast<Clip*>(*file);
}

}  // namespace

extern "C" {

NKDRAW_API nkHandle ciOpen(const char* path, std::uint32_t /*access*/, std::uint32_t /*share*/,
                           std::uint32_t /*security*/, std::uint32_t /*creation*/,
                           std::uint32_t /*flags*/, std::uint32_t /*attributes*/) {
  if (path == nullptr)
    return nullptr;
  try {
    const QuietFfmpeg quiet;
    auto frame = firstFrame(path);
    return frame ? reinterpret_cast<nkHandle>(new Clip{std::move(frame)}) : nullptr;
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

NKDRAW_API std::uint32_t ciGetFileInfo(nkHandle* file, std::uint32_t /*stream*/,
                                       std::uint32_t /*first*/, HZWVIDEO* video,
                                       std::uint32_t /*second*/, std::uint32_t /*third*/) {
  const Clip* const clip = clipOf(file);
  if (clip == nullptr || video == nullptr || video->biSize != sizeof *video)
    return NKStatusRefused;
  video->biWidth = clip->frame->width;
  video->biHeight = clip->frame->height;
  video->biPlanes = 1;
  video->biBitCount = 32;
  video->biCompression = 0;
  video->biSizeImage = clip->bytes();
  return 0;
}

NKDRAW_API std::uint32_t ciReadFrameUnc(nkHandle* file, std::uint32_t /*first*/,
                                        std::uint32_t /*second*/, std::uint32_t /*third*/,
                                        std::uint32_t /*fourth*/, QFRAME* frame,
                                        std::uint32_t /*fifth*/, std::uint32_t /*sixth*/) {
  const Clip* const clip = clipOf(file);
  if (clip == nullptr || clip->bytes() == 0)
    return 0;
  if (frame == nullptr)
    return clip->bytes();
  const QuietFfmpeg quiet;
  return frame->frameBuffer != nullptr && convert(*clip->frame, frame->frameBuffer) ? clip->bytes()
                                                                                    : 0;
}

NKDRAW_API std::uint32_t ciClose(nkHandle* file) {
  delete clipOf(file);
  if (file != nullptr)
    *file = nullptr;
  return 0;
}

}  // extern "C"
