// SPDX-License-Identifier: BSD-2-Clause
//
// Decoded frames are drawn on in their own pixel format: every sample outside the overlay stays,
// and inside it are the format's white and black.
#include "clip.h"
#include "program.h"
#include "reference_overlay.h"

#include <media/first_look.h>
#include <media/layouts.h>
#include <media/v210_rows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

using namespace nkdraw::media;

constexpr int kWidth = 208, kHeight = 96;

/// Where the text lies.
struct Text {
  int left = 17, top = 13, magnification = 1;
  [[nodiscard]] bool covers(int x, int y) const {
    return x >= left && x < left + 11 * 8 * magnification && y >= top &&
           y <= top + 10 * magnification;
  }
};
// The overlay makes rows and sizes even on interlaced frames.
constexpr Text kPlain, kEven = {17, 12, 2};

struct Case {
  const char* name;
  AVPixelFormat format;  // that the input decodes to
  Arguments input;       // how FFmpeg writes it
  const char* in;
  const char* out;
  Arguments codec = {};
  AVPixelFormat written = AV_PIX_FMT_NONE;  // none for the same
  bool full = false, interlaced = false;
};

Case lossless(const char* name, AVPixelFormat format) {
  return {name,     format,    {"-c:v", "ffv1", "-pix_fmt", av_get_pix_fmt_name(format)},
          "in.mkv", "out.mkv", {"--codec", "ffv1"}};
}
Case raw(const char* name, AVPixelFormat format) {
  return {name,     format,    {"-c:v", "rawvideo", "-pix_fmt", av_get_pix_fmt_name(format)},
          "in.nut", "out.nut", {"--codec", "rawvideo"}};
}

const Case kCases[] = {
    lossless("YUV420P", AV_PIX_FMT_YUV420P),
    lossless("YUV422P", AV_PIX_FMT_YUV422P),
    lossless("YUV444P", AV_PIX_FMT_YUV444P),
    lossless("YUV411P", AV_PIX_FMT_YUV411P),
    lossless("YUV440P", AV_PIX_FMT_YUV440P),
    lossless("YUV420P9", AV_PIX_FMT_YUV420P9),
    lossless("YUV420P10", AV_PIX_FMT_YUV420P10),
    lossless("YUV420P12", AV_PIX_FMT_YUV420P12),
    lossless("YUV422P10", AV_PIX_FMT_YUV422P10),
    lossless("YUV422P12", AV_PIX_FMT_YUV422P12),
    lossless("YUV444P10", AV_PIX_FMT_YUV444P10),
    lossless("YUV444P12", AV_PIX_FMT_YUV444P12),
    lossless("YUV444P16", AV_PIX_FMT_YUV444P16),
    lossless("YUVA420P", AV_PIX_FMT_YUVA420P),
    lossless("YUVA444P10", AV_PIX_FMT_YUVA444P10),
    lossless("Grey", AV_PIX_FMT_GRAY8),
    lossless("Grey10", AV_PIX_FMT_GRAY10),
    lossless("Grey12", AV_PIX_FMT_GRAY12),
    lossless("GBRP10", AV_PIX_FMT_GBRP10),
    lossless("GBRP12", AV_PIX_FMT_GBRP12),
    lossless("GBRAP12", AV_PIX_FMT_GBRAP12),
    raw("RGB48", AV_PIX_FMT_RGB48LE),
    raw("RGBA64", AV_PIX_FMT_RGBA64LE),
    raw("NV12", AV_PIX_FMT_NV12),
    raw("NV21", AV_PIX_FMT_NV21),
    raw("GBRP", AV_PIX_FMT_GBRP),
    raw("BigEndian", AV_PIX_FMT_YUV420P10BE),
    raw("BigEndianRGB", AV_PIX_FMT_RGBA64BE),
    raw("RGB565", AV_PIX_FMT_RGB565LE),
    raw("RGB565BigEndian", AV_PIX_FMT_RGB565BE),
    lossless("YA8", AV_PIX_FMT_YA8),
    {"NV12IntoFFV1",
     AV_PIX_FMT_NV12,
     {"-c:v", "rawvideo", "-pix_fmt", "nv12"},
     "in.nut",
     "out.mkv",
     {},
     AV_PIX_FMT_YUV420P},
    {"GBRPIntoFFV1",
     AV_PIX_FMT_GBRP,
     {"-c:v", "rawvideo", "-pix_fmt", "gbrp"},
     "in.nut",
     "out.mkv",
     {},
     AV_PIX_FMT_BGR0},
    {"FullRange",
     AV_PIX_FMT_YUVJ420P,
     {"-c:v", "mjpeg", "-pix_fmt", "yuvj420p"},
     "in.avi",
     "out.mkv",
     {"--lossless"},
     AV_PIX_FMT_YUV420P,
     true},
    {"FullRange10",
     AV_PIX_FMT_YUV422P10,
     {"-c:v", "ffv1", "-pix_fmt", "yuv422p10", "-color_range", "pc"},
     "in.mkv",
     "out.mkv",
     {"--codec", "ffv1"},
     AV_PIX_FMT_NONE,
     true},
    {"Interlaced",
     AV_PIX_FMT_YUV420P,
     {"-vf", "setfield=tff", "-c:v", "libx264", "-qp", "0", "-flags", "+ildct+ilme", "-pix_fmt",
      "yuv420p"},
     "in.mkv",
     "out.mkv",
     {"--codec", "ffv1"},
     AV_PIX_FMT_NONE,
     false,
     true},
};

