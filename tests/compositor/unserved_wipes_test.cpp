// SPDX-License-Identifier: BSD-2-Clause
//
// Wipes whose host refuses threads, by a null handle or by an exception, or memory.
#include "own_services.h"
#include "wipe_calls.h"
#include "wipe_frames_of_noise.h"

#include <tests/host/failing_new.h>

#include <string>
#include <vector>

namespace {

using namespace nkdraw::test;
using nkdraw::WipeTask;

std::uint32_t mux(const WipeTask& t) {
  return NKDraw_DisplayMuxRGBA(const_cast<std::uint8_t*>(t.srcA), 0,
                               const_cast<std::uint8_t*>(t.srcB), 0, t.dst, 0, NKMuxWipe, t.wipe,
                               t.position, 0, 0, 0, 0, 0, 0, t.width, t.height, t.pitchB);
}
std::uint32_t completeMux(const WipeTask& t) {
  const NKMux call = {const_cast<std::uint8_t*>(t.srcA),
                      0,
                      const_cast<std::uint8_t*>(t.srcB),
                      0,
                      t.dst,
                      NKMuxWipe,
                      t.wipe,
                      t.position,
                      0,
                      0,
                      0,
                      0,
                      0,
                      0,
                      t.width,
                      t.height,
                      t.pitchB};
  return NKDraw_CompleteMux(&call);
}

struct Ways {
  const char* name;
  std::uint32_t pixelBytes;
  std::int32_t pixelType;
  std::uint32_t (*bounded)(const WipeTask&);
  std::uint32_t (*complete)(const WipeTask&);
};

constexpr Ways kWays[] = {
    {"Plain", 4, ptRGBA32, [](const WipeTask& t) { return call(NKDraw_DisplayWipe, t); },
     callComplete},
    {"YCbCr", 2, ptUYVY, [](const WipeTask& t) { return call(NKDraw_DisplayWipeYCbCr, t); },
     callComplete},
    {"V210", 3, ptV210, [](const WipeTask& t) { return call(NKDraw_DisplayWipeV210, t); },
     callComplete},
    {"Mux", 4, ptRGBA32, mux, completeMux},
};

class UnservedWipes : public testing::TestWithParam<Ways> {
 protected:
  static constexpr std::uint32_t kWidth = 15, kHeight = 5, kPitch = 128;

  UnservedWipes() {
    resetHost();
    frames.setProgress({0, NKMuxWhole, NKMuxWhole / 3});
    frames.task.pitchDst = kPitch;
    frames.task.pixelType = GetParam().pixelType;
    frames.task.srcA = frames.a.data();
    frames.task.srcB = frames.b.data();
    nkOSSetThreadPriority(nkOSGetCurrentThread(), 3);
  }
  ~UnservedWipes() override { nkOSSetThreadPriority(nkOSGetCurrentThread(), 0); }

  /// The contents of a buffer of noise after a call.
  std::vector<std::uint8_t> drawn(std::uint32_t (*way)(const WipeTask&)) {
    Frame dst(frames.dst.bytes().size(), 77);
    frames.task.dst = dst.data();
    EXPECT_EQ(way(frames.task), 0U);
    EXPECT_TRUE(dst.guardsIntact());
    EXPECT_EQ(nkOSGetThreadPriority(nkOSGetCurrentThread()), 3);
    return dst.all();
  }
  std::vector<std::uint8_t> untouched() { return Frame(frames.dst.bytes().size(), 77).all(); }

  NoiseFrames frames{kWidth, kHeight, kPitch, kPitch, 1};
};

TEST_P(UnservedWipes, LetNoExceptionOutOfABoundedCall) {
  frames.task.wipe = NKWipeBoxIn;
  for (int thread = 0; thread < 4; ++thread) {
    resetHost();
    host->refusedThread = thread;
    const auto refused = drawn(GetParam().bounded);
    resetHost();
    host->throwingThread = thread;
    const auto thrown = drawn(GetParam().bounded);
    const bool tells = GetParam().bounded == kWays[1].bounded;  // and leaves the frame alone
    EXPECT_EQ(thrown, tells ? untouched() : refused) << thread;
    EXPECT_EQ(host->count("log Exception Error NKDraw_DisplayWipeYCbCr"), tells ? 1 : 0);
    EXPECT_EQ(host->count("alloc 3747"), host->count("free"));
    EXPECT_EQ(host->threads, 4);
  }
}

TEST_P(UnservedWipes, AreCompleteWhenTheyAreAskedToBe) {
  for (const std::uint32_t wipe : kNumbersOfEveryKind) {
    frames.task.wipe = wipe;
    resetHost();
    const auto wanted = drawn(GetParam().bounded);
    EXPECT_EQ(drawn(GetParam().complete), wanted) << wipe;
    for (int thread = 0; thread < 4; ++thread) {
      resetHost();
      host->refusedThread = thread;
      host->throwingThread = (thread + 1) % 4;
      EXPECT_EQ(drawn(GetParam().complete), wanted) << wipe << ' ' << thread;
      EXPECT_EQ(host->count("count in"), 4);
      EXPECT_EQ(host->count("count out"), 4);
      EXPECT_EQ(host->count("log Exception Error NKDraw_DisplayWipeYCbCr"), 0);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Entries, UnservedWipes, testing::ValuesIn(kWays),
                         [](const auto& way) { return std::string(way.param.name); });

TEST(CompleteWipe, IsDrawnByTheCallerWithoutMemoryForWorkers) {
  resetHost();
  for (const std::uint32_t wipe : kNumbersOfEveryKind) {
    NoiseFrames frames(7, 5, 28, 28, 1);
    frames.task.pixelType = ptBGRA32;
    frames.task.wipe = wipe;
    frames.setProgress({0, 4, 3});
    frames.expectTheSame(drawNumber, [](const WipeTask& task) {
      const FailingNew none(0);
      EXPECT_EQ(callComplete(task), 0U);
    });
  }
  EXPECT_EQ(host->threads, 0);
}

TEST(CompleteWipe, OfAPackedFrameNeedsMemory) {
  resetHost();
  host->hasMemory = false;
  for (const std::int32_t type : {ptYUYV, ptUYVY, ptYVYU, ptVYUY, ptV210}) {
    NoiseFrames frames(7, 3, 128, 128, 1);
    frames.task.pixelType = type;
    frames.task.wipe = NKWipeEdgeHorz;
    frames.setProgress({0, 4, 3});
    frames.expectTheSame([](const WipeTask&) {},
                         [](const WipeTask& task) { EXPECT_EQ(callComplete(task), 0xFFFFFFFF); });
  }
}

}  // namespace
