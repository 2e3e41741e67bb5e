// SPDX-License-Identifier: BSD-2-Clause
//
// Watermarks, captions and meters in burnt clips.
#include "clip.h"
#include "program.h"

#include <tests/support/caption_stream.h>

#include <burner.h>
#include <layouts.h>
#include <meter_feed.h>

#include <nkdraw/nkdraw.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <fstream>

using namespace nkdraw::tool;
using nkdraw::test::CaptionStream;

namespace {

constexpr int kWidth = 640, kHeight = 360, kFrames = 60;

Arguments encoderFor(const std::string& layout) {
  if (layout == "v210")
    return {"-c:v", "v210"};
  return {"-c:v", "rawvideo", "-pix_fmt", av_get_pix_fmt_name(layoutNamed(layout)->pixelFormat)};
}

/// A clip of one colour, with this sound if any.
std::string makeClip(const std::string& layout, const std::string& colour, int frames,
                     const std::string& sound = "") {
  std::string path = at("in-" + layout + ".nut");
  Arguments arguments = {
      "-f", "lavfi", "-i",
      "color=" + colour +
          ":size=640x360:rate=30000/1001,format=rgb24,trim=end_frame=" + std::to_string(frames)};
  if (!sound.empty())
    arguments.insert(arguments.end(), {"-f", "lavfi", "-t", "4", "-i", sound});
  const Arguments encoder = encoderFor(layout);
  arguments.insert(arguments.end(), encoder.begin(), encoder.end());
  arguments.insert(arguments.end(), {"-c:a", "pcm_s16le", path});
  ffmpeg(arguments);
  return path;
}

void expectBurnt(const Arguments& arguments) {
  Arguments all = {"--overwrite"};
  all.insert(all.end(), arguments.begin(), arguments.end());
  const Outcome outcome = burnin(all);
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.err, "");
}

// --- watermark -------------------------------------------------------------------------------

constexpr int kLogoX = 201, kLogoY = 99, kLogoWidth = 60, kLogoHeight = 30;

/// A picture that becomes opaque from left to right.
std::string makeLogo() {
  std::string path = at("logo.png");
  ffmpeg({"-f", "lavfi", "-i",
          "color=black:size=60x30,format=rgba,geq=r=230:g='X*4':b=30:a='clip(X*6-20,0,255)'",
          "-frames:v", "1", path});
  return path;
}

std::string burnLogo(const std::string& layout, const std::string& in) {
  std::string out = at("out-" + layout + ".nut");
  expectBurnt({in, out, "--no-ltc", "--watermark", makeLogo(), "--watermark-at",
               std::to_string(kLogoX) + "," + std::to_string(kLogoY)});
  return out;
}

struct Logo {
  Logo() : pixels(decodeAs(at("logo.png"), AV_PIX_FMT_BGRA).frames.at(0)) {
    GetDraw(ptBGRA32, kLogoWidth, kLogoHeight, 0, reinterpret_cast<char*>(pixels.data()), surface);
  }
  Logo(const Logo&) = delete;
  Logo& operator=(const Logo&) = delete;
  ~Logo() { ReleaseDraw(surface); }

  Bytes pixels;
  NKDraw* surface = nullptr;
};

/// Whether the pixel is inside a logo whose left edge is there, and where in the logo.
bool inLogo(int x, int y, int left, int& logoX, int& logoY) {
  logoX = x - left;
  logoY = y - kLogoY;
  return logoX >= 0 && logoX < kLogoWidth && logoY >= 0 && logoY < kLogoHeight;
}

int blended(int over, int under, int alpha) {
  return (over * alpha + under * (255 - alpha)) / 255;
}

TEST(BurntWatermark, IsBlendedByItsAlphaInBGRA) {
  const std::string in = makeClip("bgra", "0x4080C0", 2), out = burnLogo("bgra", in);
  const Logo logo;
  const Clip before = decode(in), after = decode(out);
  ASSERT_EQ(after.frames.size(), 2U);
  for (int i = 0; i < kWidth * kHeight * 4; ++i) {
    const auto byte = static_cast<std::size_t>(i);
    int logoX = 0, logoY = 0, expected = before.frames[1][byte];
    if (inLogo(i / 4 % kWidth, i / 4 / kWidth, kLogoX, logoX, logoY)) {
      const std::uint8_t* const pixel = logo.pixels.data() + (logoY * kLogoWidth + logoX) * 4;
      if (pixel[3] > 16)
        expected = i % 4 == 3 ? pixel[3] : blended(pixel[i % 4], expected, pixel[3]);
    }
    ASSERT_EQ(after.frames[1][byte], expected) << i / 4 % kWidth << "," << i / 4 / kWidth;
  }
}

