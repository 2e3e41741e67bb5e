// SPDX-License-Identifier: BSD-2-Clause
#include "media/libav_log.h"

#include "media/libav.h"

#include <cstdarg>
#include <cstdio>
#include <mutex>

namespace nkdraw::media {
namespace {

/// Messages of the Matroska and QuickTime demuxers.
constexpr const char* kCutMessages[] = {"ended prematurely", "partial file"};

std::mutex lastErrorLock;  // FFmpeg's threads log too
std::string firstError, lastError;
bool sawCut = false;
bool shown = false;

void keepErrors(void* reporter, int level, const char* format, va_list arguments) {
  if (shown) {
    va_list again;
    va_copy(again, arguments);
    av_log_default_callback(reporter, level, format, again);
    va_end(again);
  }
  if (level > AV_LOG_ERROR)
    return;
  char text[512];
  std::vsnprintf(text, sizeof text, format, arguments);
  std::string line = text;
  for (char& letter : line) {
    if (letter == '\n')
      letter = ' ';
  }
  line.erase(line.find_last_not_of(" .") + 1);
  if (line.empty())
    return;
  const std::lock_guard hold(lastErrorLock);
  lastError = line;
  if (firstError.empty())
    firstError = line;
  for (const char* const words : kCutMessages)
    sawCut = sawCut || line.find(words) != std::string::npos;
}

}  // namespace

void showLibavMessages(bool show) {
  shown = show;
  av_log_set_level(AV_LOG_INFO);
  av_log_set_callback(keepErrors);
}

bool showsLibavMessages() {
  return shown;
}

std::string firstLibavError() {
  const std::lock_guard hold(lastErrorLock);
  return firstError;
}

void forgetLibavErrors() {
  const std::lock_guard hold(lastErrorLock);
  firstError.clear();
}

std::string lastLibavError() {
  const std::lock_guard hold(lastErrorLock);
  return lastError;
}

bool libavSawCut() {
  const std::lock_guard hold(lastErrorLock);
  return sawCut;
}

std::string explained(int error, const std::string& reported) {
  return reported.empty() ? errorText(error) : errorText(error) + " (" + reported + ")";
}

}  // namespace nkdraw::media
