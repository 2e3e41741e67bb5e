// SPDX-License-Identifier: BSD-2-Clause
//
// Subtitles of a part of a clip, and subtitles that are pictures.
#include "clip.h"
#include "program.h"

#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <iterator>
#include <string>

namespace {

using nkdraw::media::CodecContext;
using nkdraw::media::makePacket;
using nkdraw::media::Packet;

std::string textsOf(const std::string& name) {
  ffmpeg({"-i", at(name), "-map", "0:s:0", "-f", "srt", at("texts.srt")});
  std::ifstream file(at("texts.srt"));
  return {std::istreambuf_iterator<char>(file), {}};
}

/// A clip of ten seconds whose first text lasts until its ninth.
void makeTextClip(const std::string& name, const std::string& codec) {
  std::ofstream(at("in.srt")) << "1\n00:00:00,200 --> 00:00:08,600\nLong\n\n"
                                 "2\n00:00:08,800 --> 00:00:09,600\nLate\n\n";
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=64x36:rate=25:duration=10", "-i", at("in.srt"),
          "-c:v", "mpeg2video", "-c:s", codec, at(name)});
}

}  // namespace

TEST(SubtitlesOfARange, ThatBeganBeforeAreCutToIt) {
  struct {
    const char *in, *codec, *out;
  } const kKinds[] = {{"in.mkv", "srt", "out.mkv"},
                      {"in.mov", "mov_text", "out.mov"},
                      {"in.mkv", "ass", "out.mkv"},
                      {"in.mkv", "srt", "out.mov"}};
  for (const auto& [in, codec, out] : kKinds) {
    makeTextClip(in, codec);
    const Outcome outcome = burnin({at(in), at(out), "--frames", "200-224", "--overwrite",
                                    "--timecode-size", "1", "--no-ltc", "--text", "0,0,A"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(textsOf(out),
              "1\n00:00:00,000 --> 00:00:00,600\nLong\n\n"
              "2\n00:00:00,800 --> 00:00:01,000\nLate\n\n")
        << codec << out;
  }
}

namespace {

/// One subtitle of a small picture, encoded.
Packet pictureSubtitle(AVCodecContext& encoder) {
  std::array<std::uint8_t, 16 * 8> pixels{};
  for (std::size_t i = 0; i < pixels.size(); ++i)
    pixels[i] = static_cast<std::uint8_t>(i / 16 % 4);
  std::array<std::uint32_t, 256> colours = {0, 0xFFFFFFFF, 0xFF000000, 0xFFFF0000};
  AVSubtitleRect rect = {};
  rect.x = rect.y = 4;
  rect.w = 16;
  rect.h = 8;
  rect.nb_colors = 4;
  rect.type = SUBTITLE_BITMAP;
  rect.data[0] = pixels.data();
  rect.data[1] = reinterpret_cast<std::uint8_t*>(colours.data());
  rect.linesize[0] = 16;
  AVSubtitleRect* rects[] = {&rect};
  AVSubtitle subtitle = {};
  subtitle.num_rects = 1;
  subtitle.rects = rects;
  subtitle.end_display_time = 400;
  Packet packet = makePacket();
  constexpr int kMost = 65536;
  av_new_packet(packet.get(), kMost);
  const int size = avcodec_encode_subtitle(&encoder, packet->data, kMost, &subtitle);
  EXPECT_GT(size, 0);
  av_shrink_packet(packet.get(), std::max(size, 0));
  return packet;
}

CodecContext subtitleEncoder(const char* name) {
  const AVCodec* const codec = avcodec_find_encoder_by_name(name);
  CodecContext encoder(avcodec_alloc_context3(codec));
  encoder->time_base = {1, 1000};
  encoder->width = 192;
  encoder->height = 108;
  EXPECT_GE(avcodec_open2(encoder.get(), codec, nullptr), 0);
  return encoder;
}

/// A Matroska file with these subtitles alone, and then one with a video, too.
void makePictureClip(const char* name) {
  const CodecContext encoder = subtitleEncoder(name);
  AVFormatContext* file = nullptr;
  ASSERT_GE(avformat_alloc_output_context2(&file, nullptr, nullptr, at("sub.mkv").c_str()), 0);
  AVStream& stream = *avformat_new_stream(file, nullptr);
  avcodec_parameters_from_context(stream.codecpar, encoder.get());
  ASSERT_GE(avio_open(&file->pb, at("sub.mkv").c_str(), AVIO_FLAG_WRITE), 0);
  ASSERT_GE(avformat_write_header(file, nullptr), 0);
  const Packet packet = pictureSubtitle(*encoder);
  packet->pts = packet->dts = 200;
  packet->duration = 400;
  ASSERT_GE(av_interleaved_write_frame(file, packet.get()), 0);
  av_write_trailer(file);
  avio_closep(&file->pb);
  avformat_free_context(file);
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=192x108:rate=25:duration=0.8", "-i", at("sub.mkv"),
          "-map", "0:v", "-map", "1:s", "-c:v", "mpeg2video", "-c:s", "copy", at("in.mkv")});
}

void expectCopied(const std::string& out) {
  const Outcome outcome = burnin({at("in.mkv"), at(out), "--timecode-size", "1"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const auto before = packetsOf(at("in.mkv"), AVMEDIA_TYPE_SUBTITLE);
  const auto after = packetsOf(at(out), AVMEDIA_TYPE_SUBTITLE);
  ASSERT_EQ(before.size(), 1U);
  ASSERT_EQ(after.size(), 1U);
  EXPECT_TRUE(before[0].bytes == after[0].bytes) << out;
}

}  // namespace

TEST(SubtitlesThatArePictures, OfDVBAreCopiedOrRefused) {
  makePictureClip("dvbsub");
  expectCopied("out.mkv");
  expectCopied("out.ts");
  for (const char* out : {"out.mov", "out.avi", "out.mxf", "out.mp4"})
    expectRefusal({"burnin", at("in.mkv"), at(out)}, 1, "--no-subtitles");
}

TEST(SubtitlesThatArePictures, OfDVDsAreCopiedOrRefused) {
  makePictureClip("dvdsub");
  expectCopied("out.mkv");
  for (const char* out : {"out.mov", "out.avi", "out.ts", "out.mp4"})
    expectRefusal({"burnin", at("in.mkv"), at(out)}, 1, "--no-subtitles");
}
