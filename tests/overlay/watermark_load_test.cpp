// SPDX-License-Identifier: BSD-2-Clause
//
// How a watermark is read, and what it is converted to.
#include "exposed_overlay.h"
#include "noted_reader.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace nkdraw::test;

constexpr std::uint32_t kRgb = 0, k8 = 0x32767579, k10 = 0x76323130, kOther = 0x30313276;
constexpr char kPath[] = "/pictures/logo.png";

class WatermarkLoad : public testing::Test {
 protected:
  WatermarkLoad() {
    notedReader = NotedReader();
    usePicture(7, 5, 11);
    overlay_.SetWatermarkPath(kPath);
  }
  ~WatermarkLoad() override { EXPECT_EQ(notedReader.frames, 0); }

  void load(std::uint32_t layout) {
    notedReader.calls.clear();
    overlay_.frameLayout = layout;
    EXPECT_EQ(overlay_.LoadWatermark(), 0U);
  }
  void expectNoPicture(const Overlay& overlay) const {
    EXPECT_EQ(overlay.watermarkRGBA, nullptr);
    EXPECT_EQ(overlay.watermark8, nullptr);
    EXPECT_EQ(overlay.watermark10, nullptr);
  }

  Overlay overlay_;
};

const Calls kLookUps = {"load clipIO.dll 2", "find ciOpen", "find ciGetFileInfo",
                        "find ciReadFrameUnc", "find ciClose"};
const std::string kOpenCall = "open /pictures/logo.png 80000000 1 0 3 0 20000";

Calls after(Calls calls, const Calls& more) {
  calls.insert(calls.end(), more.begin(), more.end());
  return calls;
}

TEST_F(WatermarkLoad, AsksItsServicesInOrder) {
  for (const std::uint32_t layout : {kRgb, k8, k10, kOther}) {
    load(layout);
    EXPECT_EQ(notedReader.calls,
              after(kLookUps, {kOpenCall, "info file 1 0 empty 0 0", "read file 0 1 1 1 null 0 0",
                               "frame 10 bytes 140 2120", "read file 0 1 1 1 frame 0 0",
                               "frame 11 0 0", "close file", "unload module"}));
    EXPECT_EQ(notedReader.path, kPath);
    EXPECT_EQ(overlay_.watermarkWidth, 7U);
    EXPECT_EQ(overlay_.watermarkHeight, 5U);
    EXPECT_EQ(overlay_.watermarkLayout, layout);
    EXPECT_EQ(notedReader.messages, Calls{});
  }
}

TEST_F(WatermarkLoad, WithoutAPathAsksForNothing) {
  for (const char* const path : {static_cast<const char*>(nullptr), ""}) {
    overlay_.SetWatermarkPath(path);
    overlay_.watermarkLayout = 77;
    load(k8);
    EXPECT_EQ(notedReader.calls, Calls{});
    EXPECT_EQ(notedReader.messages, Calls{});
    EXPECT_EQ(overlay_.watermarkLayout, 77U);
    expectNoPicture(overlay_);
  }
}

TEST_F(WatermarkLoad, OfAFileThatCanNotBeOpenedTellsTheLogAndLeavesTheModuleLoaded) {
  notedReader.opens = false;
  overlay_.watermarkLayout = 77;
  load(k8);
  EXPECT_EQ(notedReader.calls, after(kLookUps, {kOpenCall}));
  char message[64];
  std::snprintf(message, sizeof message, "Error: Unable to load watermark file <%d> ",
                static_cast<int>(reinterpret_cast<std::intptr_t>(kPath)));
  EXPECT_EQ(notedReader.messages, Calls{message});
  EXPECT_EQ(notedReader.loadedModules, 1);
  EXPECT_EQ(overlay_.watermarkLayout, 77U);
  EXPECT_EQ(overlay_.WatermarkX, 400);
  expectNoPicture(overlay_);
}

