// SPDX-License-Identifier: BSD-2-Clause
//
// The parts by themselves: the layout table, v210 rows, rows in packets, the canvas, and numbering
// by time.
#include <tests/tool/reference_overlay.h>

#include <media/canvas_stage.h>
#include <media/failure.h>
#include <media/layouts.h>
#include <media/output_file.h>
#include <media/packet_rows.h>
#include <media/timecode_source.h>
#include <media/v210_rows.h>

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include <unistd.h>

using namespace nkdraw::media;

TEST(LayoutTable, NamesTheSurfaceThatItsHeaderGives) {
  for (const Layout& layout : layouts()) {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = 48;
    info.bmiHeader.biHeight = 4;
    info.bmiHeader.biBitCount = layout.bitCount;
    info.bmiHeader.biCompression = layout.compression;
    std::memcpy(info.bmiColors, &layout.redMask, sizeof layout.redMask);
    NKDraw* surface = nullptr;
    ASSERT_EQ(GetDraw(&info, nullptr, surface), 0U) << layout.name;
    EXPECT_EQ(surface->PixelType(), layout.type) << layout.name;
    EXPECT_EQ(surface->Pitch(), packedPitch(layout.type, 48)) << layout.name;
    ReleaseDraw(surface);
  }
}

TEST(LayoutTable, HasTheLibrarysPitchForEveryWidth) {
  for (const Layout& layout : layouts()) {
    for (int width = 2; width < 200; width += 2) {
      NKDraw* surface = nullptr;
      ASSERT_EQ(GetDraw(static_cast<std::uint32_t>(layout.type), width, 2, 0, nullptr, surface),
                0U);
      EXPECT_EQ(surface->Pitch(), packedPitch(layout.type, width)) << layout.name << " " << width;
      ReleaseDraw(surface);
    }
  }
}

TEST(V210Rows, ComeBackAsTheyWentAtEveryWidth) {
  std::mt19937 random(210);
  std::uniform_int_distribution<int> sample(0, 1023);
  for (int width = 0; width < 100; ++width) {
    const auto luma = static_cast<std::size_t>(width),
               chroma = static_cast<std::size_t>((width + 1) / 2);
    std::vector<std::uint16_t> planes[3] = {std::vector<std::uint16_t>(luma),
                                            std::vector<std::uint16_t>(chroma),
                                            std::vector<std::uint16_t>(chroma)};
    for (auto& plane : planes) {
      for (auto& each : plane)
        each = static_cast<std::uint16_t>(sample(random));
    }
    constexpr std::size_t kGuard = 16;
    std::vector<std::uint8_t> packed(rowBytes(ptV210, width) + kGuard, 0xA5);
    packV210Row(planes[0].data(), planes[1].data(), planes[2].data(), packed.data(), width);
    for (std::size_t i = packed.size() - kGuard; i < packed.size(); ++i)
      EXPECT_EQ(packed[i], 0xA5) << width;

    std::vector<std::uint16_t> back[3] = {std::vector<std::uint16_t>(luma + kGuard, 0xBEEF),
                                          std::vector<std::uint16_t>(chroma + kGuard, 0xBEEF),
                                          std::vector<std::uint16_t>(chroma + kGuard, 0xBEEF)};
    unpackV210Row(packed.data(), back[0].data(), back[1].data(), back[2].data(), width);
    for (int plane = 0; plane < 3; ++plane) {
      const auto& there = planes[plane];
      EXPECT_TRUE(std::equal(there.begin(), there.end(), back[plane].begin())) << width;
      for (std::size_t i = there.size(); i < back[plane].size(); ++i)
        EXPECT_EQ(back[plane][i], 0xBEEF) << width;
    }
  }
}

TEST(V210Rows, ReadAsTheLibraryReadsThem) {
  std::mt19937 random(422);
  std::uniform_int_distribution<int> sample(0, 1023);
  std::uint16_t y[48], cb[24], cr[24];
  for (auto* plane : {y, cb, cr}) {
    for (int i = 0; i < (plane == y ? 48 : 24); ++i)
      plane[i] = static_cast<std::uint16_t>(sample(random));
  }
  alignas(8) std::uint8_t packed[128] = {};
  packV210Row(y, cb, cr, packed, 48);
  CDrawYCbCr10 surface(ptV210);
  surface.SetCanvas(reinterpret_cast<char*>(packed), 1, 48, 0);
  for (int x = 0; x < 48; ++x) {
    if (x % 6 == 5)
      continue;  // the library's reads take another pixel's luma there
    std::uint32_t luma = 0, blue = 0, red = 0, alpha = 0;
    surface.GetPixelYCbCr10(x, 0, luma, blue, red, alpha);
    EXPECT_EQ(luma, y[x]);
    EXPECT_EQ(blue, cb[x / 2]);
    EXPECT_EQ(red, cr[x / 2]);
  }
}

