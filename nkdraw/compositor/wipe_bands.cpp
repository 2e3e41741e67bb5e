// SPDX-License-Identifier: BSD-2-Clause
//
// The four workers of a wipe, and the wait for them.
#include "wipe_bands.h"

#include <nkdraw/constants.h>
#include <nkdraw/try_make_shared.h>

#include <array>
#include <atomic>
#include <chrono>
#include <optional>
#include <semaphore>
#include <span>
#include <utility>

namespace nkdraw {
namespace {

constexpr std::size_t kBands = kWipeWorkers;
constexpr int kPauses = 50;
constexpr std::chrono::milliseconds kPause{2};
constexpr const char* kThreadTag = "gzqk";

/// What the caller and the workers of one call share; it ends with the last of them.
struct WipeCall {
  std::uint32_t pending = 0;
  /// Ends the caller's pause. A worker raises it at most once, when it is the last of those
  /// started.
  std::counting_semaphore<kBands> finished{0};
  std::optional<RowQueue> rows;  ///< that the workers draw instead of their quarters

  struct Worker {
    WipeBand band;
    bool hasWork = true;
    std::shared_ptr<WipeCall> call;      ///< the worker's own share, taken when it starts
    std::shared_ptr<const void> memory;  ///< its share of the memory, until its kernel ends

    void giveSharesBack() {
      memory.reset();
      call.reset();
    }
  };
  std::array<Worker, kBands> workers;
};

std::int32_t* counter(std::uint32_t* pending) {
  return reinterpret_cast<std::int32_t*>(pending);
}

void setRectangles(const WipeTask& frame, std::array<WipeCall::Worker, kBands>& workers) {
  const std::uint32_t halfW = frame.width >> 1, halfH = frame.height >> 1;
  for (std::size_t i = 0; i < kBands; ++i) {
    WipeBand& band = workers[i].band;
    static_cast<WipeTask&>(band) = frame;
    band.left = i % 2 == 0 ? 0 : halfW;
    band.right = i % 2 == 0 ? halfW : frame.width;
    band.top = i / 2 == 0 ? 0 : halfH;
    band.bottom = i / 2 == 0 ? halfH : frame.height;
  }
}

/// Rows that overlap the next ones go to one worker, because the last one to write decides the
/// result.
void shareOut(const WipeKernel& kernel, std::array<WipeCall::Worker, kBands>& workers) {
  WipeQuarters quarters = kernel.quarters;
  WipeBand& first = workers[0].band;
  if (quarters == WipeQuarters::kLeft && first.pitchA > first.pitchB) {
    quarters = WipeQuarters::kUpperLeft;
    first.bottom = first.height;
  }
  for (std::size_t i = 0; i < kBands; ++i) {
    workers[i].band.kernel = kernel;
    workers[i].hasWork = (static_cast<unsigned>(quarters) >> i & 1) != 0;
  }
}

enum class Start { kDone, kRefused, kThrew };

/// Counts the worker before its thread exists, so the count can't fall before it has risen. With a
/// complete wait, a worker whose thread could not start runs on the calling thread.
Start start(WipeCall::Worker& worker, const std::shared_ptr<WipeCall>& call,
            const std::shared_ptr<const void>& memory, WipeWait wait) {
  WipeBand& band = worker.band;
  band.pending = &call->pending;
  nkOSInterlockedIncrement(counter(band.pending));
  worker.call = call;
  worker.memory = memory;
  Start result = Start::kDone;
  try {
    band.threadHandle =
        nkOSCreateThread(nullptr, 0, WipeBandThread, &worker, 0, &band.threadId, kThreadTag);
    if (band.threadHandle == nullptr)
      result = Start::kRefused;
  } catch (...) {
    result = Start::kThrew;
  }
  if (result != Start::kDone && wait == WipeWait::kComplete) {
    WipeBandThread(&worker);
    result = Start::kDone;
  } else if (result != Start::kDone) {
    worker.giveSharesBack();
  }
  nkOSSetThreadPriority(band.threadHandle, kThreadTimeCritical);
  return result;
}

/// The workers that were started, as a mask, and whether the host threw and so left one out.
WipeRowsRun startAll(const std::shared_ptr<WipeCall>& call,
                     const std::shared_ptr<const void>& memory, WipeWait wait,
                     std::size_t workers = kBands) {
  WipeRowsRun run;
  for (std::size_t i = 0; i < workers; ++i) {
    const Start result = start(call->workers[i], call, memory, wait);
    run.threw = run.threw || result == Start::kThrew;
    if (result == Start::kDone)
      run.started = static_cast<std::uint8_t>(run.started | 1U << i);
  }
  return run;
}

void closeAll(const WipeCall& call, std::size_t workers = kBands) {
  for (const WipeCall::Worker& worker : std::span(call.workers).first(workers))
    nkOSCloseThread(worker.band.threadHandle, kThreadTag);
}

void waitFor(WipeCall& call, WipeWait wait) {
  while (call.finished.try_acquire()) {  // raised before the last worker was started, or by it
  }
  const std::atomic_ref pending(call.pending);
  for (int left = kPauses; pending.load(std::memory_order_acquire) != 0;) {
    if (wait == WipeWait::kBounded && left-- == 0)
      return;
    static_cast<void>(call.finished.try_acquire_for(kPause));
  }
}

/// When it ends, no thread touches the frames any more, and a drawing that was not confirmed is
/// undone; also if the host throws.
class DrawingEnd {
 public:
  explicit DrawingEnd(RowQueue& rows) : rows_(rows) {}
  DrawingEnd(const DrawingEnd&) = delete;
  DrawingEnd& operator=(const DrawingEnd&) = delete;
  ~DrawingEnd() {
    rows_.stop();
    rows_.undo();
  }