TEST_F(WatermarkLoad, WithoutAReaderIsLikeAFileThatCanNotBeOpened) {
  notedReader.hasModule = false;
  load(k8);
  EXPECT_EQ(notedReader.messages.size(), 1U);
  notedReader.hasModule = true;
  for (const char* const symbol : {"ciOpen", "ciGetFileInfo", "ciReadFrameUnc", "ciClose"}) {
    notedReader.messages.clear();
    notedReader.missingSymbol = symbol;
    load(k8);
    EXPECT_EQ(notedReader.messages.size(), 1U) << symbol;
    EXPECT_EQ(notedReader.calls, kLookUps);
    expectNoPicture(overlay_);
  }
}

TEST_F(WatermarkLoad, WithoutFrameMemoryClosesAndHasNoPicture) {
  notedReader.hasMemory = false;
  for (const std::uint32_t layout : {kRgb, k8, k10}) {
    overlay_.WatermarkX = 401;
    load(layout);
    EXPECT_EQ(notedReader.calls,
              after(kLookUps, {kOpenCall, "info file 1 0 empty 0 0", "read file 0 1 1 1 null 0 0",
                               "frame 10 bytes 140 2120", "close file", "unload module"}));
    EXPECT_EQ(overlay_.watermarkLayout, layout);
    EXPECT_EQ(overlay_.WatermarkX, 401);
    expectNoPicture(overlay_);
    EXPECT_EQ(notedReader.messages, Calls{});
  }
}

TEST_F(WatermarkLoad, OfAFrameTooSmallForItsPictureHasNone) {
  notedReader.tooFewBytes = 1;
  for (const std::uint32_t layout : {kRgb, k8, k10}) {
    load(layout);
    EXPECT_EQ(notedReader.calls.back(), "unload module");
    expectNoPicture(overlay_);
  }
  notedReader.tooFewBytes = 0;
  for (const auto& [width, height] : {std::pair{0, 5}, {7, 0}, {-7, 5}, {7, -5}, {-7, -5}}) {
    notedReader.width = width;
    notedReader.height = height;
    load(kRgb);
    expectNoPicture(overlay_);
  }
}

TEST_F(WatermarkLoad, OfAPictureThatTheReaderDoesNotFillIsClear) {
  notedReader.reads = false;
  load(kRgb);
  ASSERT_NE(overlay_.watermarkRGBA, nullptr);
  for (int i = 0; i < 7 * 5 * 4; ++i)
    ASSERT_EQ(overlay_.watermarkRGBA[i], 0);
}

/// The samples of the form that a layout has, if any.
std::vector<std::uint8_t> samples(const Overlay& o, std::size_t pixels) {
  const auto bytesFrom = [](const auto* from, std::size_t count) {
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(from);
    return std::vector<std::uint8_t>(bytes, bytes + count * sizeof *from);
  };
  return o.watermarkRGBA != nullptr
             ? bytesFrom(static_cast<const std::uint8_t*>(o.watermarkRGBA), pixels * 4)
         : o.watermark8 != nullptr
             ? bytesFrom(static_cast<const std::uint8_t*>(o.watermark8), pixels * 5)
         : o.watermark10 != nullptr
             ? bytesFrom(static_cast<const std::uint32_t*>(o.watermark10), pixels * 5)
             : std::vector<std::uint8_t>();
}

TEST_F(WatermarkLoad, ThatFailsLeavesTheEarlierPicture) {
  constexpr std::size_t kFilled = 7 / 2 * 5;  // pairs that every form fills
  for (const std::uint32_t layout : {kRgb, k8, k10}) {
    usePicture(7, 5, 11);
    load(layout);
    const auto before = samples(overlay_, kFilled);
    ASSERT_FALSE(before.empty());
    usePicture(70, 50, 1);
    for (const bool opens : {false, true}) {
      notedReader.opens = opens;
      notedReader.hasMemory = false;
      load(layout);
      EXPECT_EQ(samples(overlay_, kFilled), before);
      EXPECT_EQ(overlay_.watermarkWidth, opens ? 70U : 7U);
      EXPECT_EQ(overlay_.watermarkHeight, opens ? 50U : 5U);
    }
    notedReader.hasMemory = true;
    notedReader.tooFewBytes = 1;
    load(layout);
    EXPECT_EQ(samples(overlay_, kFilled), before);
    notedReader.tooFewBytes = 0;
    // It may not be read beyond its end, whatever size there is now.
    for (const std::uint32_t width : {70U, 3U, 1U, 36U, 0U, 0x80000000U}) {
      overlay_.watermarkWidth = width;
      overlay_.video.biWidth = 80;
      overlay_.video.biHeight = 60;
      BurnFrame frame(1, 96, 60);
      overlay_.WatermarkX = overlay_.WatermarkY = 0;
      EXPECT_EQ(overlay_.ApplyWatermark(&frame.record), 0U);
    }
  }
}