namespace {

CodecParameters v210Parameters(int width, int height, std::uint32_t tag) {
  CodecParameters video = owned<CodecParameters>(avcodec_parameters_alloc());
  video->codec_type = AVMEDIA_TYPE_VIDEO;
  video->codec_id = AV_CODEC_ID_V210;
  video->codec_tag = tag;
  video->width = width;
  video->height = height;
  return video;
}

Packet packetOf(std::size_t bytes) {
  Packet packet = makePacket();
  EXPECT_EQ(av_new_packet(packet.get(), static_cast<int>(bytes)), 0);
  std::memset(packet->data, 0, bytes);
  return packet;
}

constexpr std::uint32_t kV210 = MKTAG('v', '2', '1', '0'), kC210 = MKTAG('C', '2', '1', '0');

}  // namespace

TEST(RowsInPackets, OfV210ArePaddedTo128Bytes) {
  const CodecParameters video = v210Parameters(300, 10, kV210);
  PacketRows rows(*video, *layoutNamed("v210"));
  const Packet packet = packetOf(896 * 10);
  const Picture picture = rows.rowsOf(*packet);
  EXPECT_EQ(picture.planes[0], packet->data);
  EXPECT_EQ(picture.pitches[0], 896);
}

TEST(RowsInPackets, OfV210MayBePaddedTo64Bytes) {
  const CodecParameters video = v210Parameters(300, 10, kV210);
  PacketRows rows(*video, *layoutNamed("v210"));
  const Packet packet = packetOf(832 * 10);
  EXPECT_EQ(rows.rowsOf(*packet).pitches[0], 832);
}

TEST(RowsInPackets, OfC210MayFollowAnInfoBlock) {
  const CodecParameters video = v210Parameters(300, 10, kC210);
  PacketRows rows(*video, *layoutNamed("v210"));
  const Packet packet = packetOf(896 * 10 + 64);
  std::memcpy(packet->data, "INFO", 4);
  EXPECT_EQ(rows.rowsOf(*packet).planes[0], packet->data + 64);
}

TEST(RowsInPackets, AreMissingWhenThePacketIsShort) {
  const CodecParameters video = v210Parameters(300, 10, kV210);
  PacketRows rows(*video, *layoutNamed("v210"));
  EXPECT_EQ(rows.rowsOf(*packetOf(896 * 10 - 1)).planes[0], nullptr);
  EXPECT_EQ(rows.rowsOf(*packetOf(1)).planes[0], nullptr);
}

TEST(RowsInPackets, BecomePlainWithoutLosingAPixel) {
  const CodecParameters video = v210Parameters(300, 10, kC210);
  PacketRows rows(*video, *layoutNamed("v210"));
  Packet packet = packetOf(896 * 10 + 64);
  for (int i = 64; i < packet->size; ++i)
    packet->data[i] = static_cast<std::uint8_t>(i * 7);
  std::memcpy(packet->data, "INFO", 4);
  const std::vector<std::uint8_t> before(packet->data + 64, packet->data + packet->size);
  packet->pts = 42;
  rows.makePlain(*packet, rows.rowsOf(*packet));
  ASSERT_EQ(packet->size, 896 * 10);
  EXPECT_EQ(packet->pts, 42);
  for (std::size_t y = 0; y < 10; ++y)
    EXPECT_EQ(std::memcmp(packet->data + 896 * y, before.data() + 896 * y, 800), 0);
}

namespace {

/// A frame in memory with guard bytes around it.
struct GuardedFrame {
  static constexpr std::size_t kGuard = 64;
  std::vector<std::uint8_t> bytes;
  std::ptrdiff_t pitch;
  int height;

  GuardedFrame(std::ptrdiff_t rowPitch, int rows)
      : bytes(static_cast<std::size_t>(rowPitch * rows) + 2 * kGuard),
        pitch(rowPitch),
        height(rows) {
    std::mt19937 random(7);
    for (std::uint8_t& each : bytes)
      each = static_cast<std::uint8_t>(random());
  }
  [[nodiscard]] Picture topDown() { return at(0, pitch); }
  [[nodiscard]] Picture bottomUp() { return at(pitch * (height - 1), -pitch); }