const Text& textOf(const Case& each) {
  return each.interlaced ? kEven : kPlain;
}

/// The samples of a component, row after row, as FFmpeg reads them.
struct Samples {
  int columns = 0, rows = 0;
  std::vector<std::uint16_t> values;
  [[nodiscard]] unsigned at(int x, int y) const {
    return values[static_cast<std::size_t>(y * columns + x)];
  }
};

bool isRGB(const AVPixFmtDescriptor& facts) {
  return (facts.flags & AV_PIX_FMT_FLAG_RGB) != 0;
}
bool hasAlpha(const AVPixFmtDescriptor& facts) {
  return (facts.flags & AV_PIX_FMT_FLAG_ALPHA) != 0;
}
bool isChroma(const AVPixFmtDescriptor& facts, int component) {
  return !isRGB(facts) && facts.nb_components >= 3 && (component == 1 || component == 2);
}

Samples samplesOf(const Clip& clip, std::size_t frame, int component) {
  const AVPixFmtDescriptor& facts = *av_pix_fmt_desc_get(clip.format);
  std::uint8_t* planes[4];
  int pitches[4];
  av_image_fill_arrays(planes, pitches, clip.frames[frame].data(), clip.format, clip.width,
                       clip.height, 1);
  const bool chroma = isChroma(facts, component);
  Samples samples;
  samples.columns = AV_CEIL_RSHIFT(clip.width, chroma ? facts.log2_chroma_w : 0);
  samples.rows = AV_CEIL_RSHIFT(clip.height, chroma ? facts.log2_chroma_h : 0);
  std::vector<std::uint16_t> line(static_cast<std::size_t>(samples.columns));
  for (int y = 0; y < samples.rows; ++y) {
    av_read_image_line2(line.data(), const_cast<const std::uint8_t**>(planes), pitches, &facts, 0,
                        y, component, samples.columns, 0, sizeof line[0]);
    samples.values.insert(samples.values.end(), line.begin(), line.end());
  }
  return samples;
}

