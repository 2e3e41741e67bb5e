// SPDX-License-Identifier: BSD-2-Clause
//
// The calls of the wipes to their host, and their behaviour when it fails.
#include "own_services.h"
#include "wipe_calls.h"
#include "wipe_frames_of_noise.h"

#include <nkdraw/compositor/wipe_bands.h>
#include <nkdraw/nkdraw_c.h>

#include <algorithm>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace {

using namespace nkdraw::test;
using nkdraw::WipeTask;
using nkdraw::WipeWait;
using Calls = std::vector<std::string>;
void displayWipe(const WipeTask& task) {
  EXPECT_EQ(call(NKDraw_DisplayWipe, task), 0U);
}

/// This host runs threads at once.
const Calls kFourThreads = {"count in",     "create 0 gzqk", "count out",    "priority 0 15",
                            "count in",     "create 1 gzqk", "count out",    "priority 1 15",
                            "count in",     "create 2 gzqk", "count out",    "priority 2 15",
                            "count in",     "create 3 gzqk", "count out",    "priority 3 15",
                            "close 0 gzqk", "close 1 gzqk",  "close 2 gzqk", "close 3 gzqk"};

Calls joined(const std::vector<Calls>& parts) {
  Calls all;
  for (const Calls& part : parts)
    all.insert(all.end(), part.begin(), part.end());
  return all;
}

class WipeServices : public testing::Test {
 protected:
  WipeServices() { resetHost(); }
};

TEST_F(WipeServices, DisplayWipeFollowsTheRulesForEveryNumberLayoutAndPitch) {
  Random random(1);
  for (const std::uint32_t number : kNumbersOfEveryKind) {
    for (const Layout& layout : kLayouts) {
      if (layout.part == Part::kFloat && number % 516 == 0)
        continue;  // noise makes no comparable floats
      for (int i = 0; i < 16; ++i) {
        host->threads = 0;
        NoiseFrames frames = anyFrames(random, layout.bytes);
        frames.task.pixelType = layout.type;
        frames.task.wipe = number | random.word() % 4 / 3 << 31;
        frames.task.spare1 = frames.task.spare3 = frames.task.spare5 = random.word();
        frames.setProgress(anyProgress(random));
        ASSERT_NO_FATAL_FAILURE(frames.expectTheSame(drawNumber, displayWipe));
      }
    }
  }
}

TEST_F(WipeServices, AWipeCountsStartsAndRaisesFourThreadsAndThenClosesThem) {
  NoiseFrames frames(4, 4, 16, 16, 1);
  frames.task.pixelType = ptBGRA32;
  frames.task.wipe = 1;
  frames.setProgress({0, 4, 2});
  frames.task.srcA = frames.a.data();
  frames.task.srcB = frames.b.data();
  frames.task.dst = frames.dst.data();
  displayWipe(frames.task);
  EXPECT_EQ(host->calls, kFourThreads);
}

TEST_F(WipeServices, AQuarterWhoseThreadCannotStartStaysAsItWas) {
  for (int refused = 0; refused < 4; ++refused) {
    resetHost();
    host->refusedThread = refused;
    NoiseFrames frames(7, 5, 28, 28, 1);
    frames.task.pixelType = ptBGRA32;
    frames.task.wipe = 8;
    frames.setProgress({0, 4, 2});
    const auto threeQuarters = [&](WipeTask task) {
      for (int i = 0; i < 4; ++i) {
        task.left = i % 2 == 0 ? 0 : 3;
        task.right = i % 2 == 0 ? 3 : 7;
        task.top = i / 2 == 0 ? 0 : 2;
        task.bottom = i / 2 == 0 ? 2 : 5;
        if (i != refused)
          drawNumber(task);
      }
    };
    frames.expectTheSame(threeQuarters, displayWipe);
    EXPECT_EQ(host->count("priority null 15"), 1);
    EXPECT_EQ(host->count("close null gzqk"), 1);
  }
}

TEST_F(WipeServices, AThreadEndsWithTheResultOfItsKernel) {
  EXPECT_EQ(nkdraw::RunWipeBands({}, {[](const WipeTask&) { return 7U; }}, WipeWait::kBounded), 0U);
  EXPECT_EQ(host->result, 7U);
}

TEST_F(WipeServices, AThreadThatCannotStartKeepsNoShareOfTheMemory) {
  host->refusedThread = 2;
  auto memory = std::make_shared<const int>(0);
  EXPECT_EQ(nkdraw::RunWipeBands({}, nkdraw::WipeEdgeHorz, WipeWait::kBounded, memory), 0U);
  EXPECT_EQ(memory.use_count(), 1);
}

TEST_F(WipeServices, ThreadsThatRunAfterTheReturnDrawOn) {
  NoiseFrames frames(6, 6, 24, 24, 1);
  frames.task.pixelType = ptBGRA32;
  frames.task.wipe = 41;
  frames.setProgress({0, 4, 3});
  const auto lateWipe = [](const WipeTask& task) {
    const std::vector<std::uint8_t> before(task.dst, task.dst + 144);
    displayWipe(task);
    EXPECT_TRUE(std::ranges::equal(before, std::span(task.dst, 144)));
    host->runHeld();
  };
  host->holdsThreads = true;
  frames.expectTheSame(drawNumber, lateWipe);
}

// --- packed frames ----------------------------------------------------------------------------

struct PackedEntry {
  const char* name;
  Entry entry;
};

