// SPDX-License-Identifier: BSD-2-Clause
#include "media/sparse_file.h"

#include "media/failure.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace nkdraw::media {
namespace {

/// FFmpeg reads blocks larger than its buffer straight into the packet, behind what it has buffered
/// of it.
constexpr int kBufferBytes = 4096;

/// What is always read of a block.
constexpr int kHeadBytes = 4096;

/// Headers of frames are shorter.
constexpr std::int64_t kLongestHeader = 64;

/// More blocks than FFmpeg reads packets to find out about the streams.
constexpr std::size_t kMostBlocks = 256;

}  // namespace

SparseFile::SparseFile(const std::string& path)
    : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
  struct stat facts = {};
  if (descriptor_ < 0 || fstat(descriptor_, &facts) != 0) {
    const int error = errno;
    if (descriptor_ >= 0)
      close(descriptor_);
    throw Failure(ExitCode::kInput, "cannot read the input", path,
                  std::string(std::strerror(error)) + "; check its rights");
  }
  size_ = facts.st_size;
  auto* const buffer = static_cast<std::uint8_t*>(av_malloc(kBufferBytes));
  context_ = avio_alloc_context(buffer, kBufferBytes, 0, this, readNext, nullptr, seekTo);
  if (context_ == nullptr) {
    av_free(buffer);
    close(descriptor_);
    throw std::bad_alloc();
  }
}

SparseFile::~SparseFile() {
  av_freep(&context_->buffer);
  avio_context_free(&context_);
  close(descriptor_);
}

void SparseFile::leaveUnread(std::int64_t bytes) {
  unread_ = std::max(bytes, kLeastUnread);
  early_ = std::move(blocks_);
  blocks_.clear();
}

void SparseFile::beginPacket() {
  if (unread_)
    blocks_.clear();
}

int SparseFile::readNext(void* file, std::uint8_t* memory, int size) {
  auto& self = *static_cast<SparseFile*>(file);
  const bool isWhole = !self.unread_ || size < *self.unread_;
  const ssize_t read = pread(self.descriptor_, memory,
                             static_cast<std::size_t>(isWhole ? size : kHeadBytes), self.next_);
  if (read < 0)
    return AVERROR(errno);
  if (read == 0)
    return AVERROR_EOF;
  const std::int64_t done = isWhole ? read : std::min<std::int64_t>(size, self.size_ - self.next_);
  if (self.blocks_.size() >= kMostBlocks)
    self.blocks_.pop_back();
  self.blocks_.push_front({memory, self.next_, done, std::min<std::int64_t>(read, done)});
  self.next_ += done;
  return static_cast<int>(done);
}

std::int64_t SparseFile::seekTo(void* file, std::int64_t offset, int whence) {
  auto& self = *static_cast<SparseFile*>(file);
  if ((whence & AVSEEK_SIZE) != 0)
    return self.size_;
  const int way = whence & ~AVSEEK_FORCE;
  const std::int64_t from = way == SEEK_CUR ? self.next_ : way == SEEK_END ? self.size_ : 0;
  if (from + offset < 0)
    return AVERROR(EINVAL);
  return self.next_ = from + offset;
}

/// Whether the file has these bytes there.
bool SparseFile::holds(std::int64_t place, std::span<const std::uint8_t> bytes) const {
  constexpr std::size_t kAtOnce = 1 << 18;
  std::vector<std::uint8_t> part(std::min(kAtOnce, bytes.size()));
  while (!bytes.empty()) {
    const std::size_t size = std::min(part.size(), bytes.size());
    if (pread(descriptor_, part.data(), size, place) != static_cast<ssize_t>(size) ||
        std::memcmp(part.data(), bytes.data(), size) != 0)
      return false;
    place += static_cast<std::int64_t>(size);
    bytes = bytes.subspan(size);
  }
  return true;
}

/// The place, if the packet's last bytes came with this block. Its first ones may lie before it.
std::optional<std::int64_t> SparseFile::placeIn(const Block& block,
                                                std::span<const std::uint8_t> bytes) const {
  const std::uint8_t* const end = bytes.data() + bytes.size();
  const std::ptrdiff_t before = block.memory - bytes.data();
  if (end <= block.memory || end > block.memory + block.size || before > kBufferBytes)
    return std::nullopt;
  const std::int64_t place = block.place - before;
  const auto size = static_cast<std::ptrdiff_t>(bytes.size());
  const auto read =
      static_cast<std::size_t>(std::clamp(before + block.read, std::ptrdiff_t{0}, size));
  return place >= 0 && holds(place, bytes.first(read)) ? std::optional(place) : std::nullopt;
}

/// The place, if the packet lies behind a header there, at only one.
std::optional<std::int64_t> SparseFile::placeBehind(std::int64_t place,
                                                    std::span<const std::uint8_t> bytes) const {
  std::optional<std::int64_t> found;
  for (std::int64_t header = 0; place >= 0 && header <= kLongestHeader; ++header) {
    if (!holds(place + header, bytes))
      continue;
    if (found)
      return std::nullopt;
    found = place + header;
  }
  return found;
}

std::optional<std::int64_t> SparseFile::placeOf(const AVPacket& packet) const {
  const std::span bytes(packet.data, static_cast<std::size_t>(packet.size));
  for (const auto* const blocks : {&blocks_, &early_}) {
    for (const Block& block : *blocks) {
      if (const auto place = placeIn(block, bytes))
        return place;
    }
  }
  return placeBehind(packet.pos, bytes);
}

bool SparseFile::completeBlock(const Block& block, const AVPacket& packet) const {
  const auto rest = static_cast<std::size_t>(block.size - block.read);
  if (rest == 0)
    return true;
  // Only then the memory is still there.
  const bool isInPacket =
      block.memory < packet.data + packet.size && packet.data < block.memory + block.size;
  return isInPacket && pread(descriptor_, block.memory + block.read, rest,
                             block.place + block.read) == static_cast<ssize_t>(rest);
}

bool SparseFile::complete(const AVPacket& packet) const {
  return std::ranges::all_of(blocks_,
                             [&](const Block& block) { return completeBlock(block, packet); });
}

}  // namespace nkdraw::media
