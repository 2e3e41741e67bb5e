// SPDX-License-Identifier: BSD-2-Clause
#include "media/chroma_shares.h"

#include <algorithm>

namespace nkdraw::media {
namespace {

constexpr int kCb = 1, kCr = 2;

/// The row of samples for each row of frames of this height.
std::vector<int> sampleRows(int height, int shift, bool byField) {
  const int last = AV_CEIL_RSHIFT(height, shift) - 1;
  std::vector<int> rows(static_cast<std::size_t>(height));
  for (int y = 0; y < height; ++y) {
    const int row = byField ? (y / 2 >> shift) * 2 + y % 2 : y >> shift;
    // At an odd end a field may lack its last row of samples.
    rows[static_cast<std::size_t>(y)] = byField && row > last ? std::max(row - 2, 0) : row;
  }
  return rows;
}

std::vector<int> counts(const std::vector<int>& rowOf) {
  std::vector<int> counted(static_cast<std::size_t>(std::ranges::max(rowOf)) + 1);
  for (const int row : rowOf)
    ++counted[static_cast<std::size_t>(row)];
  return counted;
}

}  // namespace

ChromaShares::ChromaShares(AVPixelFormat format, int width, int height, bool interlaced)
    : cb_(format, kCb),
      cr_(format, kCr),
      width_(width),
      columnShift_(av_pix_fmt_desc_get(format)->log2_chroma_w),
      rowShift_(av_pix_fmt_desc_get(format)->log2_chroma_h) {
  columns_ = AV_CEIL_RSHIFT(width, columnShift_);
  rowOf_ = sampleRows(height, rowShift_, interlaced && rowShift_ > 0);
  rowsOf_ = counts(rowOf_);
  shares_.resize(rowsOf_.size());
}

void ChromaShares::add(Pixel pixel, unsigned cb, unsigned cr) {
  const Pixel sample = sampleOf(pixel);
  std::vector<Share>& row = shares_[static_cast<std::size_t>(sample.y)];
  if (row.empty())
    row.resize(static_cast<std::size_t>(columns_));
  Share& share = row[static_cast<std::size_t>(sample.x)];
  if (share.pixels++ == 0)
    touched_.push_back(sample);
  share.cb += cb;
  share.cr += cr;
}

int ChromaShares::pixelsOf(Pixel sample) const {
  const int columns = std::min(1 << columnShift_, width_ - (sample.x << columnShift_));
  return columns * rowsOf_[static_cast<std::size_t>(sample.y)];
}

void ChromaShares::settle(AVFrame& frame) {
  for (const Pixel sample : touched_) {
    Share& share = shares_[static_cast<std::size_t>(sample.y)][static_cast<std::size_t>(sample.x)];
    const auto all = static_cast<unsigned>(pixelsOf(sample));
    const auto mean = [&](const Component& component, unsigned sum) {
      const unsigned own = component.get(frame, sample.x, sample.y) * (all - share.pixels);
      component.put(frame, sample.x, sample.y, (own + sum + all / 2) / all);
    };
    mean(cb_, share.cb);
    mean(cr_, share.cr);
    share = {};
  }
  touched_.clear();
}

}  // namespace nkdraw::media
