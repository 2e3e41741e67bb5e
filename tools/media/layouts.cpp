// SPDX-License-Identifier: BSD-2-Clause
#include "media/layouts.h"

#include "media/failure.h"

#include <algorithm>
#include <cctype>
#include <iterator>

namespace nkdraw::media {
namespace {

constexpr std::uint32_t fourCC(const char (&letters)[5]) {
  std::uint32_t code = 0;
  for (std::size_t i = 0; i < 4; ++i)
    code |= std::uint32_t{static_cast<unsigned char>(letters[i])} << (8 * i);
  return code;
}

constexpr std::uint32_t kPlain = 0;  // 24 bits: B, G, R; 32 bits: B, G, R, A
constexpr std::uint32_t kMasks = 3;
// The number is the byte of red.
constexpr std::uint32_t kRed0 = 0x000000FF, kRed1 = 0x0000FF00, kRed3 = 0xFF000000;

constexpr AVCodecID kRaw = AV_CODEC_ID_RAWVIDEO;
constexpr unsigned kAll = kMOV | kAVI | kMKV | kNUT;

constexpr Layout kLayouts[] = {
    {"v210", "10-bit 4:2:2 YCbCr, six pixels in 16 bytes", AV_CODEC_ID_V210, AV_PIX_FMT_YUV422P10,
     ptV210, fourCC("v210"), 16, 0, kAll},
    {"uyvy", "8-bit 4:2:2 YCbCr, bytes Cb Y Cr Y", kRaw, AV_PIX_FMT_UYVY422, ptUYVY, fourCC("UYVY"),
     16, 0, kAll},
    {"yuy2", "8-bit 4:2:2 YCbCr, bytes Y Cb Y Cr", kRaw, AV_PIX_FMT_YUYV422, ptYUYV, fourCC("YUY2"),
     16, 0, kAll},
    {"yvyu", "8-bit 4:2:2 YCbCr, bytes Y Cr Y Cb", kRaw, AV_PIX_FMT_YVYU422, ptYVYU, fourCC("YVYU"),
     16, 0, kAVI | kMKV | kNUT},
    {"rgb24", "bytes R G B", kRaw, AV_PIX_FMT_RGB24, ptRGB24, kMasks, 24, kRed0, kMOV | kNUT},
    {"bgr24", "bytes B G R", kRaw, AV_PIX_FMT_BGR24, ptBGR24, kPlain, 24, 0, kAll},
    {"rgba", "bytes R G B A", kRaw, AV_PIX_FMT_RGBA, ptRGBA32, kMasks, 32, kRed0, kAll},
    {"bgra", "bytes B G R A", kRaw, AV_PIX_FMT_BGRA, ptBGRA32, kPlain, 32, 0, kAll},
    {"argb", "bytes A R G B", kRaw, AV_PIX_FMT_ARGB, ptARGB32, kMasks, 32, kRed1, kMOV | kNUT},
    {"abgr", "bytes A B G R", kRaw, AV_PIX_FMT_ABGR, ptABGR32, kMasks, 32, kRed3, kMOV | kNUT},
    {"rgb0", "bytes R G B and one unused", kRaw, AV_PIX_FMT_RGB0, ptRGBA32, kMasks, 32, kRed0,
     kNUT},
    {"bgr0", "bytes B G R and one unused", kRaw, AV_PIX_FMT_BGR0, ptBGRA32, kPlain, 32, 0, kNUT},
    {"0rgb", "one unused byte, then R G B", kRaw, AV_PIX_FMT_0RGB, ptARGB32, kMasks, 32, kRed1,
     kNUT},
    {"0bgr", "one unused byte, then B G R", kRaw, AV_PIX_FMT_0BGR, ptABGR32, kMasks, 32, kRed3,
     kNUT},
};

/// Words are little-endian. Only the compositor uses these.
constexpr Layout kDeepLayouts[] = {
    {"rgb48", "16-bit words R G B", kRaw, AV_PIX_FMT_RGB48LE, ptRGB48, 0, 48, 0, kNUT},
    {"bgr48", "16-bit words B G R", kRaw, AV_PIX_FMT_BGR48LE, ptRGB48, 0, 48, 0, kNUT},
    {"rgba64", "16-bit words R G B A", kRaw, AV_PIX_FMT_RGBA64LE, ptARGB64, 0, 64, 0, kNUT},
    {"bgra64", "16-bit words B G R A", kRaw, AV_PIX_FMT_BGRA64LE, ptARGB64, 0, 64, 0, kNUT},
};

struct ContainerName {
  Container container;
  std::string_view format;  // one of FFmpeg's names for it
  std::string_view suffix;
};

constexpr ContainerName kContainers[] = {
    {kMOV, "mov", "mov"}, {kAVI, "avi", "avi"}, {kMKV, "matroska", "mkv"}, {kNUT, "nut", "nut"}};

template <class Test>
const Layout* findLayout(Test test) {
  const auto* const found = std::ranges::find_if(kLayouts, test);
  return found != std::end(kLayouts) ? found : nullptr;
}

/// Whether `name` is one of the names in `list`, separated by commas.
bool isListed(std::string_view name, std::string_view list) {
  while (!list.empty()) {
    const std::size_t comma = std::min(list.find(','), list.size());
    if (list.substr(0, comma) == name)
      return true;
    list.remove_prefix(std::min(comma + 1, list.size()));
  }
  return false;
}

Failure noSuchLayout(pixelType type) {
  return {ExitCode::kProcessing, "no such layout", std::to_string(type), "report this"};
}

const LayoutFacts& factsFor(pixelType type) {
  const LayoutFacts* const facts = findFacts(type);
  if (facts == nullptr)
    throw noSuchLayout(type);
  return *facts;
}

}  // namespace

std::span<const Layout> layouts() {
  return kLayouts;
}

const Layout* layoutNamed(std::string_view name) {
  return findLayout([&](const Layout& layout) {
    return std::ranges::equal(layout.name, name, {}, {},
                              [](unsigned char letter) { return std::tolower(letter); });
  });
}

const Layout* layoutOf(AVCodecID codec, AVPixelFormat pixelFormat) {
  return findLayout([&](const Layout& layout) {
    return layout.codec == codec &&
           (codec == AV_CODEC_ID_V210 || layout.pixelFormat == pixelFormat);
  });
}

const Layout* wipeLayoutOf(AVCodecID codec, AVPixelFormat pixelFormat) {
  const auto* const deep = std::ranges::find_if(kDeepLayouts, [&](const Layout& layout) {
    return layout.codec == codec && layout.pixelFormat == pixelFormat;
  });
  return deep != std::end(kDeepLayouts) ? deep : layoutOf(codec, pixelFormat);
}

const Layout& layoutOf(pixelType type) {
  const Layout* const found = findLayout([&](const Layout& row) { return row.type == type; });
  if (found == nullptr)
    throw noSuchLayout(type);
  return *found;
}

unsigned containerOf(std::string_view formatName) {
  for (const ContainerName& entry : kContainers) {
    if (isListed(entry.format, formatName))
      return entry.container;
  }
  return 0;
}

std::string containerNames(unsigned containers) {
  std::string names;
  for (const ContainerName& entry : kContainers) {
    if ((containers & entry.container) == 0)
      continue;
    containers &= ~static_cast<unsigned>(entry.container);
    if (!names.empty())
      names += containers == 0 ? " or " : ", ";
    names.append(".").append(entry.suffix);
  }
  return names;
}

std::size_t rowBytes(pixelType type, int width) {
  return nkdraw::rowBytes(factsFor(type), static_cast<std::uint32_t>(width));
}

std::size_t packedPitch(pixelType type, int width) {
  const std::size_t pitch = nkdraw::packedPitch(factsFor(type), static_cast<std::uint32_t>(width));
  return std::max(pitch, rowBytes(type, width));
}

}  // namespace nkdraw::media