class PackedWipeServices : public testing::TestWithParam<PackedEntry> {
 protected:
  PackedWipeServices() {
    resetHost();
    frames.task.wipe = 1;
    frames.setProgress({0, 4, 2});
    frames.task.pitchDst = kPitch;
    frames.task.srcA = frames.a.data();
    frames.task.srcB = frames.b.data();
    frames.task.dst = frames.dst.data();
    nkOSSetThreadPriority(nkOSGetCurrentThread(), 3);
    host->calls.clear();
  }
  ~PackedWipeServices() override { nkOSSetThreadPriority(nkOSGetCurrentThread(), 0); }

  std::uint32_t run() { return call(GetParam().entry, frames.task); }
  static int level() { return nkOSGetThreadPriority(nkOSGetCurrentThread()); }

  static constexpr std::uint32_t kPitch = 128;
  NoiseFrames frames{7, 3, kPitch, kPitch, 1};
};

TEST_P(PackedWipeServices, TakeOneBlockAndRaiseThePriorityUntilItIsFreed) {
  EXPECT_EQ(run(), 0U);
  EXPECT_EQ(host->calls, joined({{"self 15", "alloc " + std::to_string(9 * 21 + 3072)},
                                 kFourThreads,
                                 {"free", "self 3"}}));
  EXPECT_EQ(level(), 3);
  EXPECT_FALSE(frames.dst.untouched());
}

TEST_P(PackedWipeServices, StartTheirThreadsForNoRowsToo) {
  frames.task.height = 0;
  EXPECT_EQ(run(), 0U);
  EXPECT_EQ(host->calls, joined({{"self 15", "alloc 3072"}, kFourThreads, {"free", "self 3"}}));
  EXPECT_TRUE(frames.dst.untouched());
}

TEST_P(PackedWipeServices, SayWhenThereIsNoMemory) {
  host->hasMemory = false;
  EXPECT_EQ(run(), 0xFFFFFFFFU);
  EXPECT_EQ(host->calls,
            (Calls{"self 15", "alloc 3261", "log No Memory NKDraw_DisplayWipeYCbCr", "self 3"}));
  EXPECT_EQ(level(), 3);
  EXPECT_TRUE(frames.dst.untouched());
}

TEST_P(PackedWipeServices, HaveNoMemoryForABlockBeyond32Bits) {
  frames.task.width = 40000;
  frames.task.height = 20000;
  EXPECT_EQ(run(), 0xFFFFFFFFU);
  EXPECT_EQ(host->calls, (Calls{"self 15", "log No Memory NKDraw_DisplayWipeYCbCr", "self 3"}));
  EXPECT_TRUE(frames.dst.untouched());
}

TEST_P(PackedWipeServices, LeaveThePriorityRaisedWhenTheAllocationThrows) {
  host->memoryThrows = true;
  EXPECT_EQ(run(), 0xFFFFFFFFU);
  EXPECT_EQ(host->calls, (Calls{"self 15", "alloc 3261"}));
  EXPECT_EQ(level(), 15);
  EXPECT_TRUE(frames.dst.untouched());
}

TEST_P(PackedWipeServices, FreeTheBlockBeforeTheReturnWhenTheLastThreadHasDrawn) {
  host->stopsLastThread = true;
  EXPECT_EQ(run(), 0U);
  EXPECT_EQ(host->count("free"), 1);
  host->letLastThreadEnd();
  EXPECT_EQ(host->count("free"), 1);
}

TEST_P(PackedWipeServices, KeepTheBlockForThreadsThatRunAfterTheReturn) {
  host->holdsThreads = true;
  EXPECT_EQ(run(), 0U);
  EXPECT_EQ(host->count("free"), 0);
  EXPECT_EQ(level(), 3);
  host->runHeld();
  EXPECT_EQ(host->count("free"), 1);
}

TEST_P(PackedWipeServices, FreeTheBlockWhenAThreadCannotStart) {
  host->refusedThread = 1;
  EXPECT_EQ(run(), 0U);
  EXPECT_EQ(host->count("free"), 1);
}

INSTANTIATE_TEST_SUITE_P(Entries, PackedWipeServices,
                         testing::Values(PackedEntry{"YCbCr", NKDraw_DisplayWipeYCbCr},
                                         PackedEntry{"V210", NKDraw_DisplayWipeV210}),
                         [](const auto& entry) { return std::string(entry.param.name); });

class YCbCrWipeServices : public PackedWipeServices {};

TEST_P(YCbCrWipeServices, SayWhenAServiceThrowsAndGiveEverythingBack) {
  for (int thread = 0; thread < 4; ++thread) {
    resetHost();
    host->throwingThread = thread;
    EXPECT_EQ(run(), 0U);
    EXPECT_EQ(host->count("log Exception Error NKDraw_DisplayWipeYCbCr"), 1);
    EXPECT_EQ(host->count("free"), 1);
    EXPECT_EQ(level(), 3);
    EXPECT_TRUE(frames.dst.untouched());
  }
}

TEST_P(YCbCrWipeServices, LeaveTheOutputAloneWhateverServiceOfAWorkerThrows) {
  for (const char* const call :
       {"priority 0 15", "priority 1 15", "priority 3 15", "close 0 gzqk", "close 3 gzqk"}) {
    resetHost();
    host->throwingCall = call;
    EXPECT_EQ(run(), 0U);
    EXPECT_EQ(host->count(call), 1);
    EXPECT_EQ(host->count("log Exception Error NKDraw_DisplayWipeYCbCr"), 1);
    EXPECT_EQ(host->count("free"), 1);
    EXPECT_EQ(level(), 3);
    EXPECT_TRUE(frames.dst.untouched()) << call;
  }
}

INSTANTIATE_TEST_SUITE_P(Entry, YCbCrWipeServices,
                         testing::Values(PackedEntry{"YCbCr", NKDraw_DisplayWipeYCbCr}),
                         [](const auto& entry) { return std::string(entry.param.name); });

}  // namespace
