// SPDX-License-Identifier: BSD-2-Clause
#include "cli/progress.h"

#include <algorithm>
#include <cstdio>

#include <unistd.h>

namespace nkdraw::tool {
namespace {

constexpr auto kInterval = std::chrono::milliseconds(200);
constexpr char kClearLine[] = "\r\033[K";

}  // namespace

Progress::Progress(std::int64_t total) : shown_(isatty(STDERR_FILENO) == 1), total_(total) {}

Progress::~Progress() {
  if (shown_)
    std::fputs(kClearLine, stderr);
}

void Progress::advance() {
  ++done_;
  if (!shown_)
    return;
  if (const auto now = Clock::now(); now - lastShown_ >= kInterval) {
    lastShown_ = now;
    show(now);
  }
}

void Progress::show(Clock::time_point now) {
  const double seconds = std::chrono::duration<double>(now - start_).count();
  const double rate = static_cast<double>(done_) / seconds;
  if (total_ <= 0) {
    std::fprintf(stderr, "%sframe %lld, %.1f frames/s", kClearLine, static_cast<long long>(done_),
                 rate);
    return;
  }
  const auto left =
      static_cast<long long>(static_cast<double>(std::max<std::int64_t>(total_ - done_, 0)) / rate);
  std::fprintf(stderr, "%sframe %lld of %lld, %.1f frames/s, %lld:%02lld left", kClearLine,
               static_cast<long long>(done_), static_cast<long long>(total_), rate, left / 60,
               left % 60);
}

}  // namespace nkdraw::tool
