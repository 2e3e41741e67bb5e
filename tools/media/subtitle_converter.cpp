// SPDX-License-Identifier: BSD-2-Clause
#include "media/subtitle_converter.h"

#include "media/failure.h"
#include "media/libav_log.h"

#include <cstring>
#include <utility>

namespace nkdraw::media {
namespace {

constexpr int kMostBytes = 1 << 20;  // of one encoded subtitle
constexpr AVRational kMilliseconds = {1, 1000};

/// Frees what a decoder put into it.
struct DecodedText {
  DecodedText() = default;
  DecodedText(const DecodedText&) = delete;
  DecodedText& operator=(const DecodedText&) = delete;
  ~DecodedText() { avsubtitle_free(&text); }
  AVSubtitle text = {};
};

/// The encoder's copy of the styles that the decoder found.
void copyHeader(const AVCodecContext& from, AVCodecContext& to) {
  if (from.subtitle_header == nullptr)
    return;
  const auto size = static_cast<std::size_t>(from.subtitle_header_size);
  to.subtitle_header = static_cast<std::uint8_t*>(av_mallocz(size + 1));
  if (to.subtitle_header == nullptr)
    throw std::bad_alloc();
  std::memcpy(to.subtitle_header, from.subtitle_header, size);
  to.subtitle_header_size = from.subtitle_header_size;
}

}  // namespace

SubtitleConverter::SubtitleConverter(const AVStream& from, const CodecChoice& choice,
                                     const AVOutputFormat& format, std::string path,
                                     std::string advice)
    : stream_(from), path_(std::move(path)), advice_(std::move(advice)) {
  const AVCodec* const codec = avcodec_find_decoder(from.codecpar->codec_id);
  decoder_ = owned<CodecContext>(avcodec_alloc_context3(codec));
  if (avcodec_parameters_to_context(decoder_.get(), from.codecpar) < 0)
    throw std::bad_alloc();
  decoder_->pkt_timebase = from.time_base;
  if (const int error = avcodec_open2(decoder_.get(), codec, nullptr); error < 0)
    fail("the subtitles can't be decoded", error);
  encoder_ = owned<CodecContext>(avcodec_alloc_context3(choice.codec));
  encoder_->time_base = timeBase();
  if ((format.flags & AVFMT_GLOBALHEADER) != 0)
    encoder_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
  copyHeader(*decoder_, *encoder_);
  if (const int error = avcodec_open2(encoder_.get(), choice.codec, nullptr); error < 0)
    fail("the subtitles can't be encoded", error);
}

void SubtitleConverter::fail(const char* what, int error) const {
  throw Failure(ExitCode::kProcessing, what, path_, explained(error) + "; " + advice_);
}

void SubtitleConverter::describeTo(AVStream& stream) const {
  if (avcodec_parameters_from_context(stream.codecpar, encoder_.get()) < 0)
    throw std::bad_alloc();
  stream.time_base = timeBase();
}

void SubtitleConverter::convert(const AVPacket& packet, const TakePacket& take) {
  DecodedText decoded;
  int got = 0;
  // The call wants a packet that it may change, although it does not.
  const int error =
      avcodec_decode_subtitle2(decoder_.get(), &decoded.text, &got, const_cast<AVPacket*>(&packet));
  if (error < 0)
    fail("a subtitle can't be decoded", error);
  if (got == 0 || decoded.text.num_rects == 0)
    return;
  if (decoded.text.pts == AV_NOPTS_VALUE)
    decoded.text.pts = av_rescale_q(packet.pts, stream_.time_base, timeBase());
  encode(decoded.text, take);
}

/// A packet's time is when its text appears.
void SubtitleConverter::encode(AVSubtitle& text, const TakePacket& take) {
  text.pts += av_rescale_q(text.start_display_time, kMilliseconds, timeBase());
  text.end_display_time -= text.start_display_time;
  text.start_display_time = 0;
  const Packet packet = makePacket();
  if (av_new_packet(packet.get(), kMostBytes) < 0)
    throw std::bad_alloc();
  const int size = avcodec_encode_subtitle(encoder_.get(), packet->data, packet->size, &text);
  if (size < 0)
    fail("a subtitle can't be encoded", size);
  av_shrink_packet(packet.get(), size);
  packet->flags = AV_PKT_FLAG_KEY;
  packet->pts = packet->dts = text.pts;
  packet->duration = av_rescale_q(text.end_display_time, kMilliseconds, timeBase());
  take(*packet);
}

}  // namespace nkdraw::media