TEST(BurntWatermark, IsBlendedInPairsFromAnEvenColumnInUYVY) {
  const std::string in = makeClip("uyvy", "0x4080C0", 2), out = burnLogo("uyvy", in);
  const Logo logo;
  const Clip before = decode(in), after = decode(out);
  for (int i = 0; i < kWidth * kHeight * 2; ++i) {
    const auto byte = static_cast<std::size_t>(i);
    int logoX = 0, logoY = 0, expected = before.frames[1][byte];
    if (inLogo(i / 4 * 2 % kWidth, i / 2 / kWidth, kLogoX - 1, logoX, logoY)) {
      std::uint8_t y = 0, cb = 0, cr = 0, alpha = 0;
      logo.surface->GetPixelYCbCr8(logoX, logoY, y, cb, cr, alpha);
      const int samples[] = {cb, y, cr, y};
      if (alpha > 8)
        expected = blended(samples[i % 4], expected, alpha);
    }
    ASSERT_EQ(after.frames[1][byte], expected) << i;
  }
}

TEST(BurntWatermark, IsPlottedInV210) {
  const std::string in = makeClip("v210", "0x4080C0", 2), out = burnLogo("v210", in);
  const Logo logo;
  const Clip before = decode(in), after = decode(out);
  const auto sampleOf = [](const Clip& clip, int i) {
    return reinterpret_cast<const std::uint16_t*>(clip.frames[1].data())[i];
  };
  for (int i = 0; i < kWidth * kHeight; ++i) {
    int logoX = 0, logoY = 0;
    std::uint32_t expected = sampleOf(before, i);
    if (inLogo(i % kWidth, i / kWidth, kLogoX - 1, logoX, logoY)) {
      std::uint32_t y = 0, cb = 0, cr = 0, alpha = 0, own = 0;
      logo.surface->GetPixelYCbCr10(logoX, logoY, own, cb, cr, alpha);
      logo.surface->GetPixelYCbCr10(logoX | 1, logoY, y, cb, cr, alpha);
      if (alpha > 10)
        expected = own;
    }
    ASSERT_EQ(sampleOf(after, i), expected) << i % kWidth << "," << i / kWidth;
  }
}

TEST(BurntWatermark, LooksTheSameInEveryLayoutOfAKind) {
  const auto burntAs = [](const std::string& layout, AVPixelFormat format) {
    return decodeAs(burnLogo(layout, makeClip(layout, "0x4080C0", 1)), format).frames.at(0);
  };
  const Bytes rgb = burntAs("bgra", AV_PIX_FMT_RGB24);
  for (const char* layout : {"rgba", "argb", "abgr", "rgb24", "bgr24", "rgb0", "0bgr"})
    EXPECT_TRUE(burntAs(layout, AV_PIX_FMT_RGB24) == rgb) << layout;
  const Bytes uyvy = burntAs("uyvy", AV_PIX_FMT_YUV422P);
  for (const char* layout : {"yuy2", "yvyu"})
    EXPECT_TRUE(burntAs(layout, AV_PIX_FMT_YUV422P) == uyvy) << layout;
}

TEST(BurntWatermark, LeavesTheCodecsNameInTheFormatLine) {
  for (const auto& [layout, name] : {std::pair{"uyvy", "UYVY"}, std::pair{"v210", "v210"}}) {
    const std::string in = makeClip(layout, "black", 1), out = at("named.nut");
    expectBurnt({in, out, "--format-line", "--watermark", makeLogo(), "--watermark-at", "0,300",
                 "--position", "0,200"});
    EXPECT_EQ(readText(decodeAs(out, AV_PIX_FMT_GRAY8), 0, 32, 18, 3, 24),
              std::string("29.97 NUT ") + name + " 640x360 p")
        << layout;
  }
}

// --- captions --------------------------------------------------------------------------------

// The screen at 640x360: cells of 8 by 10 dots, one pixel each.
constexpr int kScale = 1, kScreenLeft = (kWidth - 272) / 2,
              kScreenTop = (kHeight - 150) / 2 - 1;  // even