 private:
  Picture at(std::ptrdiff_t offset, std::ptrdiff_t rowPitch) {
    Picture picture;
    picture.planes[0] = bytes.data() + kGuard + offset;
    picture.pitches[0] = rowPitch;
    return picture;
  }
};

TEST(Layouts, AreNamedInSmallAndCapitalLetters) {
  EXPECT_EQ(layoutNamed("UYVY"), layoutNamed("uyvy"));
  EXPECT_NE(layoutNamed("V210"), nullptr);
  EXPECT_EQ(layoutNamed("uyv"), nullptr);
}

TEST(Layouts, ThatTheLibraryHasNotAreRefused) {
  const auto none = static_cast<pixelType>(9);
  EXPECT_THROW((void)rowBytes(none, 48), Failure);
  EXPECT_THROW((void)packedPitch(ptNone, 48), Failure);
  EXPECT_THROW((void)layoutOf(ptUV8), Failure);
}

TEST(Layouts, HaveRowsOfWholeGroups) {
  for (int width = 1; width < 200; ++width) {
    const auto pixels = static_cast<std::size_t>(width);
    EXPECT_EQ(rowBytes(ptV210, width), (pixels + 5) / 6 * 16);
    EXPECT_EQ(packedPitch(ptV210, width), (pixels + 47) / 48 * 128);
    for (const pixelType type : {ptYUYV, ptUYVY, ptYVYU})
      EXPECT_EQ(packedPitch(type, width), (pixels + 1) / 2 * 4);
    for (const pixelType type : {ptRGB24, ptBGR24})
      EXPECT_EQ(packedPitch(type, width), pixels * 3);
    for (const pixelType type : {ptRGBA32, ptBGRA32, ptARGB32, ptABGR32})
      EXPECT_EQ(packedPitch(type, width), pixels * 4);
    EXPECT_EQ(packedPitch(ptRGB48, width), pixels * 6);
    EXPECT_EQ(packedPitch(ptARGB64, width), pixels * 8);
  }
}

}  // namespace

TEST(Canvas, OfALayoutThatIsNotDrawnOnIsRefused) {
  const Layout* const deep = wipeLayoutOf(AV_CODEC_ID_RAWVIDEO, AV_PIX_FMT_RGB48LE);
  ASSERT_NE(deep, nullptr);
  EXPECT_THROW(CanvasStage(*deep, Storage::kPacked, 8, 8, {{0, 8}}, CanvasUse::kStrokes), Failure);
  EXPECT_THROW(
      CanvasStage(*layoutNamed("bgra"), Storage::kPlanes10, 8, 8, {{0, 8}}, CanvasUse::kStrokes),
      Failure);
}

/// What is drawn on the canvas of each layout, in its own bytes.
TEST(Canvas, HasEachChannelInItsPlace) {
  struct Row {
    const char* layout;
    Storage storage;
    CanvasUse use;
    std::vector<std::uint8_t> frame, canvas;  // one pixel or pair
  };
  const Row rows[] = {
      {"rgb24", Storage::kPacked, CanvasUse::kStrokes, {1, 2, 3}, {1, 2, 3, 255}},
      {"bgr24", Storage::kPacked, CanvasUse::kStrokes, {1, 2, 3}, {1, 2, 3, 255}},
      {"rgb24", Storage::kPacked, CanvasUse::kWatermark, {1, 2, 3}, {3, 2, 1, 255}},
      {"rgba", Storage::kPacked, CanvasUse::kWatermark, {1, 2, 3, 4}, {3, 2, 1, 4}},
      {"argb", Storage::kPacked, CanvasUse::kWatermark, {1, 2, 3, 4}, {4, 3, 2, 1}},
      {"abgr", Storage::kPacked, CanvasUse::kWatermark, {1, 2, 3, 4}, {2, 3, 4, 1}},
      {"yuy2", Storage::kPacked, CanvasUse::kStrokes, {1, 2, 3, 4}, {2, 1, 4, 3}},
      {"yuy2", Storage::kSignedChroma, CanvasUse::kStrokes, {1, 2, 3, 4}, {130, 1, 132, 3}},
      {"yvyu", Storage::kPacked, CanvasUse::kStrokes, {1, 2, 3, 4}, {4, 1, 2, 3}},
  };
  for (const Row& row : rows) {
    const Layout& layout = *layoutNamed(row.layout);
    CanvasStage stage(layout, row.storage, 2, 1, {{0, 1}}, row.use);
    std::vector<std::uint8_t> bytes(16, 77);
    std::copy(row.frame.begin(), row.frame.end(), bytes.begin());
    const auto before = bytes;
    Picture picture;
    picture.planes[0] = bytes.data();
    picture.pitches[0] = 16;
    stage.draw(picture, [&](std::uint8_t* canvas) {
      EXPECT_EQ(std::vector<std::uint8_t>(canvas, canvas + row.canvas.size()), row.canvas)
          << row.layout;
    });
    EXPECT_EQ(bytes, before) << row.layout;
  }
}

