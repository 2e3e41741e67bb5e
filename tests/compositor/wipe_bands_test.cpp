// SPDX-License-Identifier: BSD-2-Clause
//
// The four workers of a wipe.
#include <nkdraw/compositor/wipe_bands.h>
#include "wipe_frames_of_noise.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <latch>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace {

using namespace nkdraw::test;
using nkdraw::RunWipeBands;
using nkdraw::WipeTask;
using nkdraw::WipeWait;

/// What the kernels of one call share: their `dst` points to it.
struct Notes {
  std::mutex mutex;
  std::vector<WipeTask> tasks;
  std::atomic<int> timeCritical = 0;
  std::latch mayEnd{1};

  static Notes& of(std::uint8_t* dst) { return *reinterpret_cast<Notes*>(dst); }
  std::uint8_t* asFrame() { return reinterpret_cast<std::uint8_t*>(this); }
};

std::uint32_t noteTask(const WipeTask& task) {
  Notes& notes = Notes::of(task.dst);
  const std::scoped_lock lock(notes.mutex);
  notes.tasks.push_back(task);
  return 7;
}

/// An object that is destroyed with its last owner; `wait` waits for that.
class Lifetime {
 public:
  [[nodiscard]] std::shared_ptr<const void> share() {
    return {this, [](const void* lifetime) {
              static_cast<Lifetime*>(const_cast<void*>(lifetime))->ended_ = true;
            }};
  }
  [[nodiscard]] bool ended() const { return ended_; }
  void wait() const {
    while (!ended_)
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }

 private:
  std::atomic<bool> ended_ = false;
};

/// Runs the kernel in all four quarters and waits until the last ends, however long that takes.
void runToTheEnd(const WipeTask& task, nkdraw::WipeKernel kernel) {
  Lifetime lifetime;
  EXPECT_EQ(RunWipeBands(task, kernel, WipeWait::kBounded, lifetime.share()), 0U);
  lifetime.wait();
}

TEST(WipeBands, AreTheFourQuartersOfTheFrame) {
  std::vector<std::pair<std::uint32_t, std::uint32_t> > sizes = {
      {1920, 1080}, {1919, 1079}, {0xFFFFFFFF, 0xFFFFFFFE}};
  for (std::uint32_t width = 0; width <= 5; ++width) {
    for (std::uint32_t height = 0; height <= 5; ++height)
      sizes.emplace_back(width, height);
  }
  for (const auto& [width, height] : sizes) {
    Notes notes;
    WipeTask task{};
    task.dst = notes.asFrame();
    task.width = width;
    task.height = height;
    task.left = task.right = task.top = task.bottom = 1234;
    runToTheEnd(task, {noteTask});
    const std::uint32_t halfW = width >> 1, halfH = height >> 1;
    std::vector<std::array<std::uint32_t, 4> > wanted = {{0, halfW, 0, halfH},
                                                         {halfW, width, 0, halfH},
                                                         {0, halfW, halfH, height},
                                                         {halfW, width, halfH, height}};
    std::vector<std::array<std::uint32_t, 4> > seen;
    for (const WipeTask& one : notes.tasks)
      seen.push_back({one.left, one.right, one.top, one.bottom});
    std::ranges::sort(wanted);
    std::ranges::sort(seen);
    ASSERT_EQ(wanted, seen) << width << 'x' << height;
  }
}

TEST(WipeBands, PassEveryArgumentOnUnchanged) {
  Notes notes;
  const std::uint8_t a = 0, b = 0;
  const WipeTask task = {
      &a, 11, &b, 12, notes.asFrame(), 13, 0x80000014, -15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25,
      0,  0,  0,  0};
  runToTheEnd(task, {noteTask});
  ASSERT_EQ(notes.tasks.size(), 4U);
  for (const WipeTask& seen : notes.tasks) {
    EXPECT_EQ(seen.srcA, &a);
    EXPECT_EQ(seen.pitchA, 11U);
    EXPECT_EQ(seen.srcB, &b);
    EXPECT_EQ(seen.pitchB, 12U);
    EXPECT_EQ(seen.pitchDst, 13U);
    EXPECT_EQ(seen.wipe, 0x80000014U);
    EXPECT_EQ(seen.pixelType, -15);
    EXPECT_EQ(seen.width, 16U);
    EXPECT_EQ(seen.height, 17U);
    EXPECT_EQ(seen.spare1, 18U);
    EXPECT_EQ(seen.spare2, 19U);
    EXPECT_EQ(seen.spare3, 20U);
    EXPECT_EQ(seen.spare4, 21U);
    EXPECT_EQ(seen.spare5, 22U);
    EXPECT_EQ(seen.rangeStart, 23U);
    EXPECT_EQ(seen.rangeEnd, 24U);
    EXPECT_EQ(seen.position, 25U);
  }
}

