// SPDX-License-Identifier: BSD-2-Clause
//
// Captions in burnt clips.
#include "clip.h"
#include "layers.h"

#include <burnin/burner.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace {

using namespace layers;
using namespace nkdraw::tool;

// The screen at 640x360: cells of 8 by 10 dots, one pixel each.
constexpr int kFrames = 60;
constexpr int kScale = 1, kScreenLeft = (kWidth - 272) / 2,
              kScreenTop = (kHeight - 150) / 2 - 1;  // even

std::string lastRow(const Clip& grey, std::size_t frame, std::size_t length) {
  return readText(grey, frame, kScreenLeft + 8 * kScale, kScreenTop + 140 * kScale - 1, kScale,
                  length);
}

TEST(BurntCaptions, OfAScenaristFileAppearAtTheirTime) {
  const std::string file = makeCaptions("Hello");
  for (const char* layout : {"bgra", "uyvy", "v210", "yuy2", "rgb24"}) {
    const std::string out = at(std::string("out-") + layout + ".nut");
    expectBurnt({makeClip(layout, "black", kFrames), out, "--no-ltc", "--captions-file", file});
    const Clip grey = decodeAs(out, AV_PIX_FMT_GRAY8);
    ASSERT_EQ(grey.frames.size(), 60U);
    EXPECT_EQ(lastRow(grey, 18, 5), "     ") << layout;
    EXPECT_EQ(lastRow(grey, 25, 5), "Hello") << layout;
    EXPECT_EQ(lastRow(grey, 49, 5), "Hello") << layout;
    EXPECT_EQ(lastRow(grey, 53, 5), "     ") << layout;
  }
}

TEST(BurntCaptions, AreOfTheChannelAskedFor) {
  const std::string file = makeCaptions("Two", 2), in = makeClip("uyvy", "black", 40);
  for (const auto& [channel, expected] : {std::pair{"cc2", "Two"}, std::pair{"CC1", "   "}}) {
    expectBurnt(
        {in, at("out.nut"), "--no-ltc", "--captions-file", file, "--caption-channel", channel});
    EXPECT_EQ(lastRow(decodeAs(at("out.nut"), AV_PIX_FMT_GRAY8), 30, 3), expected) << channel;
  }
}

TEST(BurntCaptions, OfFramesBeforeTheRangeCount) {
  expectBurnt({makeClip("uyvy", "black", kFrames), at("out.nut"), "--no-ltc", "--frames", "30-31",
               "--captions-file", makeCaptions("Hello")});
  EXPECT_EQ(lastRow(decodeAs(at("out.nut"), AV_PIX_FMT_GRAY8), 0, 5), "Hello");
}

/// An H.264 clip whose frames bring a stream's pairs.
void encodeWithCaptions(const std::string& path, const CaptionStream& stream) {
  AVFormatContext* file = nullptr;
  ASSERT_GE(avformat_alloc_output_context2(&file, nullptr, nullptr, path.c_str()), 0);
  const AVCodec* const codec = avcodec_find_encoder_by_name("libx264");
  ASSERT_NE(codec, nullptr);
  const CodecContext encoder(avcodec_alloc_context3(codec));
  encoder->width = kWidth;
  encoder->height = kHeight;
  encoder->pix_fmt = AV_PIX_FMT_YUV420P;
  encoder->time_base = {1001, 30000};
  encoder->framerate = {30000, 1001};
  ASSERT_GE(avcodec_open2(encoder.get(), codec, nullptr), 0);
  AVStream* const video = avformat_new_stream(file, nullptr);
  avcodec_parameters_from_context(video->codecpar, encoder.get());
  video->time_base = encoder->time_base;
  ASSERT_GE(avio_open(&file->pb, path.c_str(), AVIO_FLAG_WRITE), 0);
  ASSERT_GE(avformat_write_header(file, nullptr), 0);
  const Packet packet = makePacket();
  const auto drain = [&] {
    while (avcodec_receive_packet(encoder.get(), packet.get()) >= 0) {
      av_packet_rescale_ts(packet.get(), encoder->time_base, video->time_base);
      av_interleaved_write_frame(file, packet.get());
    }
  };
  for (std::size_t i = 0; i < stream.pairs().size(); ++i) {
    const Frame frame = makeFrame();
    frame->format = encoder->pix_fmt;
    frame->width = kWidth;
    frame->height = kHeight;
    frame->pts = static_cast<std::int64_t>(i);
    ASSERT_GE(av_frame_get_buffer(frame.get(), 0), 0);
    const std::ptrdiff_t pitches[] = {frame->linesize[0], frame->linesize[1], frame->linesize[2],
                                      0};
    av_image_fill_black(frame->data, pitches, AV_PIX_FMT_YUV420P, AVCOL_RANGE_MPEG, kWidth,
                        kHeight);
    AVFrameSideData* const side = av_frame_new_side_data(frame.get(), AV_FRAME_DATA_A53_CC, 3);
    side->data[0] = 0xFC;
    side->data[1] = stream.pairs()[i][0];
    side->data[2] = stream.pairs()[i][1];
    ASSERT_GE(avcodec_send_frame(encoder.get(), frame.get()), 0);
    drain();
  }
  avcodec_send_frame(encoder.get(), nullptr);
  drain();
  av_write_trailer(file);
  avio_closep(&file->pb);
  avformat_free_context(file);
}

TEST(BurntCaptions, OfTheVideoItselfAppear) {
  encodeWithCaptions(at("in.mp4"), popOn("From within", 1).silence(20));
  expectBurnt({at("in.mp4"), at("out.mov"), "--lossless", "--no-ltc", "--captions"});
  const Clip grey = decodeAs(at("out.mov"), AV_PIX_FMT_GRAY8);
  EXPECT_EQ(lastRow(grey, 5, 11), "           ");
  EXPECT_EQ(lastRow(grey, grey.frames.size() - 1, 11), "From within");
  expectBurnt(
      {at("in.mp4"), at("out.mov"), "--lossless", "--no-ltc", "--captions", "--frames", "25-33"});
  EXPECT_EQ(lastRow(decodeAs(at("out.mov"), AV_PIX_FMT_GRAY8), 0, 11), "From within");
}

TEST(BurntCaptions, OfPacketsAreTheirSideData) {
  const Packet packet = makePacket();
  EXPECT_TRUE(captionsOf(*packet).empty());
  std::uint8_t* const data = av_packet_new_side_data(packet.get(), AV_PKT_DATA_A53_CC, 3);
  data[0] = 0xFC;
  ASSERT_EQ(captionsOf(*packet).size(), 3U);
  EXPECT_EQ(captionsOf(*packet)[0], 0xFC);
}

TEST(BurntCaptions, ThatNeverCameAreTold) {
  const Outcome outcome = burnin({makeClip("uyvy", "black", 2), at("out.nut"), "--captions"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err, "nkdraw: no captions came with the video: " + at("in-uyvy.nut") +
                             "; try --captions-file\n");
  EXPECT_TRUE(exists(at("out.nut")));
}

}  // namespace