TEST_F(WatermarkLoad, WithoutRoomForThePictureLeavesTheEarlierOne) {
  for (const std::uint32_t layout : {kRgb, k8, k10}) {
    usePicture(7, 5, 11);
    load(layout);
    const auto before = samples(overlay_, 7 / 2 * 5);
    ASSERT_FALSE(before.empty());
    usePicture(70, 50, 1);
    notedReader.hasPictureRoom = false;
    load(layout);
    notedReader.hasPictureRoom = true;
    EXPECT_EQ(samples(overlay_, 7 / 2 * 5), before);
  }
}

TEST_F(WatermarkLoad, FreesTheFrameBeforeTheSurfaceOnIt) {
  for (const std::uint32_t layout : {kRgb, k8, k10, kOther}) {
    load(layout);
    EXPECT_EQ(notedReader.surfacesWhenFreed, 1);
    EXPECT_EQ(notedReader.surfaces, 0);
  }
}

TEST_F(WatermarkLoad, MakesThePlaceEvenWheneverThereIsAFrameToConvert) {
  notedReader.tooFewBytes = 1;
  for (const std::uint32_t layout : {k8, k10}) {
    overlay_.WatermarkX = 401;
    load(layout);
    EXPECT_EQ(overlay_.WatermarkX, 400);
  }
}

TEST_F(WatermarkLoad, KeepsOneFormAtMost) {
  for (const std::uint32_t layout : {kRgb, k8, k10, kRgb, kOther, k10, k8}) {
    load(layout);
    EXPECT_EQ(overlay_.watermarkRGBA != nullptr, layout == kRgb);
    EXPECT_EQ(overlay_.watermark8 != nullptr, layout == k8);
    EXPECT_EQ(overlay_.watermark10 != nullptr, layout == k10);
  }
}

TEST_F(WatermarkLoad, MakesThePlaceEvenForPairsOfPixelsAlone) {
  const struct {
    std::uint32_t layout;
    std::int32_t before, after;
  } kRows[] = {{kRgb, 401, 401}, {kOther, 401, 401}, {k8, 401, 400}, {k8, 402, 402},
               {k8, -1, -2},     {k10, 401, 400},    {k10, -3, -4},  {k10, 0, 0}};
  for (const auto& row : kRows) {
    overlay_.WatermarkX = row.before;
    overlay_.WatermarkY = 401;
    load(row.layout);
    EXPECT_EQ(overlay_.WatermarkX, row.after);
    EXPECT_EQ(overlay_.WatermarkY, 401);
  }
}

/// Calls `look` with a surface on the picture, for pictures of every small size.
template <class Look>
void forSizes(Look look) {
  for (int width = 1; width <= 9; ++width) {
    for (int height = 1; height <= 3; ++height) {
      usePicture(width, height, static_cast<std::uint32_t>(width * 10 + height));
      NKDraw* surface = nullptr;
      ASSERT_EQ(GetDraw(ptBGRA32, width, height, width * 4,
                        reinterpret_cast<char*>(notedReader.picture.data()), surface),
                0U);
      look(*surface, width, height);
      ReleaseDraw(surface);
    }
  }
}

TEST_F(WatermarkLoad, ForRgbKeepsTheBytes) {
  forSizes([&](NKDraw&, int width, int height) {
    load(kRgb);
    ASSERT_NE(overlay_.watermarkRGBA, nullptr);
    EXPECT_EQ(std::memcmp(overlay_.watermarkRGBA, notedReader.picture.data(),
                          static_cast<std::size_t>(width * height * 4)),
              0);
  });
}

