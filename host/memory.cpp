// SPDX-License-Identifier: BSD-2-Clause
//
// Memory blocks, and copies of them. Frames of the same sizes come and go, so a few large blocks
// are kept: the system would clear all of their pages again.
#include <nkdraw/platform/memory.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>
#include <utility>

namespace {

/// The widest vector, and a cache line.
constexpr std::size_t kAlignment = 64;

/// Precedes every block, and keeps its alignment.
struct alignas(kAlignment) Header {
  std::size_t bytes;  ///< behind the header
};

struct Release {
  void operator()(Header* header) const {
    ::operator delete (header, std::align_val_t{kAlignment});
  }
};
using Block = std::unique_ptr<Header, Release>;

Block newBlock(std::size_t bytes) {
  void* const memory =
      ::operator new (sizeof(Header) + bytes, std::align_val_t{kAlignment}, std::nothrow);
  return Block(memory == nullptr ? nullptr : new (memory) Header{bytes});
}

/// Large blocks that were freed.
class KeptBlocks {
 public:
  static constexpr std::size_t kLarge = 4 << 20;

  /// A kept block that is not much larger than needed, or null.
  Block take(std::size_t bytes) {
    const std::scoped_lock lock(mutex_);
    const auto fits = [&](const Block& block) {
      return block && block->bytes >= bytes && block->bytes / 2 <= bytes;
    };
    auto* const found = std::ranges::find_if(blocks_, fits);
    return found == std::end(blocks_) ? nullptr : std::move(*found);
  }

  /// Keeps the block in place of the oldest one, which is freed; a block that is too large is freed
  /// instead.
  void give(Block block) {
    if (block->bytes > kLargest)
      return;
    const std::scoped_lock lock(mutex_);
    std::swap(blocks_[next_], block);
    next_ = (next_ + 1) % std::size(blocks_);
  }

 private:
  static constexpr std::size_t kLargest = 96 << 20;  // a wipe of 3840x2160 needs 75

  std::mutex mutex_;
  Block blocks_[2];
  std::size_t next_ = 0;
};

KeptBlocks& keptBlocks() {
  static KeptBlocks& kept = *new KeptBlocks;  // outlives every thread that may give a block back
  return kept;
}

}  // namespace

void* NKAlloc(std::uint32_t bytes) {
  Block block = bytes >= KeptBlocks::kLarge ? keptBlocks().take(bytes) : nullptr;
  if (!block)
    block = newBlock(bytes);
  return block ? block.release() + 1 : nullptr;
}

void NKFree(void* memory) {
  if (memory == nullptr)
    return;
  Block block(static_cast<Header*>(memory) - 1);
  if (block->bytes >= KeptBlocks::kLarge)
    keptBlocks().give(std::move(block));
}

void CopyMemoryFast(void* target, const void* source, std::uint32_t bytes) {
  if (bytes != 0)
    std::memcpy(target, source, bytes);
}

void nkOSCopyMemory(void* target, const void* source, std::uint32_t bytes) {
  CopyMemoryFast(target, source, bytes);
}

void nkOSZeroMemory(void* target, std::uint32_t bytes) {
  if (bytes != 0)
    std::memset(target, 0, bytes);
}
