// SPDX-License-Identifier: BSD-2-Clause
#include "clip.h"

#include <nkdraw/text/label_glyphs.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

using namespace nkdraw::media;

namespace {

InputContext open(const std::string& path) {
  av_log_set_level(AV_LOG_ERROR);
  AVFormatContext* context = nullptr;
  EXPECT_GE(avformat_open_input(&context, path.c_str(), nullptr, nullptr), 0) << path;
  if (context != nullptr)
    avformat_find_stream_info(context, nullptr);
  return InputContext(context);
}

int videoOf(AVFormatContext& file) {
  return av_find_best_stream(&file, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
}

std::string timecodeTag(const AVFormatContext& file) {
  for (unsigned i = 0; i < file.nb_streams; ++i) {
    if (const auto* tag = av_dict_get(file.streams[i]->metadata, "timecode", nullptr, 0))
      return tag->value;
  }
  const auto* const tag = av_dict_get(file.metadata, "timecode", nullptr, 0);
  return tag != nullptr ? tag->value : "";
}

Bytes packed(const AVFrame& frame) {
  const auto format = static_cast<AVPixelFormat>(frame.format);
  Bytes bytes(
      static_cast<std::size_t>(av_image_get_buffer_size(format, frame.width, frame.height, 1)));
  av_image_copy_to_buffer(bytes.data(), static_cast<int>(bytes.size()), frame.data, frame.linesize,
                          format, frame.width, frame.height, 1);
  return bytes;
}

Frame converted(const AVFrame& from, AVPixelFormat format) {
  Frame to = makeFrame();
  to->format = format;
  to->width = from.width;
  to->height = from.height;
  av_frame_get_buffer(to.get(), 0);
  const Scaler scaler(
      sws_getContext(from.width, from.height, static_cast<AVPixelFormat>(from.format), from.width,
                     from.height, format, SWS_POINT | SWS_ACCURATE_RND, nullptr, nullptr, nullptr));
  EXPECT_NE(scaler, nullptr);
  sws_scale(scaler.get(), from.data, from.linesize, 0, from.height, to->data, to->linesize);
  return to;
}

Clip decodeClip(const std::string& path, AVPixelFormat wanted) {
  Clip clip;
  const InputContext file = open(path);
  if (file == nullptr)
    return clip;
  clip.timecode = timecodeTag(*file);
  const int video = videoOf(*file);
  const AVCodecParameters& parameters = *file->streams[video]->codecpar;
  const AVCodec* const codec = avcodec_find_decoder(parameters.codec_id);
  const CodecContext decoder(avcodec_alloc_context3(codec));
  avcodec_parameters_to_context(decoder.get(), &parameters);
  EXPECT_GE(avcodec_open2(decoder.get(), codec, nullptr), 0) << path;
  const Packet packet = makePacket();
  const Frame frame = makeFrame();
  const auto drain = [&] {
    while (avcodec_receive_frame(decoder.get(), frame.get()) >= 0) {
      const auto own = static_cast<AVPixelFormat>(frame->format);
      clip.format = wanted == AV_PIX_FMT_NONE ? own : wanted;
      clip.width = frame->width;
      clip.height = frame->height;
      clip.frames.push_back(own == clip.format ? packed(*frame)
                                               : packed(*converted(*frame, clip.format)));
    }
  };
  while (av_read_frame(file.get(), packet.get()) >= 0) {
    if (packet->stream_index == video) {
      EXPECT_GE(avcodec_send_packet(decoder.get(), packet.get()), 0) << path;
      drain();
    }
    av_packet_unref(packet.get());
  }
  avcodec_send_packet(decoder.get(), nullptr);
  drain();
  return clip;
}

}  // namespace

std::size_t Clip::rowBytes() const {
  return static_cast<std::size_t>(av_image_get_linesize(format, width, 0));
}

Clip decode(const std::string& path) {
  return decodeClip(path, AV_PIX_FMT_NONE);
}

Clip decodeAs(const std::string& path, AVPixelFormat format) {
  return decodeClip(path, format);
}

std::vector<RawPacket> packetsOf(const std::string& path, AVMediaType kind) {
  std::vector<RawPacket> packets;
  const InputContext file = open(path);
  const int stream = av_find_best_stream(file.get(), kind, -1, -1, nullptr, 0);
  const Packet packet = makePacket();
  while (av_read_frame(file.get(), packet.get()) >= 0) {
    if (packet->stream_index == stream)
      packets.push_back(
          {Bytes(packet->data, packet->data + packet->size),
           static_cast<double>(packet->pts) * av_q2d(file->streams[stream]->time_base)});
    av_packet_unref(packet.get());
  }
  return packets;
}

std::string codecOf(const std::string& path) {
  const InputContext file = open(path);
  return avcodec_get_name(file->streams[videoOf(*file)]->codecpar->codec_id);
}

std::vector<AVRational> pixelShapesOf(const std::string& path) {
  std::vector<AVRational> shapes;
  const InputContext file = open(path);
  for (unsigned i = 0; i < file->nb_streams; ++i) {
    AVStream* const stream = file->streams[i];
    if (stream->codecpar->codec_type == AVMEDIA_TYPE_VIDEO)
      shapes.push_back(av_guess_sample_aspect_ratio(file.get(), stream, nullptr));
  }
  return shapes;
}

AVFieldOrder fieldOrderOf(const std::string& path) {
  const InputContext file = open(path);
  return file->streams[videoOf(*file)]->codecpar->field_order;
}

int coversIn(const std::string& path) {
  int covers = 0;
  const InputContext file = open(path);
  for (unsigned i = 0; i < file->nb_streams; ++i)
    covers += (file->streams[i]->disposition & AV_DISPOSITION_ATTACHED_PIC) != 0 ? 1 : 0;
  return covers;
}

std::string readText(const Clip& grey, std::size_t frame, int x, int y, int magnification,
                     std::size_t length) {
  constexpr int kRows = static_cast<int>(nkdraw::kGlyphHeight);
  constexpr int kColumns = static_cast<int>(nkdraw::kGlyphWidth);
  EXPECT_EQ(grey.format, AV_PIX_FMT_GRAY8);
  const int bottom = y + kRows * magnification;
  const auto ink = [&](int column, int row) {
    return grey.frames[frame][static_cast<std::size_t>(row * grey.width + column)] > 128;
  };
  std::string text;
  for (std::size_t i = 0; i < length; ++i) {
    std::array<std::uint8_t, nkdraw::kGlyphHeight> cell{};
    for (int row = 0; row < kRows; ++row) {
      for (int column = 0; column < kColumns; ++column) {
        const int left = x + (static_cast<int>(i) * kColumns + column) * magnification;
        if (ink(left + magnification / 2, bottom - row * magnification))
          cell[static_cast<std::size_t>(row)] |= static_cast<std::uint8_t>(0x80 >> column);
      }
    }
    char found = '?';
    for (int code = ' '; code <= '~'; ++code) {
      if (std::equal(cell.begin(), cell.end(), nkdraw::labelGlyphs + code * kRows))
        found = static_cast<char>(code);
    }
    text += found;
  }
  return text;
}