/// `text` on the last row, from frame 10 + `pairs` on; gone at frame 50.
CaptionStream popOn(const std::string& text, unsigned channel) {
  return CaptionStream(channel).loadPopOn().eraseHidden().row(15).text(text).endOfCaption();
}

std::string scc(const CaptionStream& stream) {
  std::string line;
  for (const auto& pair : stream.pairs()) {
    char word[8];
    std::snprintf(word, sizeof word, " %02x%02x", pair[0], pair[1]);
    line += word;
  }
  return line.substr(1);
}

std::string makeCaptions(const std::string& text, unsigned channel = 1) {
  std::string path = at("captions.scc");
  std::ofstream(path) << "Scenarist_SCC V1.0\n\n00:00:00:10\t" << scc(popOn(text, channel))
                      << "\n\n00:00:01:20\t" << scc(CaptionStream(channel).eraseDisplayed())
                      << "\n";
  return path;
}

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
  expectBurnt({at("in.mp4"), at("out.mov"), "--no-ltc", "--captions"});
  const Clip grey = decodeAs(at("out.mov"), AV_PIX_FMT_GRAY8);
  EXPECT_EQ(lastRow(grey, 5, 11), "           ");
  EXPECT_EQ(lastRow(grey, grey.frames.size() - 1, 11), "From within");
  expectBurnt({at("in.mp4"), at("out.mov"), "--no-ltc", "--captions", "--frames", "25-99"});
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

// --- meters ----------------------------------------------------------------------------------

/// Which rows of a channel's column are lit, from the top.
std::vector<bool> litRows(const Clip& grey, std::size_t frame, int left, int top, int channel) {
  std::vector<bool> rows;
  for (int row = 0; row < 15; ++row) {
    const int x = left + 40 + 30 * channel + 10, y = top + 10 + 12 * row + 5;
    rows.push_back(grey.frames[frame][static_cast<std::size_t>(y * kWidth + x)] > 60);
  }
  return rows;
}

TEST(BurntMeters, LightTheRowsThatTheLevelReaches) {
  const int level = 2 * static_cast<int>(std::lround(0.1 * 32767));
  const int steps =
      static_cast<int>(std::floor((std::floor(20 * std::log10(level)) - 56) / 41 * 15));
  ASSERT_EQ(steps, 7);
  std::vector<bool> expected(15, false);
  std::fill(expected.end() - steps, expected.end(), true);
  for (const char* layout : {"uyvy", "v210", "bgra", "rgb24", "yuy2"}) {
    const std::string in = makeClip(layout, "black", 30, "aevalsrc=0.1*sin(2*PI*1000*t):s=48000");
    expectBurnt({in, at("out.nut"), "--no-ltc", "--meters", "--meters-at", "31,51"});
    const Clip grey = decodeAs(at("out.nut"), AV_PIX_FMT_GRAY8);
    for (const std::size_t frame : {0U, 12U, 29U}) {
      EXPECT_EQ(litRows(grey, frame, 31, 51, 0), expected) << layout << " " << frame;
      for (int channel = 1; channel < 8; ++channel)
        EXPECT_EQ(litRows(grey, frame, 31, 51, channel), std::vector<bool>(15)) << channel;
    }
  }
}

std::uint32_t channelOf(const std::uint32_t* words, int channel) {
  return words[channel / 2] >> channel % 2 * 16 & 0xFFFF;
}

SoundTrack trackOf(const std::string& path) {
  MediaInput input(path);
  return {path, 1, AudioShape(*input.file().streams[1]->codecpar)};
}

TEST(BurntMeters, AreOfTheFirstEightChannels) {
  std::string sound = "aevalsrc=";
  for (int channel = 1; channel <= 8; ++channel)
    sound.append(channel > 1 ? "|" : "").append(std::to_string(channel)).append("/16");
  const SoundTrack track = trackOf(makeClip("uyvy", "black", 3, sound + ":s=48000"));
  MeterFeed feed(track, {30000, 1001});
  feed.advanceTo(2);
  for (int channel = 0; channel < 8; ++channel)
    EXPECT_NEAR(channelOf(feed.levels(), channel), (channel + 1) * 4096, 2) << channel;
}

