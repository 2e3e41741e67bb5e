// SPDX-License-Identifier: BSD-2-Clause
//
// The error log.
#include <nkdraw/platform/log.h>

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <string>

namespace {

constexpr std::size_t kMessageSize = 1024;

struct Target {
  nkdraw::LogSink sink;
  void* context;
};

void writeToStandardError(const char* message, void* /*context*/) {
  std::fprintf(stderr, "%s\n", message);
}

constinit std::mutex targetMutex;
constinit Target target{writeToStandardError, nullptr};

Target currentTarget() {
  const std::scoped_lock lock(targetMutex);
  return target;
}

bool isLineEnd(char character) {
  return character == '\n' || character == '\r';
}

/// One line; trailing blanks are part of the message.
void makeOneLine(char* text) {
  char* end = text + std::char_traits<char>::length(text);
  while (end != text && isLineEnd(end[-1]))
    --end;
  *end = '\0';
  std::replace_if(text, end, isLineEnd, ' ');
}

}  // namespace

void nkdraw::setLogSink(LogSink sink, void* context) {
  const std::scoped_lock lock(targetMutex);
  target = sink != nullptr ? Target{sink, context} : Target{writeToStandardError, nullptr};
}

void ErrOut(const char* format, ...) {
  const Target to = currentTarget();
  std::array<char, kMessageSize> message{};
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(message.data(), message.size(), format, arguments);
  va_end(arguments);
  makeOneLine(message.data());
  to.sink(message.data(), to.context);
}