TEST(Canvas, IsTheFrameItselfWhenRowsArePacked) {
  for (const char* name : {"v210", "uyvy", "bgra", "rgba", "argb", "abgr"}) {
    const Layout& layout = *layoutNamed(name);
    CanvasStage stage(layout, Storage::kPacked, 50, 20, {{3, 8}}, CanvasUse::kStrokes);
    GuardedFrame frame(static_cast<std::ptrdiff_t>(packedPitch(layout.type, 50)), 20);
    const Picture picture = frame.topDown();
    stage.draw(picture,
               [&](std::uint8_t* canvas) { EXPECT_EQ(canvas, picture.planes[0]) << name; });
  }
}

TEST(Canvas, BringsEveryFrameBackBitForBitWhenNothingIsDrawn) {
  for (const Layout& layout : layouts()) {
    for (const int width : {33, 34, 50}) {
      for (const std::ptrdiff_t padding : {0, 1, 4, 100}) {
        CanvasStage stage(layout, Storage::kPacked, width, 20, {{0, 20}}, CanvasUse::kStrokes);
        GuardedFrame frame(static_cast<std::ptrdiff_t>(packedPitch(layout.type, width)) + padding,
                           20);
        const auto before = frame.bytes;
        stage.draw(frame.topDown(), [](std::uint8_t*) {});
        EXPECT_TRUE(frame.bytes == before) << layout.name << " " << width << " " << padding;
        stage.draw(frame.bottomUp(), [](std::uint8_t*) {});
        EXPECT_TRUE(frame.bytes == before) << layout.name << " " << width << " bottom-up";
      }
    }
  }
}

TEST(Canvas, TouchesNoRowsButTheOverlays) {
  CanvasStage stage(*layoutNamed("bgr24"), Storage::kPacked, 16, 20, {{5, 7}}, CanvasUse::kStrokes);
  GuardedFrame frame(48, 20);
  const auto before = frame.bytes;
  stage.draw(frame.bottomUp(), [](std::uint8_t* canvas) { std::memset(canvas, 0, 16 * 4 * 20); });
  for (int y = 0; y < 20; ++y) {
    // Bottom-up: row y lies 19 - y rows from the start.
    const std::size_t place = GuardedFrame::kGuard + static_cast<std::size_t>(19 - y) * 48;
    const bool kept = std::equal(before.begin() + static_cast<std::ptrdiff_t>(place),
                                 before.begin() + static_cast<std::ptrdiff_t>(place + 48),
                                 frame.bytes.begin() + static_cast<std::ptrdiff_t>(place));
    EXPECT_EQ(kept, y < 5 || y >= 7) << y;
  }
}

TEST(Canvas, OfYUY2ShowsStrokesWhereTheyBelong) {
  // Direct drawing with whole pairs, and drawing through UYVY, give the same frame.
  const Layout& layout = *layoutNamed("yuy2");
  GuardedFrame direct(400, 60), staged(400, 60);
  ReferenceOverlay onYUY2(ptYUYV, 200, 60, 25), onUYVY(ptUYVY, 200, 60, 25);
  onYUY2.place(2, 4, 2);
  onUYVY.place(2, 4, 2);
  const auto before = direct.bytes;
  CanvasStage whole(layout, Storage::kPacked, 200, 60, {{0, 60}}, CanvasUse::kWholePairs);
  CanvasStage any(layout, Storage::kPacked, 200, 60, {{0, 60}}, CanvasUse::kStrokes);
  EXPECT_EQ(whole.canvasLayout().type, ptYUYV);
  EXPECT_EQ(any.canvasLayout().type, ptUYVY);
  whole.draw(direct.topDown(), [&](std::uint8_t* canvas) { onYUY2.burn(canvas, 0); });
  any.draw(staged.topDown(), [&](std::uint8_t* canvas) { onUYVY.burn(canvas, 0); });
  EXPECT_TRUE(direct.bytes == staged.bytes);
  EXPECT_FALSE(direct.bytes == before);
}

TEST(Numbering, FollowsTheTimesAndCountsOnWithoutThem) {
  FrameClock clock({1, 1000}, {30000, 1001}, AV_NOPTS_VALUE);
  EXPECT_EQ(clock.indexOf(500), 0);
  EXPECT_EQ(clock.indexOf(533), 1);
  EXPECT_EQ(clock.indexOf(667), 5);
  EXPECT_EQ(clock.indexOf(AV_NOPTS_VALUE), 6);
  EXPECT_EQ(clock.indexOf(400), 0) << "none lies before the first";
}

TEST(OutputFile, TakesBackTheNameThatItGave) {
  const std::string path = testing::TempDir() + "nkdraw-withdrawn-" + std::to_string(getpid());
  {
    OutputFile file(path, false);
    file.commit();
    EXPECT_EQ(access(path.c_str(), F_OK), 0);
    file.withdraw();
  }
  EXPECT_NE(access(path.c_str(), F_OK), 0);
}
