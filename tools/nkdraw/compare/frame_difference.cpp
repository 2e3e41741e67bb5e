// SPDX-License-Identifier: BSD-2-Clause
#include "compare/frame_difference.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace nkdraw::tool {
namespace {

constexpr int kDeepest = 16;  // bits of a sample

bool isChroma(const AVPixFmtDescriptor& format, int channel) {
  return (format.flags & AV_PIX_FMT_FLAG_RGB) == 0 && format.nb_components >= 3 &&
         (channel == 1 || channel == 2);
}

std::vector<std::string> namesOf(const AVPixFmtDescriptor& format) {
  const bool isRGB = (format.flags & AV_PIX_FMT_FLAG_RGB) != 0;
  std::vector<std::string> names;
  if (format.nb_components < 3)
    names = {"y"};
  else
    names =
        isRGB ? std::vector<std::string>{"r", "g", "b"} : std::vector<std::string>{"y", "cb", "cr"};
  if ((format.flags & AV_PIX_FMT_FLAG_ALPHA) != 0)
    names.emplace_back("a");
  return names;
}

}  // namespace

std::uint32_t Difference::largestOfAll() const {
  return *std::ranges::max_element(largest);
}

bool FrameComparer::takes(AVPixelFormat format) {
  const AVPixFmtDescriptor& facts = *av_pix_fmt_desc_get(format);
  constexpr std::uint64_t kNoNumbers = AV_PIX_FMT_FLAG_PAL | AV_PIX_FMT_FLAG_FLOAT |
                                       AV_PIX_FMT_FLAG_BAYER | AV_PIX_FMT_FLAG_HWACCEL |
                                       AV_PIX_FMT_FLAG_BITSTREAM;
  return (facts.flags & kNoNumbers) == 0 && facts.comp[0].depth <= kDeepest;
}

FrameComparer::FrameComparer(AVPixelFormat format)
    : format_(*av_pix_fmt_desc_get(format)), names_(namesOf(format_)) {}

bool FrameComparer::isSameRow(const AVFrame& a, const AVFrame& b, int y) const {
  for (std::size_t plane = 0; plane < 4 && a.data[plane] != nullptr; ++plane) {
    const bool isShort = plane == 1 || plane == 2;
    const std::ptrdiff_t row = isShort ? y >> format_.log2_chroma_h : y;
    const int bytes = av_image_get_linesize(static_cast<AVPixelFormat>(a.format), a.width,
                                            static_cast<int>(plane));
    if (std::memcmp(a.data[plane] + a.linesize[plane] * row,
                    b.data[plane] + b.linesize[plane] * row, static_cast<std::size_t>(bytes)) != 0)
      return false;
  }
  return true;
}

void FrameComparer::compareRow(const AVFrame& a, const AVFrame& b, int y, Difference& difference) {
  const auto read = [&](const AVFrame& frame, int channel, int row, int width,
                        std::vector<std::uint16_t>& samples) {
    av_read_image_line2(samples.data(), const_cast<const std::uint8_t**>(frame.data),
                        frame.linesize, &format_, 0, row, channel, width, 0, 2);
  };
  std::ranges::fill(differs_, std::uint8_t{0});
  for (int channel = 0; channel < format_.nb_components; ++channel) {
    const bool chroma = isChroma(format_, channel);
    const int shift = chroma ? format_.log2_chroma_w : 0;
    const int row = chroma ? y >> format_.log2_chroma_h : y;
    const int width = AV_CEIL_RSHIFT(a.width, shift);
    read(a, channel, row, width, rowA_);
    read(b, channel, row, width, rowB_);
    std::uint32_t& largest = difference.largest[static_cast<std::size_t>(channel)];
    for (std::size_t x = 0; x < differs_.size(); ++x) {
      const std::size_t sample = x >> shift;
      const auto by = static_cast<std::uint32_t>(std::abs(rowA_[sample] - rowB_[sample]));
      differs_[x] |= static_cast<std::uint8_t>(by != 0);
      largest = std::max(largest, by);
    }
  }
  difference.pixels += std::ranges::count(differs_, 1);
}

Difference FrameComparer::compare(const AVFrame& a, const AVFrame& b) {
  const auto width = static_cast<std::size_t>(a.width);
  rowA_.resize(width);
  rowB_.resize(width);
  differs_.resize(width);
  Difference difference;
  for (int y = 0; y < a.height; ++y) {
    if (!isSameRow(a, b, y))
      compareRow(a, b, y, difference);
  }
  return difference;
}

}  // namespace nkdraw::tool