 private:
  RowQueue& rows_;
};

/// Draws without workers.
void drawWhole(WipeTask frame, const WipeKernel& kernel) {
  frame.left = frame.top = 0;
  frame.right = frame.width;
  frame.bottom = frame.height;
  kernel(frame);
}

}  // namespace

std::uint32_t WipeBandThread(void* parameter) {
  auto* const worker = static_cast<WipeCall::Worker*>(parameter);
  const std::shared_ptr<WipeCall> call = std::move(worker->call);
  const WipeBand& band = worker->band;
  std::uint32_t result = 0;
  if (call->rows)
    call->rows->draw();
  else if (worker->hasWork)
    result = band.kernel(band);
  worker->memory.reset();  // so the caller, seeing the count, is the last to hold it
  if (nkOSInterlockedDecrement(counter(band.pending)) == 0)
    call->finished.release();
  return result;
}

std::uint32_t RunWipeBands(const WipeTask& frame, WipeKernel kernel, WipeWait wait,
                           const std::shared_ptr<const void>& memory) {
  const auto call = tryMakeShared<WipeCall>();
  if (!call) {
    if (wait == WipeWait::kComplete)
      drawWhole(frame, kernel);
    return 0;
  }
  setRectangles(frame, call->workers);
  shareOut(kernel, call->workers);
  const WipeRowsRun run = startAll(call, memory, wait);
  closeAll(*call);
  waitFor(*call, wait);
  return run.threw ? NKStatusRefused : 0;
}

WipeRowsRun RunWipeRows(const WipeTask& frame, DrawRows draw, WipeWait wait,
                        const std::shared_ptr<const void>& memory, const KeptRows& kept,
                        std::size_t workers) {
  const auto call = tryMakeShared<WipeCall>();
  if (!call) {
    if (wait == WipeWait::kBounded)
      return {};
    RowQueue(frame, draw).draw();
    return {.drawn = true};
  }
  RowQueue& rows = call->rows.emplace(frame, draw, kept);
  const DrawingEnd end(rows);
  WipeRowsRun run = startAll(call, memory, wait, workers);
  closeAll(*call, workers);
  run.drawn = run.started == (1U << workers) - 1;
  if (run.drawn)
    rows.confirm();
  else
    rows.stop();
  rows.draw();
  waitFor(*call, wait);
  return run;
}

void drawQuarters(const WipeTask& frame, const WipeKernel& kernel, std::uint8_t quarters) {
  std::array<WipeCall::Worker, kBands> workers;
  setRectangles(frame, workers);
  shareOut(kernel, workers);
  for (std::size_t i = 0; i < kBands; ++i) {
    if (workers[i].hasWork && (quarters >> i & 1) != 0)
      kernel(workers[i].band);
  }
}

}  // namespace nkdraw
