// SPDX-License-Identifier: BSD-2-Clause
#include "media/libav_log.h"

#include "media/decoder_log.h"
#include "media/libav.h"

#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <string_view>
#include <utility>

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
bool sawCut = false;
bool shown = false;

/// A file's `opaque` tells of it; demuxers log from the thread that reads.
void noteDemuxerMessage(void* reporter, const std::string& line) {
  const AVClass* const kind = reporter != nullptr ? *static_cast<AVClass**>(reporter) : nullptr;
  if (kind == nullptr || std::string_view(kind->class_name) != "AVFormatContext")
    return;
  auto& file = *static_cast<AVFormatContext*>(reporter);
  for (const char* const words : kPassedOver) {
    if (file.iformat != nullptr && line.find(words) != std::string::npos)
      file.opaque = &file;
  }
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

bool takeDemuxerComplaint(AVFormatContext& file) {
  return std::exchange(file.opaque, nullptr) != nullptr;
}

std::string explained(int error, const std::string& reported) {
  return reported.empty() ? errorText(error) : errorText(error) + " (" + reported + ")";
}

}  // namespace nkdraw::media