/// The grey of the overlay's pixels, as the library draws it: of 10 bits, of 8 bits or of RGB.
struct Drawn {
  Drawn(const AVPixFmtDescriptor& facts, const Text& text)
      : rgb(isRGB(facts)), depth(rgb || facts.comp[0].depth == 8 ? 8 : 10) {
    const pixelType type = rgb ? ptBGRA32 : depth == 8 ? ptUYVY : ptV210;
    ReferenceOverlay overlay(type, kWidth, kHeight, 25);
    pitch = packedPitch(type, kWidth);
    canvas.resize(pitch * kHeight);
    overlay.place(text.left, text.top, static_cast<std::uint32_t>(text.magnification))
        .burn(canvas.data(), 1);
  }

  [[nodiscard]] long grey(int x, int y) const {
    const std::uint8_t* const row = canvas.data() + pitch * static_cast<std::size_t>(y);
    return depth == 8 ? row[rgb ? 4 * x : 2 * x + 1] : deep(row, 0, x);
  }
  /// Cb or Cr, which is not quite grey's.
  [[nodiscard]] long chroma(int component, int x, int y) const {
    const std::uint8_t* const row = canvas.data() + pitch * static_cast<std::size_t>(y);
    return depth == 8 ? row[x / 2 * 4 + (component - 1) * 2] : deep(row, component, x / 2);
  }
  [[nodiscard]] static long deep(const std::uint8_t* row, int component, int place) {
    std::array<std::array<std::uint16_t, kWidth>, 3> samples{};
    unpackV210Row(row, samples[0].data(), samples[1].data(), samples[2].data(), kWidth);
    return samples[static_cast<std::size_t>(component)][static_cast<std::size_t>(place)];
  }

  bool rgb;
  int depth;
  std::size_t pitch = 0;
  Bytes canvas;
};

/// The same grey in a frame's samples.
long widened(long grey, const Drawn& drawn, int depth, bool full) {
  const double most = static_cast<double>((1 << depth) - 1);
  if (drawn.rgb)
    return std::lround(static_cast<double>(grey) * most / 255);
  const double black = 16 << (drawn.depth - 8), span = 219 << (drawn.depth - 8);
  const double part = (static_cast<double>(grey) - black) / span;
  return full ? std::lround(part * most)
              : std::lround((16 + part * 219) * static_cast<double>(1 << (depth - 8)));
}

long widenedChroma(long chroma, const Drawn& drawn, int depth, bool full) {
  const double most = static_cast<double>((1 << depth) - 1);
  const double part = static_cast<double>(chroma - (1 << (drawn.depth - 1))) /
                      static_cast<double>(224 << (drawn.depth - 8));
  const double span = full ? most : 224.0 * static_cast<double>(1 << (depth - 8));
  return (1L << (depth - 1)) + std::lround(part * span);
}

/// Chroma of the frame: the text's under it, and where samples reach beyond it their mean.
long expectedChroma(const Case& each, const Drawn& drawn, const Samples& own, int component,
                    int column, int row) {
  const AVPixFmtDescriptor& facts = *av_pix_fmt_desc_get(each.format);
  const bool interlaced = each.interlaced;
  const Text& text = textOf(each);
  const int shiftX = facts.log2_chroma_w, shiftY = facts.log2_chroma_h;
  const bool pairs = shiftX + shiftY > 0;  // the canvas shares chroma between two pixels
  long sum = 0, count = 0;
  for (int y = 0; y < kHeight; ++y) {
    const int field = interlaced && shiftY > 0 ? y % 2 : 0;
    const int step = interlaced && shiftY > 0 ? 2 : 1;
    if ((y / step >> shiftY) * step + field != row)
      continue;
    for (int x = column << shiftX; x < std::min((column + 1) << shiftX, kWidth); ++x) {
      const bool isDrawn = text.covers(x, y) || (pairs && text.covers(x ^ 1, y));
      sum += isDrawn ? widenedChroma(drawn.chroma(component, x, y), drawn, facts.comp[1].depth,
                                     each.full)
                     : own.at(column, row);
      ++count;
    }
  }
  return (2 * sum + count) / (2 * count);
}

