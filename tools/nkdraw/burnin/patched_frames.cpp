// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/patched_frames.h"

#include "burnin/range_check.h"
#include "media/failure.h"

#include <nkdraw/surface/layout_facts.h>

#include <cerrno>
#include <cstring>
#include <new>

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
      name_(name),
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
  if (!read(canvas_->data, static_cast<std::size_t>(packet.size), place))
    throw CanNotPatch();
  picture_ = rows_.rowsOf(*canvas_);
  if (picture_.planes[0] == nullptr || picture_.planes[1] != nullptr)
    throw CanNotPatch();
}

AVPacket& PatchedFrames::burn(AVPacket& packet, std::int64_t index) {
  const auto place = input_.sparse()->placeOf(packet);
  // Frames in another order than in the file may be shown more than once.
  if (!place || *place < end_)
    throw CanNotPatch();
  end_ = *place + packet.size;
  copy_.advanceTo(end_);
  takeCanvas(packet, *place);
  const std::span<const tagRECT> rects = burner().touched(index);
  moveParts(rects, *place, &PatchedFrames::read);
  burner_.burn(picture_, index, {});
  moveParts(rects, *place, &PatchedFrames::write);
  return packet;
}

void PatchedFrames::finish() {
  copy_.advanceTo(input_.sparse()->size());
}

void PatchedFrames::moveParts(std::span<const tagRECT> rects, std::int64_t place, MovePart move) {
  for (const tagRECT& rect : rects) {
    const std::ptrdiff_t first = rect.left / facts_.groupPixels * facts_.groupBytes;
    const std::ptrdiff_t end =
        (rect.right + facts_.groupPixels - 1) / facts_.groupPixels * facts_.groupBytes;
    for (int y = rect.top; y < rect.bottom; ++y) {
      std::uint8_t* const part = picture_.planes[0] + picture_.pitches[0] * y + first;
      if (!(this->*move)(part, static_cast<std::size_t>(end - first),
                         place + (part - canvas_->data)))
        throw CanNotPatch();
    }
  }
}

bool PatchedFrames::read(std::uint8_t* part, std::size_t bytes, std::int64_t place) {
  return pread(to_, part, bytes, place) == static_cast<ssize_t>(bytes);
}

bool PatchedFrames::write(std::uint8_t* part, std::size_t bytes, std::int64_t place) {
  if (pwrite(to_, part, bytes, place) == static_cast<ssize_t>(bytes))
    return true;
  throw Failure(ExitCode::kOutput, "cannot write the output", name_,
                std::string(std::strerror(errno)) + "; is the disk full?");
}

}  // namespace nkdraw::tool