/// The level is set after the thread has started, so it may come a little later.
std::uint32_t waitForTimeCritical(const WipeTask& task) {
  for (int i = 0; i < 10000 && nkOSGetThreadPriority(nkOSGetCurrentThread()) != 15; ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  Notes::of(task.dst).timeCritical += nkOSGetThreadPriority(nkOSGetCurrentThread()) == 15 ? 1 : 0;
  return 0;
}

TEST(WipeBands, RunAtTheTimeCriticalPriorityAndLeaveTheCallersAlone) {
  Notes notes;
  WipeTask task{};
  task.dst = notes.asFrame();
  nkOSSetThreadPriority(nkOSGetCurrentThread(), 3);
  runToTheEnd(task, {waitForTimeCritical});
  EXPECT_EQ(notes.timeCritical, 4);
  EXPECT_EQ(nkOSGetThreadPriority(nkOSGetCurrentThread()), 3);
  nkOSSetThreadPriority(nkOSGetCurrentThread(), 0);
}

/// Draws only when the test lets it.
std::uint32_t drawLate(const WipeTask& task) {
  Notes& notes = Notes::of(task.dst);
  notes.mayEnd.wait();
  const std::scoped_lock lock(notes.mutex);
  // The frame is the memory that was handed over.
  auto* const frame = const_cast<std::uint8_t*>(task.srcA);
  frame[(task.left == 0 ? 0 : 1) + (task.top == 0 ? 0 : 2)] = 1;
  return 0;
}

TEST(WipeBands, AreLeftAloneByACallThatCanWaitNoLonger) {
  for (int i = 0; i < 3; ++i) {
    Notes notes;
    Lifetime lifetime;
    std::atomic<int> drawn = 0;
    WipeTask task{};
    task.dst = notes.asFrame();
    task.width = task.height = 8;
    {
      auto* const bytes = new std::uint8_t[4]();
      task.srcA = bytes;
      const auto end = [&drawn, bytes, share = lifetime.share()](const void*) mutable {
        drawn = bytes[0] + bytes[1] + bytes[2] + bytes[3];
        delete[] bytes;
        share.reset();
      };
      EXPECT_EQ(RunWipeBands(task, {drawLate}, WipeWait::kBounded,
                             std::shared_ptr<const void>(bytes, end)),
                0U);
    }
    EXPECT_FALSE(lifetime.ended());
    EXPECT_EQ(drawn, 0);
    notes.mayEnd.count_down();
    lifetime.wait();
    EXPECT_EQ(drawn, 4);
  }
}

std::uint32_t drawSlowly(const WipeTask& task) {
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  Notes& notes = Notes::of(task.dst);
  const std::scoped_lock lock(notes.mutex);
  notes.tasks.push_back(task);
  return 0;
}

TEST(WipeBands, AreWaitedForWhenTheyTakeAWhile) {
  std::size_t drawn = 0;
  // A busy machine may delay threads beyond the whole wait, but not again and again.
  for (int i = 0; i < 20 && drawn != 4; ++i) {
    Notes notes;
    Lifetime lifetime;
    WipeTask task{};
    task.dst = notes.asFrame();
    EXPECT_EQ(RunWipeBands(task, {drawSlowly}, WipeWait::kBounded, lifetime.share()), 0U);
    {
      const std::scoped_lock lock(notes.mutex);
      drawn = notes.tasks.size();
    }
    lifetime.wait();
  }
  EXPECT_EQ(drawn, 4U);
}

TEST(WipeBands, OfCallsAtTheSameTimeDrawTheirOwnFrames) {
  std::vector<std::thread> callers;
  std::atomic<int> equal = 0;
  constexpr int kCallers = 4, kCalls = 20;
  for (int caller = 0; caller < kCallers; ++caller) {
    callers.emplace_back([caller, &equal] {
      Random random(static_cast<std::uint32_t>(caller));
      for (int i = 0; i < kCalls; ++i) {
        const Pattern& pattern = kPatterns[random.word() % std::size(kPatterns)];
        NoiseFrames frames(17, 13, 17 * 4, 17 * 4, random.word() % 1000);
        frames.task.pixelType = ptARGB32;
        frames.task.srcA = frames.a.data();
        frames.task.srcB = frames.b.data();
        frames.setProgress({0, 20, random.word() % 21});
        Frame wanted = frames.dst;
        frames.task.dst = wanted.data();
        drawPattern(pattern, frames.task);
        frames.task.dst = frames.dst.data();
        runToTheEnd(frames.task, pattern.kernel);
        equal += wanted.all() == frames.dst.all() ? 1 : 0;
      }
    });
  }
  for (std::thread& caller : callers)
    caller.join();
  EXPECT_EQ(equal, kCallers * kCalls);
}

/// A drawing of rows that stops in the middle of its first ones.
struct StoppedRows {
  std::latch begun{1}, mayEnd{1};
  std::atomic<bool> ended = false;
};

TEST(WipeRows, AreNotTouchedOnceTheirQueueIsStopped) {
  StoppedRows stopped;
  WipeTask task{};
  task.dst = reinterpret_cast<std::uint8_t*>(&stopped);
  task.bottom = 1000;
  nkdraw::RowQueue queue(task, [](const WipeTask& of, nkdraw::RowQueue& rows) {
    auto& notes = *reinterpret_cast<StoppedRows*>(of.dst);
    if (rows.claim().empty())
      return;
    notes.begun.count_down();
    notes.mayEnd.wait();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    notes.ended = true;
  });
  std::thread worker([&] { queue.draw(); });
  stopped.begun.wait();
  stopped.mayEnd.count_down();
  queue.stop();
  EXPECT_TRUE(stopped.ended) << "the thread that had claimed rows was not waited for";
  stopped.ended = false;
  queue.draw();
  EXPECT_FALSE(stopped.ended) << "a thread that came late found rows";
  worker.join();
}

}  // namespace