long expectedSample(const Case& each, const Drawn& drawn, const Samples& own, int component, int x,
                    int y) {
  const AVPixFmtDescriptor& facts = *av_pix_fmt_desc_get(each.format);
  const int depth = facts.comp[component].depth;
  if (isChroma(facts, component))
    return expectedChroma(each, drawn, own, component, x, y);
  if (!textOf(each).covers(x, y))
    return own.at(x, y);
  if (hasAlpha(facts) && component == facts.nb_components - 1)
    return (1L << depth) - 1;
  const bool grey = !isRGB(facts) && facts.nb_components < 3;
  return widened(drawn.grey(x, y), drawn, depth, each.full || grey);
}

/// For messages.
void PrintTo(const Case& each, std::ostream* out) {
  *out << each.name;
}

class KeptPicture : public testing::TestWithParam<Case> {};

}  // namespace

TEST_P(KeptPicture, DiffersUnderTheTextOnly) {
  const Case& each = GetParam();
  Arguments make = {"-f", "lavfi", "-i", "testsrc2=size=208x96:rate=25", "-frames:v", "2"};
  make.insert(make.end(), each.input.begin(), each.input.end());
  make.push_back(at(each.in));
  ffmpeg(make);
  Arguments run = {at(each.in), at(each.out), "--position", "17,13", "--timecode-size", "1"};
  run.insert(run.end(), each.codec.begin(), each.codec.end());
  const Outcome outcome = burnin(run);
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.out + outcome.err, "");

  const Clip before = decode(at(each.in)), after = decode(at(each.out));
  ASSERT_EQ(before.format, each.format);
  ASSERT_EQ(after.format, each.written != AV_PIX_FMT_NONE ? each.written : each.format);
  ASSERT_EQ(after.frames.size(), 2U);
  const AVPixFmtDescriptor& facts = *av_pix_fmt_desc_get(each.format);
  const Drawn drawn(facts, textOf(each));
  for (int component = 0; component < facts.nb_components; ++component) {
    const Samples own = samplesOf(before, 1, component), got = samplesOf(after, 1, component);
    for (int y = 0; y < own.rows; ++y) {
      for (int x = 0; x < own.columns; ++x)
        ASSERT_EQ(got.at(x, y), expectedSample(each, drawn, own, component, x, y))
            << "component " << component << " at " << x << "," << y;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Formats, KeptPicture, testing::ValuesIn(kCases),
                         [](const testing::TestParamInfo<Case>& each) {
                           return std::string(each.param.name);
                         });

namespace {

/// Facts of a clip's first decoded frame and of its stream.
struct Look {
  AVFieldOrder order = AV_FIELD_UNKNOWN;
  AVColorRange range = AVCOL_RANGE_UNSPECIFIED;
  AVColorPrimaries primaries = AVCOL_PRI_UNSPECIFIED;
  AVColorTransferCharacteristic transfer = AVCOL_TRC_UNSPECIFIED;
  AVColorSpace matrix = AVCOL_SPC_UNSPECIFIED;
  bool mastering = false, light = false;
};

Look lookAt(const std::string& path) {
  AVFormatContext* context = nullptr;
  EXPECT_GE(avformat_open_input(&context, path.c_str(), nullptr, nullptr), 0) << path;
  const InputContext file(context);
  avformat_find_stream_info(file.get(), nullptr);
  const AVStream& video = *file->streams[0];
  const AVCodecParameters& codec = *video.codecpar;
  const auto has = [&](AVPacketSideDataType type) {
    return av_stream_get_side_data(&video, type, nullptr) != nullptr;
  };
  return {codec.field_order,
          codec.color_range,
          codec.color_primaries,
          codec.color_trc,
          codec.color_space,
          has(AV_PKT_DATA_MASTERING_DISPLAY_METADATA),
          has(AV_PKT_DATA_CONTENT_LIGHT_LEVEL)};
}

/// The bytes of the first frame's mastering display and content light level.
std::string lightLevelsOf(const std::string& path) {
  MediaInput input(path);
  const Frame first = firstLook(input);
  std::string levels;
  for (const AVFrameSideDataType type :
       {AV_FRAME_DATA_MASTERING_DISPLAY_METADATA, AV_FRAME_DATA_CONTENT_LIGHT_LEVEL}) {
    const AVFrameSideData* const data = av_frame_get_side_data(first.get(), type);
    if (data != nullptr)
      levels.append(reinterpret_cast<const char*>(data->data), data->size);
  }
  EXPECT_NE(levels, "") << path;
  return levels;
}

}  // namespace

TEST(KeptFacts, ColoursThatOnlyTheBitstreamTells) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=160x96:rate=25", "-frames:v", "2", "-c:v", "libx264",
          "-pix_fmt", "yuv420p10", "-x264-params",
          "colorprim=bt2020:transfer=smpte2084:colormatrix=bt2020nc", at("in.ts")});
  ASSERT_EQ(burnin({at("in.ts"), at("out.mkv"), "--timecode-size", "1"}).exitCode, 0);
  const Look look = lookAt(at("out.mkv"));
  EXPECT_EQ(look.primaries, AVCOL_PRI_BT2020);
  EXPECT_EQ(look.transfer, AVCOL_TRC_SMPTE2084);
  EXPECT_EQ(look.matrix, AVCOL_SPC_BT2020_NCL);
  EXPECT_EQ(look.range, AVCOL_RANGE_MPEG);
}

