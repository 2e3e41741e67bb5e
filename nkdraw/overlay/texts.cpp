// SPDX-License-Identifier: BSD-2-Clause
#include <nkdraw/overlay/texts.h>

#include <nkdraw/platform/media_names.h>

#include <chrono>
#include <cstdio>
#include <ctime>
#include <ratio>

namespace {

const char* scanWord(std::uint32_t scanFlags) {
  switch (scanFlags & NKScanMask) {
    case NKScanInterlaced:
      return "i";
    case NKScanSegmented:
      return "sf";
    default:
      return "p";
  }
}

}  // namespace

CNkOverlay::Texts::Buffer CNkOverlay::Texts::formatLine(const CNkOverlay& overlay) {
  const HZWVIDEO& video = overlay.video;
  Buffer text{};
  const float rate = static_cast<float>(video.frameRate) / static_cast<float>(video.frameScale);
  std::snprintf(text.data(), text.size(), "%.2f %s %s %dx%d %s", static_cast<double>(rate),
                hzwutilFileTypeString(overlay.system.fileType),
                hzwutilCodecTypeString(overlay.videoHeader.bmiHeader.biCompression), video.biWidth,
                video.biHeight, scanWord(video.scanFlags));
  return text;
}

/// Hours, minutes, seconds, and the milliseconds without leading zeros. The two clocks are read
/// one after the other and may disagree by a tick.
CNkOverlay::Texts::ClockText CNkOverlay::Texts::wallClock() {
  using Ticks = std::chrono::duration<long long, std::ratio<1, 10'000'000>>;  // 100 nanoseconds
  const auto ticks =
      std::chrono::duration_cast<Ticks>(std::chrono::system_clock::now().time_since_epoch());
  const long long milliseconds = ticks.count() / 10'000;
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  ClockText text{};
  std::snprintf(text.data(), text.size(), "%02d:%02d:%02d.%lld", local.tm_hour, local.tm_min,
                local.tm_sec, milliseconds % 1000);
  return text;
}