TEST(BurntMeters, HoldAPeakForASecondAndAHalf) {
  // Loud up to the end of frame 5, at 30 frames a second.
  const SoundTrack track =
      trackOf(makeClip("uyvy", "black", 90, R"(aevalsrc=if(lt(t\,0.19)\,1\,0):s=48000)"));
  MeterFeed feed(track, {30, 1});
  const auto expectAt = [&](std::int64_t frame, std::uint32_t level, std::uint32_t peak) {
    feed.advanceTo(frame);
    EXPECT_NEAR(channelOf(feed.levels(), 0), level, 2) << frame;
    EXPECT_NEAR(channelOf(feed.peaks(), 0), peak, 2) << frame;
  };
  expectAt(0, 65534, 65534);
  expectAt(5, 65534, 65534);
  expectAt(6, 0, 65534);
  expectAt(49, 0, 65534);
  expectAt(50, 0, 0);
  expectAt(200, 0, 0);  // behind the end of the sound
}

// --- refusals --------------------------------------------------------------------------------

struct Refusal {
  Arguments arguments;
  int exitCode;
  const char* words;
};

TEST(LayerRefusals, AreOneLineAndLeaveNothing) {
  const std::string in = makeClip("uyvy", "black", 2), logo = makeLogo();
  const std::string captions = makeCaptions("Hello");
  std::ofstream(at("text.png")) << "no picture";
  std::ofstream(at("empty.scc")) << "Scenarist_SCC V1.0\n\n";
  const Refusal refusals[] = {
      {{"--watermark", at("none.png")}, 2, "cannot read the watermark"},
      {{"--watermark", at("text.png")}, 2, "no picture that can be read"},
      {{"--watermark", workFolder()}, 2, "no picture that can be read"},
      {{"--watermark", logo, "--watermark-at", "581,0"}, 0, ""},
      {{"--watermark", logo, "--watermark-at", "582,0"}, 1, "leaves the frame at the right edge"},
      {{"--watermark", logo, "--watermark-at", "0,331"}, 1, "leaves the frame at the lower edge"},
      {{"--watermark", logo, "--watermark-at", "-2,0"}, 1, "leaves the frame at the left edge"},
      {{"--watermark", logo, "--watermark-at", "3"}, 1, "not a value of --watermark-at"},
      {{"--watermark-at", "3,3"}, 1, "give --watermark"},
      {{"--captions-file", at("none.scc")}, 2, "cannot read the captions"},
      {{"--captions-file", logo}, 2, "not a file of captions"},
      {{"--captions-file", at("empty.scc")}, 2, "captions"},
      {{"--captions-file", captions, "--captions"}, 1, "exclude each other"},
      {{"--captions-file", captions, "--caption-channel", "CC3"}, 1, "first field"},
      {{"--captions", "--caption-channel", "CC5"}, 1, "not a value of --caption-channel"},
      {{"--caption-channel", "CC1"}, 1, "give --captions"},
      {{"--meters"}, 2, "no sound in the clip"},
      {{"--meters", "--meters-at", "360,0"}, 1, "meter panel leaves the frame"},
      {{"--meters", "--meters-at", "0,148"}, 1, "meter panel leaves the frame"},
      {{"--meters-at", "0,0"}, 1, "give --meters"},
  };
  for (const Refusal& refusal : refusals) {
    Arguments arguments = {"burnin", in, at("out.nut"), "--dry-run"};
    arguments.insert(arguments.end(), refusal.arguments.begin(), refusal.arguments.end());
    if (refusal.exitCode == 0)
      EXPECT_EQ(nkdrawTool(arguments).exitCode, 0);
    else
      expectRefusal(arguments, refusal.exitCode, refusal.words);
  }
}

TEST(LayerRefusals, NameWhatATestPatternLacks) {
  const Arguments pattern = {"burnin", "--layout", "uyvy", at("out.nut")};
  for (const char* option : {"--meters", "--captions"}) {
    Arguments arguments = pattern;
    arguments.emplace_back(option);
    expectRefusal(arguments, 1, "the test pattern has no");
  }
}

TEST(LayerRefusals, KeepWatermarksOutOfPairsThatAreNotWhole) {
  ffmpeg({"-f", "lavfi", "-i", "color=black:size=641x360:rate=25,format=gbrp", "-frames:v", "1",
          "-c:v", "rawvideo", "-pix_fmt", "uyvy422", at("odd.nut")});
  expectRefusal(
      {"burnin", at("odd.nut"), at("out.nut"), "--watermark", makeLogo(), "--watermark-at", "0,0"},
      1, "odd width");
}

}  // namespace