TEST(KeptFacts, MasteringDisplayAndLightLevelOfFrames) {
  setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=160x96:rate=25", "-frames:v", "2", "-c:v", "libx265",
          "-pix_fmt", "yuv420p10", "-x265-params",
          "log-level=none:hdr10=1:max-cll=1000,400:master-display="
          "G(13250,34500)B(7500,3000)R(34000,16000)WP(15635,16450)L(10000000,1)",
          at("in.ts")});
  for (const Arguments& codec :
       {Arguments{}, Arguments{"--codec", "ffv1"}, Arguments{"--codec", "libx265"}}) {
    Arguments run = {at("in.ts"), at("out.mkv"), "--timecode-size", "1", "--overwrite"};
    run.insert(run.end(), codec.begin(), codec.end());
    ASSERT_EQ(burnin(run).exitCode, 0);
    const Look look = lookAt(at("out.mkv"));
    EXPECT_TRUE(look.mastering);
    EXPECT_TRUE(look.light);
  }
  // FFmpeg's transport streams have no place for them but in the bitstream.
  ASSERT_EQ(
      burnin({at("in.ts"), at("out.ts"), "--timecode-size", "1", "--codec", "libx265"}).exitCode,
      0);
  EXPECT_EQ(lightLevelsOf(at("out.ts")), lightLevelsOf(at("in.ts")));
  ASSERT_EQ(
      burnin({at("in.ts"), at("av1.ivf"), "--timecode-size", "1", "--codec", "libsvtav1"}).exitCode,
      0);
  EXPECT_EQ(lightLevelsOf(at("av1.ivf")).size(), lightLevelsOf(at("in.ts")).size());
  unsetenv("ASAN_OPTIONS");
}

