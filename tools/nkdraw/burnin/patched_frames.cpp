// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/patched_frames.h"

#include "burnin/range_check.h"
#include "media/libav_log.h"

#include <nkdraw/surface/layout_facts.h>

#include <algorithm>
#include <new>

#include <fcntl.h>
#include <unistd.h>

namespace nkdraw::tool {
namespace {

/// What FFmpeg may buffer of a frame before it reads the rest at once.
constexpr std::int64_t kBuffered = 1 << 13;

SparseFile& sparseFile(MediaInput& input, const Job& job) {
  SparseFile& file = *input.sparse();
  const auto rows = static_cast<std::int64_t>(job.frames.height);
  file.leaveUnread(rows * static_cast<std::int64_t>(rowBytes(job.layout->type, job.frames.width)) -
                   kBuffered);
  return file;
}

}  // namespace

PatchedFrames::PatchedFrames(MediaInput& input, const Job& job, int to, const std::string& name)
    : input_(input),
      facts_(*findFacts(job.layout->type)),
      to_(to),
      copy_(sparseFile(input, job).descriptor(), to, input.sparse()->size(), name),
      rows_(*input.video().codecpar, *job.layout),
      burner_(job, rows_.storage()) {
  checkRoom();
}

/// What shares its blocks with the input needs room for those that are written.
void PatchedFrames::checkRoom() {
  if (!copy_.shares())
    return;
  constexpr std::int64_t kBlock = 4096;
  std::int64_t blocks = 0;
  for (const tagRECT& rect : burner().touched(0))
    blocks +=
        (rect.bottom - rect.top) * ((rect.right - rect.left) * facts_.groupBytes / kBlock + 2);
  copy_.checkRoom(blocks * kBlock * expectedFrames(input_, {}));
}

/// The first frame is read whole, which shows where its rows are.
void PatchedFrames::takeCanvas(const AVPacket& packet, std::int64_t place) {
  if (canvas_->size == packet.size)
    return;
  av_packet_unref(canvas_.get());
  if (av_new_packet(canvas_.get(), packet.size) < 0)
    throw std::bad_alloc();
  if (!readAt({canvas_->data, static_cast<std::size_t>(packet.size)}, place))
    throw CanNotPatch();
  picture_ = rows_.rowsOf(*canvas_);
  if (picture_.planes[0] == nullptr || picture_.planes[1] != nullptr)
    throw CanNotPatch();
}

AVPacket& PatchedFrames::burn(AVPacket& packet, std::int64_t index) {
  const auto place = input_.sparse()->placeOf(packet);
  // Frames in another order than in the file may be shown more than once.
  if (!place || *place < end_ || !firstLibavError().empty())
    throw CanNotPatch();
  copy_.advanceTo(*place + packet.size);
  takeCanvas(packet, *place);
  const std::span<const tagRECT> rects = burner().touched(index);
  readAhead(rects, *place);
  end_ = *place + packet.size;
  last_ = *place;
  readParts(rects, *place);
  burner_.burn(picture_, index, {});
  writeParts(rects, *place);
  return packet;
}

void PatchedFrames::finish() {
  copy_.advanceTo(input_.sparse()->size());
}

/// What shares its blocks with the input is not in memory, and would be waited for part by part.
/// The next frames are expected as far apart as the last two.
void PatchedFrames::readAhead(std::span<const tagRECT> rects, std::int64_t place) {
  constexpr std::int64_t kFrames = 16;
  if (!copy_.shares() || last_ < 0)
    return;
  const std::int64_t step = place - last_;
  for (std::int64_t next = std::max(ahead_, place + step); next <= place + kFrames * step;
       next += step) {
    for (const tagRECT& rect : rects) {
      const std::span<std::uint8_t> rows = rowsOf(rect);
      // Only a hint.
      static_cast<void>(posix_fadvise(to_, next + (rows.data() - canvas_->data),
                                      static_cast<off_t>(rows.size()), POSIX_FADV_WILLNEED));
    }
    ahead_ = next + step;
  }
}

/// The bytes in row `y` that hold the rectangle's pixels.
std::span<std::uint8_t> PatchedFrames::partOf(const tagRECT& rect, int y) const {
  const int first = rect.left / facts_.groupPixels;
  const int end = (rect.right + facts_.groupPixels - 1) / facts_.groupPixels;
  std::uint8_t* const row = picture_.planes[0] + picture_.pitches[0] * y;
  return {row + std::ptrdiff_t{first} * facts_.groupBytes,
          static_cast<std::size_t>(end - first) * facts_.groupBytes};
}

/// From the first to the last of the rectangle's bytes, with what lies between its rows.
std::span<std::uint8_t> PatchedFrames::rowsOf(const tagRECT& rect) const {
  const std::span<std::uint8_t> top = partOf(rect, rect.top),
                                bottom = partOf(rect, rect.bottom - 1);
  return {std::min(top.data(), bottom.data()), std::max(top.data(), bottom.data()) + bottom.size()};
}

/// One call reads all rows: what lies between them costs less than a call for each.
void PatchedFrames::readParts(std::span<const tagRECT> rects, std::int64_t place) {
  for (const tagRECT& rect : rects) {
    if (!readAt(rowsOf(rect), place))
      throw CanNotPatch();
  }
}

void PatchedFrames::writeParts(std::span<const tagRECT> rects, std::int64_t place) {
  for (const tagRECT& rect : rects) {
    for (int y = rect.top; y < rect.bottom; ++y) {
      const std::span<std::uint8_t> part = partOf(rect, y);
      copy_.write(part, place + (part.data() - canvas_->data));
    }
  }
}

/// Reads a part of the canvas, of the frame that begins at `place`.
bool PatchedFrames::readAt(std::span<std::uint8_t> part, std::int64_t place) {
  return pread(to_, part.data(), part.size(), place + (part.data() - canvas_->data)) ==
         static_cast<ssize_t>(part.size());
}

}  // namespace nkdraw::tool
