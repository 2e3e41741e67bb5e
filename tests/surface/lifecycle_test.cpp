// SPDX-License-Identifier: BSD-2-Clause
//
// References, lock, event, copies and assignments of the surface object.
#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <memory>
#include <thread>
#include <utility>

namespace {

using namespace nkdraw::test;

constexpr std::uint32_t kForever = 0xFFFFFFFF;

/// Runs `work` on another thread and waits for it.
template <class Work>
void elsewhere(Work work) {
  std::thread(work).join();
}

TEST(References, AddRefAndReleaseReturnTheCountWhichStopsAtZero) {
  NKPixel pixel;
  EXPECT_EQ(pixel.AddRef(), 2);
  EXPECT_EQ(pixel.AddRef(), 3);
  EXPECT_EQ(pixel.Refs(), 3);
  EXPECT_EQ(pixel.Release(), 2);
  EXPECT_EQ(pixel.Release(), 1);
  EXPECT_EQ(pixel.Release(), 0);
  EXPECT_EQ(pixel.Release(), 0);
  EXPECT_EQ(pixel.Refs(), 0);
  PixelFields::references(pixel) = -5;
  EXPECT_EQ(pixel.Release(), 0);
}

TEST(References, CountedFromSeveralThreadsAddUp) {
  NKPixel pixel;
  std::thread threads[4];
  for (std::thread& thread : threads) {
    thread = std::thread([&pixel] {
      for (int i = 0; i < 2000; ++i)
        pixel.AddRef();
      for (int i = 0; i < 1000; ++i)
        pixel.Release();
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(pixel.Refs(), 4001);
}

TEST(Lock, TheBoundedFormReturns128WhenTakenAndTheEndlessFormsZero) {
  NKPixel pixel;
  EXPECT_EQ(pixel.Lock(5), 128U);
  EXPECT_EQ(pixel.Lock(1), 128U);  // recursive
  EXPECT_EQ(pixel.Lock(0), 0U);
  EXPECT_EQ(pixel.Lock(kForever), 0U);
  EXPECT_EQ(pixel.TryLock(), 1U);
  for (int i = 0; i < 5; ++i) {
    elsewhere([&pixel] { EXPECT_EQ(pixel.TryLock(), 0U); });
    EXPECT_EQ(pixel.Unlock(), 0U);
  }
  elsewhere([&pixel] {
    EXPECT_EQ(pixel.TryLock(), 1U);
    pixel.Unlock();
  });
}

TEST(Lock, TheBoundedFormGivesUpAfterItsTriesOneMillisecondEach) {
  NKPixel pixel;
  pixel.Lock(0);
  elsewhere([&pixel] {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(pixel.Lock(5), 0U);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(5));
    EXPECT_EQ(pixel.TryLock(), 0U);
  });
  pixel.Unlock();
}

TEST(Lock, ATimeoutOfZeroBlocksUntilTheLockIsFree) {
  for (const std::uint32_t timeout : {0U, kForever}) {
    NKPixel pixel;
    std::atomic<bool> freed = false;
    std::atomic<bool> started = false;
    pixel.Lock(0);
    std::thread waiter([&] {
      started = true;
      EXPECT_EQ(pixel.Lock(timeout), 0U);
      EXPECT_TRUE(freed);
      pixel.Unlock();
    });
    while (!started)
      std::this_thread::yield();
    freed = true;
    pixel.Unlock();
    waiter.join();
  }
}

TEST(Lock, ABoundedWaitTakesTheLockThatIsFreedMeanwhile) {
  NKPixel pixel;
  std::atomic<bool> started = false;
  pixel.Lock(0);
  std::thread waiter([&] {
    started = true;
    EXPECT_EQ(pixel.Lock(1'000'000), 128U);
    pixel.Unlock();
  });
  while (!started)
    std::this_thread::yield();
  pixel.Unlock();
  waiter.join();
}

TEST(ChangeEvent, LetsOneWaiterThroughAndResetsItself) {
  NKPixel pixel;
  EXPECT_EQ(pixel.WaitForChangeEvent(0), 258U);
  pixel.SetChangeEvent();
  pixel.SetChangeEvent();  // already signalled
  EXPECT_EQ(pixel.WaitForChangeEvent(1000), 0U);
  EXPECT_EQ(pixel.WaitForChangeEvent(1), 258U);
}

TEST(ChangeEvent, WakesAWaiterOnAnotherThreadAfterTheStampIsWritten) {
  NKPixel pixel;
  std::thread waiter([&pixel] {
    EXPECT_EQ(pixel.WaitForChangeEvent(kForever), 0U);
    EXPECT_EQ(pixel.LastChange(kForever), 42U);
  });
  pixel.LastChange(42);
  pixel.SetChangeEvent();
  waiter.join();
}

TEST(ChangeEvent, ANullEventIsNotSetAndIsHandedOnToTheWait) {
  NKPixel pixel;
  const nkHandle event = std::exchange(PixelFields::event(pixel), nullptr);
  pixel.SetChangeEvent();
  EXPECT_EQ(pixel.WaitForChangeEvent(0), 0xFFFFFFFF);
  PixelFields::event(pixel) = event;
  EXPECT_EQ(pixel.WaitForChangeEvent(0), 258U);
}

TEST(ChangeEvent, StampAndCountMayBeReadWhileOthersWriteThem) {
  NKPixel surface;
  std::thread writer([&surface] {
    for (std::uint32_t stamp = 1; stamp <= 1000; ++stamp) {
      surface.AddRef();
      surface.LastChange(stamp);
      surface.SetChangeEvent();
    }
  });
  std::uint32_t last = 0;
  while (last < 1000) {
    surface.WaitForChangeEvent(1);
    const std::uint32_t stamp = surface.LastChange(0xFFFFFFFF);
    EXPECT_GE(stamp, last);
    EXPECT_GE(surface.Refs(), 1);
    last = stamp;
  }
  writer.join();
  EXPECT_EQ(surface.Refs(), 1001);
}

TEST(Copy, HasEveryFieldOfItsSourceAndSharesEventAndLock) {
  char byte = 0;
  NKPixel source;
  source.SetCanvas(&byte, -30, 40, 999);
  source.SetColorRGBA(0.1, 0.2, 0.3, 0.4, true);
  source.SetColorRGBA(0.9, 0.8, 0.7, 0.6, false);
  source.SetTransparency(0.5, true);
  source.SetTransparency(0.25, false);
  source.SetTransparency(true);
  source.SetAlphaAdditive(true);
  source.SetYCbCrMode(NKPixel::mode2020Full);
  source.LastChange(77);
  source.AddRef();
  PixelFields::antialiased(source) = true;
  PixelFields::spare(source) = true;
  PixelFields::kind(source) = ptABGR32;
  {
    NKPixel copy(source);
    EXPECT_EQ(copy.PixelType(), ptABGR32);
    EXPECT_EQ(PixelFields::mode(copy), 6);
    EXPECT_EQ(copy.Width(), 40U);
    EXPECT_EQ(copy.Height(), 30U);
    EXPECT_EQ(copy.Pitch(), 999U);
    EXPECT_TRUE(PixelFields::flippedOf(copy));
    EXPECT_EQ(std::memcmp(PixelFields::foreground(copy), PixelFields::foreground(source), 4), 0);
    EXPECT_EQ(std::memcmp(PixelFields::background(copy), PixelFields::background(source), 4), 0);
    EXPECT_EQ(PixelFields::alpha(copy, true), 0.5);
    EXPECT_EQ(PixelFields::alpha(copy, false), 0.25);
    EXPECT_TRUE(copy.GetTransparency());
    EXPECT_TRUE(copy.GetAlphaAdditive());
    EXPECT_EQ(copy.LastChange(kForever), 77U);
    EXPECT_TRUE(PixelFields::antialiased(copy));
    EXPECT_TRUE(PixelFields::spare(copy));
    EXPECT_EQ(copy.Refs(), 2);
    EXPECT_EQ(PixelFields::event(copy), PixelFields::event(source));
    EXPECT_EQ(std::memcmp(&PixelFields::section(copy), &PixelFields::section(source),
                          sizeof(nkCriticalSection)),
              0);
    EXPECT_EQ(copy.GetCanvas(), &byte);

    copy.SetChangeEvent();
    EXPECT_EQ(source.WaitForChangeEvent(0), 0U);
    copy.Lock(0);
    elsewhere([&source] { EXPECT_EQ(source.TryLock(), 0U); });
    copy.Unlock();
    copy.AddRef();
    EXPECT_EQ(copy.Refs(), 3);
    EXPECT_EQ(source.Refs(), 2);
  }
  // The source outlives its copy without harm.
  source.SetChangeEvent();
  source.AddRef();
  source.Lock(5);
}

template <class S>
void copyOutlivesItsSource(pixelType type) {
  auto source = std::make_unique<S>(type);
  source->MoveTo(3, 4);
  source->SetSDLTextColor(0.1, 0.2, 0.3, 0.4);
  auto copy = std::make_unique<S>(*source);
  EXPECT_EQ(copy->PixelType(), source->PixelType());
  EXPECT_EQ(DrawFields::penXOf(*copy), 3);
  EXPECT_EQ(DrawFields::penYOf(*copy), 4);
  EXPECT_EQ(DrawFields::textColor(*copy)[3], 0.4);
  EXPECT_EQ(DrawFields::font(*copy), DrawFields::font(*source));
  EXPECT_EQ(PixelFields::event(*copy), PixelFields::event(*source));
  source.reset();
  copy->SetChangeEvent();
  EXPECT_EQ(copy->AddRef(), 2);
}

TEST(Copy, OfEveryClassMayOutliveItsSource) {
  for (const pixelType type : kLayouts) {
    SCOPED_TRACE(layoutName(type));
    withClassOf(type, [type]<class Class>(Class*) { copyOutlivesItsSource<Class>(type); });
  }
}

TEST(Copy, OfTheYCbCrClassesHasTheirOwnFields) {
  CDrawYCbCr10 group(static_cast<pixelType>(15));
  group.SetColorYCbCr10(1, 2, 3, 0, true);
  group.SetColorYCbCr10(4, 5, 6, 0, false);
  *V210Fields::scales(group)[2] = 5.5;
  CDrawYCbCr10 groupCopy(group);
  EXPECT_EQ(V210Fields::foreground(groupCopy), V210Fields::foreground(group));
  EXPECT_EQ(V210Fields::background(groupCopy), V210Fields::background(group));
  EXPECT_EQ(*V210Fields::scales(groupCopy)[2], 5.5);
  EXPECT_EQ(groupCopy.PixelType(), 15);

  CDrawYCbCrYUYV pair(ptVYUY);
  pair.SetColorYCbCr8(1, 2, 3, 0, true);
  pair.SetColorYCbCr8(4, 5, 6, 0, false);
  *PairFields::scales(pair)[0] = 7.5;
  CDrawYCbCrYUYV pairCopy(pair);
  EXPECT_EQ(PairFields::foreground(pairCopy), PairFields::foreground(pair));
  EXPECT_EQ(PairFields::background(pairCopy), PairFields::background(pair));
  EXPECT_EQ(*PairFields::scales(pairCopy)[0], 7.5);
}

TEST(CopyNKPixel, TakesColoursAndTransparencyAndNothingElse) {
  NKPixel from, to;
  from.SetCanvas(nullptr, 3, 4, 100);
  from.SetColorRGBA(0.1, 0.2, 0.3, 0.4, true);
  from.SetColorRGBA(0.5, 0.6, 0.7, 0.8, false);
  from.SetTransparency(0.5, true);
  from.SetTransparency(0.25, false);
  from.SetTransparency(true);
  from.SetAlphaAdditive(true);
  from.SetYCbCrMode(NKPixel::mode709Full);
  from.LastChange(9);
  from.AddRef();
  PixelFields::kind(from) = ptABGR32;
  to.CopyNKPixel(from);
  EXPECT_EQ(std::memcmp(PixelFields::foreground(to), PixelFields::foreground(from), 4), 0);
  EXPECT_EQ(std::memcmp(PixelFields::background(to), PixelFields::background(from), 4), 0);
  EXPECT_EQ(PixelFields::alpha(to, true), 0.5);
  EXPECT_EQ(PixelFields::alpha(to, false), 0.25);
  EXPECT_TRUE(to.GetTransparency());
  EXPECT_FALSE(to.GetAlphaAdditive());
  EXPECT_EQ(PixelFields::mode(to), 1);
  EXPECT_EQ(to.PixelType(), ptRGBA32);
  EXPECT_EQ(to.Width(), 0U);
  EXPECT_EQ(to.LastChange(kForever), 0U);
  EXPECT_EQ(to.Refs(), 1);
}

TEST(Assignment, OfTwoSurfaceObjectsGivesTheLeftOnesColoursToTheRightOne) {
  NKPixel left, right;
  PixelFields::kind(left) = ptBGRA32;
  PixelFields::kind(right) = ptARGB32;
  left.SetColorRGBA(0.2, 0.4, 0.6, 0.8, true);
  left.SetColorRGBA(1.0, 0.0, 1.0, 0.0, false);
  left.SetTransparency(0.5, true);
  NKPixel& result = (left = right);
  EXPECT_EQ(&result, &right);
  // Through the channels: each packs for its own layout.
  const std::uint8_t ink[] = {204, 51, 102, 153}, paper[] = {0, 255, 0, 255};
  const std::uint8_t leftInk[] = {153, 102, 51, 204};
  EXPECT_EQ(std::memcmp(PixelFields::foreground(right), ink, 4), 0);
  EXPECT_EQ(std::memcmp(PixelFields::background(right), paper, 4), 0);
  EXPECT_EQ(std::memcmp(PixelFields::foreground(left), leftInk, 4), 0);
  EXPECT_EQ(PixelFields::alpha(right, true), 0.0);
}

class ColourLog final : public NKPixel {
 public:
  explicit ColourLog(std::vector<std::pair<char, bool>>* log) : log_(log) {}
  std::uint32_t GetColorRGBA(double& r, double& g, double& b, double& a, bool ink) override {
    log_->emplace_back('g', ink);
    return NKPixel::GetColorRGBA(r, g, b, a, ink);
  }
  std::uint32_t SetColorRGBA(double r, double g, double b, double a, bool ink) override {
    log_->emplace_back('s', ink);
    return NKPixel::SetColorRGBA(r, g, b, a, ink);
  }

 private:
  std::vector<std::pair<char, bool>>* log_;
};

TEST(Assignment, GoesThroughTheTableBackgroundFirst) {
  std::vector<std::pair<char, bool>> log;
  ColourLog left(&log), right(&log);
  static_cast<NKPixel&>(left) = static_cast<NKPixel&>(right);
  const std::vector<std::pair<char, bool>> wanted = {
      {'g', false}, {'s', false}, {'g', true}, {'s', true}};
  EXPECT_EQ(log, wanted);
}

}  // namespace
