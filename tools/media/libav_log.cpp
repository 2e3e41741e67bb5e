// SPDX-License-Identifier: BSD-2-Clause
#include "media/libav_log.h"

#include "media/decoder_log.h"
#include "media/libav.h"

#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <mutex>
#include <span>
#include <string_view>

namespace nkdraw::media {
namespace {

/// Messages of the Matroska and QuickTime demuxers.
constexpr const char* kCutMessages[] = {"ended prematurely", "partial file"};

/// Messages of the Matroska and NUT demuxers, which then look for the next frame that is whole.
constexpr const char* kPassedOver[] = {"exceeds containing master element",
                                       "invalid as first byte of an EBML number",
                                       "exceeds max length", "no checksum"};

std::mutex lastErrorLock;  // FFmpeg's threads log too
std::string firstError, lastError;
bool shown = false;

/// What a demuxer said of its file, as bits in the file's `opaque`.
constexpr std::uintptr_t kPassed = 1, kCut = 2;

std::uintptr_t saidOf(const AVFormatContext& file) {
  return reinterpret_cast<std::uintptr_t>(file.opaque);
}

void say(AVFormatContext& file, std::uintptr_t bits) {
  file.opaque = reinterpret_cast<void*>(bits);  // NOLINT(performance-no-int-to-ptr)
}

bool hasAny(const std::string& line, std::span<const char* const> table) {
  return std::ranges::any_of(
      table, [&](const char* words) { return line.find(words) != std::string::npos; });
}

/// Demuxers log from the thread that reads.
void noteDemuxerMessage(void* reporter, const std::string& line) {
  const AVClass* const kind = reporter != nullptr ? *static_cast<AVClass**>(reporter) : nullptr;
  if (kind == nullptr || std::string_view(kind->class_name) != "AVFormatContext")
    return;
  auto& file = *static_cast<AVFormatContext*>(reporter);
  if (file.iformat == nullptr)
    return;
  say(file, saidOf(file) | (hasAny(line, kPassedOver) ? kPassed : 0) |
                (hasAny(line, kCutMessages) ? kCut : 0));
}

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
  noteDecoderMessage(reporter, line);
  noteDemuxerMessage(reporter, line);
  const std::lock_guard hold(lastErrorLock);
  lastError = line;
  if (firstError.empty())
    firstError = line;
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

bool demuxerSawCut(const AVFormatContext& file) {
  return (saidOf(file) & kCut) != 0;
}

bool takeDemuxerComplaint(AVFormatContext& file) {
  const bool complained = (saidOf(file) & kPassed) != 0;
  say(file, saidOf(file) & ~kPassed);
  return complained;
}

std::string explained(int error, const std::string& reported) {
  return reported.empty() ? errorText(error) : errorText(error) + " (" + reported + ")";
}

}  // namespace nkdraw::media