TEST(KeptFacts, FieldsThatOnlyTheFramesTell) {
  const auto make = [](const char* path, const Arguments& encoder) {
    Arguments arguments = {"-f", "lavfi", "-i", "testsrc2=size=720x576:rate=25", "-frames:v", "2"};
    arguments.insert(arguments.end(), encoder.begin(), encoder.end());
    arguments.push_back(at(path));
    ffmpeg(arguments);
  };
  make("dv.avi", {"-c:v", "dvvideo", "-pix_fmt", "yuv420p", "-s", "720x576"});
  make("dv.dv", {"-c:v", "dvvideo", "-pix_fmt", "yuv420p", "-s", "720x576"});
  for (const char* in : {"dv.avi", "dv.dv"}) {
    ASSERT_EQ(lookAt(at(in)).order, AV_FIELD_UNKNOWN) << in;
    const Outcome dry = burnin({at(in), at("out.mkv"), "--dry-run", "--overwrite"});
    EXPECT_NE(dry.out.find("interlaced"), std::string::npos) << dry.out;
    ASSERT_EQ(burnin({at(in), at("out.mkv"), "--overwrite", "--codec", "ffv1"}).exitCode, 0);
    EXPECT_EQ(lookAt(at("out.mkv")).order, AV_FIELD_BT) << in;
  }
}

TEST(KeptFacts, TurnedClipsAreDrawnOnUpright) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=96x208:rate=25", "-frames:v", "2", "-vf",
          "transpose=cclock", "-c:v", "libx264", "-qp", "0", "-pix_fmt", "yuv420p",
          at("plain.mov")});
  ffmpeg({"-i", at("plain.mov"), "-c", "copy", "-metadata:s:v", "rotate=270", at("in.mov")});
  const Outcome outcome = burnin({at("in.mov"), at("out.mov"), "--position", "3,60",
                                  "--timecode-size", "1", "--codec", "libx264:qp=0"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  ASSERT_EQ(burnin({at("in.mov"), at("still.png"), "--position", "3,60", "--timecode-size", "1",
                    "--still", "1"})
                .exitCode,
            0);
  EXPECT_EQ(readText(decodeAs(at("still.png"), AV_PIX_FMT_GRAY8), 0, 3, 60, 1, 11), "00:00:00:01");
  // FFmpeg turns both upright.
  for (const char* name : {"in", "out"})
    ffmpeg({"-i", at(std::string(name) + ".mov"), "-c:v", "ffv1", "-pix_fmt", "yuv420p",
            at(std::string(name) + "-upright.mkv")});
  const Clip before = decode(at("in-upright.mkv")), after = decode(at("out-upright.mkv"));
  ASSERT_EQ(after.width, 96);
  EXPECT_EQ(readText(decodeAs(at("out-upright.mkv"), AV_PIX_FMT_GRAY8), 1, 3, 60, 1, 11),
            "00:00:00:01");
  for (int y = 0; y < after.height; ++y) {
    for (int x = 0; x < after.width; ++x) {
      const auto place = static_cast<std::size_t>(y * after.width + x);
      if (x < 3 || x >= 91 || y < 60 || y > 70) {
        ASSERT_EQ(after.frames[1][place], before.frames[1][place]) << x << "," << y;
      }
    }
  }
}

TEST(KeptFacts, TurnedV210IsDrawnOnUprightToo) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=208x96:rate=25", "-frames:v", "2", "-c:v", "v210",
          at("plain.mov")});
  ffmpeg({"-i", at("plain.mov"), "-c", "copy", "-metadata:s:v", "rotate=90", at("in.mov")});
  ASSERT_EQ(
      burnin({at("in.mov"), at("out.mov"), "--position", "3,60", "--timecode-size", "1"}).exitCode,
      0);
  EXPECT_EQ(codecOf(at("out.mov")), "v210");
  ffmpeg({"-i", at("out.mov"), "-c:v", "ffv1", at("upright.mkv")});
  EXPECT_EQ(readText(decodeAs(at("upright.mkv"), AV_PIX_FMT_GRAY8), 1, 3, 60, 1, 11),
            "00:00:00:01");
}