TEST_F(WatermarkLoad, ForEightBitsReadsEveryPairFromItsEvenPixel) {
  forSizes([&](NKDraw& picture, int width, int height) {
    load(k8);
    ASSERT_NE(overlay_.watermark8, nullptr);
    const std::uint8_t* group = overlay_.watermark8;
    for (int row = 0; row < height; ++row) {
      for (int i = 0; i < width / 2; ++i, group += 5) {
        std::uint8_t y, cb, cr, alpha;
        picture.GetPixelYCbCr8(2 * i, row, y, cb, cr, alpha);
        const std::uint8_t wanted[5] = {y, cb, y, cr, alpha};
        ASSERT_EQ(std::memcmp(group, wanted, 5), 0) << width << "x" << height;
      }
    }
  });
}

TEST_F(WatermarkLoad, ForTenBitsReadsBothPixelsAndChromaAndAlphaFromTheOddOne) {
  forSizes([&](NKDraw& picture, int width, int height) {
    load(k10);
    ASSERT_NE(overlay_.watermark10, nullptr);
    const std::uint32_t* group = overlay_.watermark10;
    for (int row = 0; row < height; ++row) {
      for (int x = 0; x < width; x += 2, group += 5) {
        std::uint32_t even, odd, cb, cr, alpha;
        picture.GetPixelYCbCr10(x, row, even, cb, cr, alpha);
        // Behind the row comes the next one; behind the picture its last pixel again.
        const int next = std::min(row * width + x + 1, width * height - 1);
        picture.GetPixelYCbCr10(next % width, next / width, odd, cb, cr, alpha);
        const std::uint32_t wanted[5] = {even, cb, odd, cr, alpha};
        ASSERT_EQ(std::memcmp(group, wanted, sizeof wanted), 0) << width << "x" << height;
      }
    }
  });
}

TEST_F(WatermarkLoad, HappensInCreateWhenTheWatermarkIsEnabled) {
  const HZWVIDEO video = videoOf(kStreams[0], 32, 16);
  const HZWSYSTEM system{};
  overlay_.Create(&video, &system);
  EXPECT_EQ(notedReader.calls, Calls{});
  overlay_.WatermarkEnable = 1;
  EXPECT_EQ(notedReader.calls, Calls{});
  BurnFrame frame(1, 32, 16);
  overlay_.Enabled = 1;
  overlay_.BurnIn(&frame.record, nullptr, nullptr, 0);
  EXPECT_EQ(notedReader.calls, Calls{});
  EXPECT_TRUE(frame.frame.untouched());
  overlay_.Create(&video, &system);
  EXPECT_EQ(notedReader.calls.size(), 13U);
  EXPECT_NE(overlay_.watermarkRGBA, nullptr);
  EXPECT_EQ(overlay_.watermarkLayout, 0U);
}

TEST_F(WatermarkLoad, GivesThePictureToCopiesAndTheLastFreesIt) {
  for (const std::uint32_t layout : {kRgb, k8, k10}) {
    auto source = std::make_unique<Overlay>();
    source->SetWatermarkPath(kPath);
    source->frameLayout = layout;
    source->LoadWatermark();
    auto copy = std::make_unique<Overlay>(*source);
    Overlay assigned;
    assigned = *source;
    EXPECT_EQ(static_cast<std::uint8_t*>(copy->watermarkRGBA),
              static_cast<std::uint8_t*>(source->watermarkRGBA));
    source->LoadWatermark();  // a picture of its own
    copy->video = videoOf(kStreams[0], 64, 32);
    copy->WatermarkX = copy->WatermarkY = 0;
    source.reset();
    BurnFrame frame(1, 64, 32);
    copy->ApplyWatermark(&frame.record);
    EXPECT_FALSE(frame.frame.untouched());
    copy.reset();
    EXPECT_EQ(assigned.watermarkWidth, 7U);
  }
}

}  // namespace
