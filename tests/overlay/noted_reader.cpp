// SPDX-License-Identifier: BSD-2-Clause
#include "noted_reader.h"

#include <nkdraw/platform/frame_memory.h>
#include <nkdraw/platform/log.h>
#include <nkdraw/platform/media_reader.h>
#include <nkdraw/platform/memory.h>
#include <nkdraw/platform/module.h>
#include <nkdraw/platform/sync.h>

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <sstream>

namespace {

using nkdraw::test::notedReader;

template <class... Parts>
void note(const Parts&... parts) {
  std::ostringstream text;
  (text << ... << parts);
  notedReader.calls.push_back(text.str());
}

int moduleObject = 0, fileObject = 0;
const nkHandle kModule = &moduleObject;
const nkHandle kFile = &fileObject;

const char* nameOf(nkHandle handle) {
  return handle == kModule ? "module" : handle == kFile ? "file" : "?";
}

const char* nameOf(const nkHandle* file) {
  return file == nullptr ? "null" : nameOf(*file);
}

nkHandle openFile(const char* path, std::uint32_t access, std::uint32_t share,
                  std::uint32_t security, std::uint32_t creation, std::uint32_t flags,
                  std::uint32_t attributes) {
  note("open ", path, std::hex, " ", access, " ", share, " ", security, " ", creation, " ", flags,
       " ", attributes);
  notedReader.path = path;
  if (!notedReader.opens)
    return nullptr;
  ++notedReader.openFiles;
  return kFile;
}

std::uint32_t fileInfo(nkHandle* file, std::uint32_t stream, std::uint32_t first, HZWVIDEO* video,
                       std::uint32_t second, std::uint32_t third) {
  HZWVIDEO empty{};
  empty.biSize = 1428;
  note("info ", nameOf(file), " ", stream, " ", first, " ",
       std::memcmp(video, &empty, sizeof empty) == 0 ? "empty" : "?", " ", second, " ", third);
  video->biWidth = notedReader.width;
  video->biHeight = notedReader.height;
  return 0xFFFFFFFF;
}

std::uint32_t readFrame(nkHandle* file, std::uint32_t first, std::uint32_t second,
                        std::uint32_t third, std::uint32_t fourth, QFRAME* frame,
                        std::uint32_t fifth, std::uint32_t sixth) {
  note("read ", nameOf(file), " ", first, " ", second, " ", third, " ", fourth, " ",
       frame == nullptr ? "null" : "frame", " ", fifth, " ", sixth);
  const auto& picture = notedReader.picture;
  if (frame == nullptr)
    return static_cast<std::uint32_t>(picture.size()) - notedReader.tooFewBytes;
  if (notedReader.reads)
    std::memcpy(frame->frameBuffer, picture.data(), picture.size() - notedReader.tooFewBytes);
  return 0;
}

std::uint32_t closeFile(nkHandle* file) {
  note("close ", nameOf(file));
  --notedReader.openFiles;
  return 0;
}

/// A frame whose pixels the sanitizer watches.
struct HeldFrame : QFRAME {
  std::vector<char> pixels;
};

}  // namespace

void nkdraw::test::usePicture(std::int32_t width, std::int32_t height, std::uint32_t seed) {
  notedReader.width = width;
  notedReader.height = height;
  notedReader.picture.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                             4);
  std::mt19937 noise(seed);
  for (std::uint8_t& byte : notedReader.picture)
    byte = static_cast<std::uint8_t>(noise() >> 24);
}

std::uint32_t nkOSGetAppDir(char* path, std::uint32_t size) {
  if (size != 0)
    *path = '\0';
  return 0;
}

bool nkOSFileExists(const char* /*path*/) {
  return false;
}

nkHandle nkOSLoadLibrary(const char* name, std::uint32_t flags) {
  note("load ", name, " ", flags);
  notedReader.loadedModules += notedReader.hasModule ? 1 : 0;
  return notedReader.hasModule ? kModule : nullptr;
}

void* nkOSGetProcAddress(nkHandle module, const char* symbol) {
  note("find ", symbol);
  if (module != kModule || symbol == notedReader.missingSymbol)
    return nullptr;
  const std::string name = symbol;
  return name == "ciOpen"           ? reinterpret_cast<void*>(&openFile)
         : name == "ciGetFileInfo"  ? reinterpret_cast<void*>(&fileInfo)
         : name == "ciReadFrameUnc" ? reinterpret_cast<void*>(&readFrame)
         : name == "ciClose"        ? reinterpret_cast<void*>(&closeFile)
                                    : nullptr;
}

std::uint32_t nkOSFreeLibrary(nkHandle module) {
  note("unload ", nameOf(module));
  --notedReader.loadedModules;
  return 1;
}

std::uint32_t QFrameMem(std::uint32_t code, std::uint32_t bytes, std::uint32_t flags,
                        QFRAME** frame) {
  note("frame ", code, " ", code == 10 ? "bytes " : "", bytes, std::hex, " ", flags);
  if (code == 11) {
    delete static_cast<HeldFrame*>(*frame);
    *frame = nullptr;
    --notedReader.frames;
    notedReader.surfacesWhenFreed = notedReader.surfaces;
    return 0;
  }
  if (!notedReader.hasMemory)
    return 5;
  auto* const held = new HeldFrame;
  held->pixels.assign(bytes, '\x5A');
  held->frameBuffer = held->pixels.data();
  *frame = held;
  ++notedReader.frames;
  return 0;
}

void* NKAlloc(std::uint32_t bytes) {
  return notedReader.hasPictureRoom ? std::malloc(bytes) : nullptr;
}

void NKFree(void* memory) {
  std::free(memory);
}

void ErrOut(const char* format, ...) {
  std::array<char, 256> text{};
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text.data(), text.size(), format, arguments);
  va_end(arguments);
  notedReader.messages.emplace_back(text.data());
}

// Every surface has one event, so that these tell how many there are.

nkHandle nkOSCreateEvent(void* /*security*/, int /*manualReset*/, int /*initiallySet*/,
                         const char* /*name*/) {
  ++notedReader.surfaces;
  return &notedReader.surfaces;
}

std::uint32_t nkOSCloseEvent(nkHandle /*event*/) {
  --notedReader.surfaces;
  return 1;
}

std::uint32_t nkOSSetEvent(nkHandle /*event*/) {
  return 1;
}

std::uint32_t nkOSWaitForEvent(nkHandle /*event*/, std::uint32_t /*milliseconds*/) {
  return kWaitFailed;
}

void nkOSInitializeCriticalSection(nkCriticalSection* /*section*/) {}
void nkOSEnterCriticalSection(nkCriticalSection* /*section*/) {}
std::uint32_t nkOSTryEnterCriticalSection(nkCriticalSection* /*section*/) {
  return 1;
}
void nkOSLeaveCriticalSection(nkCriticalSection* /*section*/) {}
void nkOSDeleteCriticalSection(nkCriticalSection* /*section*/) {}