TEST(KeptPictureWatermark, ChangesOnlyItsOwnPixels) {
  ffmpeg({"-f", "lavfi", "-i", "color=red@0.5:size=40x20,format=rgba", "-frames:v", "1",
          at("logo.png")});
  for (const char* const format : {"yuv420p", "yuv444p", "yuv420p10", "gbrp12", "yuva420p"}) {
    ffmpeg({"-y", "-f", "lavfi", "-i", "testsrc2=size=208x96:rate=25", "-frames:v", "1", "-c:v",
            "ffv1", "-pix_fmt", format, at("in.mkv")});
    ASSERT_EQ(burnin({at("in.mkv"), at("out.mkv"), "--overwrite", "--no-ltc", "--watermark",
                      at("logo.png"), "--watermark-at", "50,30", "--codec", "ffv1"})
                  .exitCode,
              0);
    const Clip before = decode(at("in.mkv")), after = decode(at("out.mkv"));
    ASSERT_EQ(before.format, after.format);
    const AVPixFmtDescriptor& facts = *av_pix_fmt_desc_get(before.format);
    for (int component = 0; component < facts.nb_components; ++component) {
      const Samples own = samplesOf(before, 0, component), got = samplesOf(after, 0, component);
      const int scaleX = kWidth / own.columns, scaleY = kHeight / own.rows;
      std::size_t changed = 0;
      for (int y = 0; y < own.rows; ++y) {
        for (int x = 0; x < own.columns; ++x) {
          const bool inside =
              x * scaleX >= 50 && x * scaleX < 90 && y * scaleY >= 30 && y * scaleY < 50;
          changed += inside && got.at(x, y) != own.at(x, y) ? 1U : 0U;
          if (!inside) {
            ASSERT_EQ(got.at(x, y), own.at(x, y))
                << format << " " << component << " " << x << "," << y;
          }
        }
      }
      const bool alpha = hasAlpha(facts) && component == facts.nb_components - 1;
      if (!alpha) {
        EXPECT_GT(changed, static_cast<std::size_t>(300 / scaleX / scaleY)) << format << component;
      }
    }
  }
}

TEST(KeptFacts, TheRunSaysWhereTheTurnIsLost) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=160x96:rate=25", "-frames:v", "1", "-pix_fmt",
          "yuv420p", at("plain.mov")});
  ffmpeg({"-i", at("plain.mov"), "-c", "copy", "-metadata:s:v", "rotate=180", at("in.mov")});
  for (const auto& [out, isLost] : {std::pair{"out.mp4", false}, std::pair{"out.nut", true}}) {
    const Outcome outcome =
        burnin({at("in.mov"), at(out), "--size", "1", "--codec", "libx264:preset=ultrafast"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.err.find("is turned") != std::string::npos, isLost) << out;
  }
}

TEST(KeptFacts, FullRangeIsToldOrTheRunSaysWhatBecomesOfIt) {
  ffmpeg({"-f", "lavfi", "-i", "color=white:size=160x96:rate=25", "-frames:v", "2", "-c:v", "mjpeg",
          "-pix_fmt", "yuvj420p", at("in.avi")});
  struct {
    const char *out, *codec, *note;
    AVColorRange range;
    unsigned white;
  } const kOutputs[] = {
      {"out.mkv", "ffv1", "", AVCOL_RANGE_JPEG, 255},
      {"out.mov", "libx264:qp=0", "", AVCOL_RANGE_JPEG, 255},
      {"out.nut", "ffv1", "is kept, but", AVCOL_RANGE_UNSPECIFIED, 255},
      {"out.avi", "mpeg4", "becomes studio range", AVCOL_RANGE_UNSPECIFIED, 235},
  };
  for (const auto& each : kOutputs) {
    const Outcome outcome =
        burnin({at("in.avi"), at(each.out), "--timecode-size", "1", "--codec", each.codec});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.err.empty(), each.note[0] == '\0') << outcome.err;
    EXPECT_NE(outcome.err.find(each.note), std::string::npos) << outcome.err;
    EXPECT_EQ(lookAt(at(each.out)).range, each.range) << each.out;
    EXPECT_EQ(samplesOf(decode(at(each.out)), 0, 0).at(0, 0), each.white) << each.out;
  }
}
