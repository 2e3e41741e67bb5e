// SPDX-License-Identifier: BSD-2-Clause
//
// Files whose large blocks stay unread.
#include <media/sparse_file.h>

#include <tests/support/temporary_file.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <vector>

using nkdraw::media::SparseFile;

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr int kBlock = 200000;
constexpr std::size_t kAlwaysRead = 4096;
constexpr std::uint8_t kOld = 0xA5;  // in memory before

Bytes noise(std::size_t size) {
  std::mt19937 random(3);
  Bytes bytes(size);
  std::ranges::generate(bytes, [&] { return static_cast<std::uint8_t>(random() >> 24); });
  return bytes;
}

/// A file of noise, read as FFmpeg reads it.
class SparseFileTest : public testing::Test {
 protected:
  void open(const Bytes& bytes) {
    bytes_ = bytes;
    written_.emplace(bytes);
    file_.emplace(written_->path());
    memory_.assign(2 * kBlock, kOld);
  }
  /// Reads so many bytes to the start of the memory, as a packet.
  AVPacket read(int size) {
    file_->beginPacket();
    EXPECT_EQ(avio_read(file_->context(), memory_.data(), size), size);
    AVPacket packet = {};
    packet.data = memory_.data();
    packet.size = size;
    packet.pos = -1;
    return packet;
  }
  [[nodiscard]] bool holds(std::int64_t place, std::size_t size) const {
    return std::equal(memory_.begin(), memory_.begin() + static_cast<std::ptrdiff_t>(size),
                      bytes_.begin() + place);
  }

  std::optional<nkdraw::test::TemporaryFile> written_;
  Bytes bytes_, memory_;
  std::optional<SparseFile> file_;
};

TEST_F(SparseFileTest, IsReadWholeAtFirst) {
  open(noise(3 * kBlock));
  const AVPacket packet = read(kBlock);
  EXPECT_TRUE(holds(0, kBlock));
  EXPECT_EQ(file_->placeOf(packet), 0);
}

TEST_F(SparseFileTest, LeavesLargeBlocksUnreadButForTheirHeads) {
  open(noise(3 * kBlock));
  file_->leaveUnread(kBlock / 2);
  // Whatever of the block's head FFmpeg has in its buffer.
  std::int64_t place = 0;
  for (const int before : {100, 4095, 4096, 4097, 8191, 1}) {
    read(before);
    place += before;
    std::ranges::fill(memory_, kOld);
    const AVPacket packet = read(kBlock / 3 * 2);
    EXPECT_TRUE(holds(place, kAlwaysRead)) << before;
    EXPECT_TRUE(std::any_of(memory_.begin(), memory_.begin() + packet.size,
                            [](std::uint8_t byte) { return byte == kOld; }));
    EXPECT_FALSE(holds(place, static_cast<std::size_t>(packet.size)));
    EXPECT_EQ(file_->placeOf(packet), place);
    place += packet.size;
    if (place + kBlock > std::ssize(bytes_)) {
      place = 0;
      avio_seek(file_->context(), 0, SEEK_SET);
    }
  }
}

TEST_F(SparseFileTest, ReadsSmallBlocks) {
  open(noise(3 * kBlock));
  file_->leaveUnread(kBlock);
  read(kBlock - 8192);
  EXPECT_TRUE(holds(0, kBlock - 8192));
}

TEST_F(SparseFileTest, CompletesWhatWasLeftUnread) {
  open(noise(3 * kBlock));
  file_->leaveUnread(kBlock / 2);
  read(77);
  const AVPacket packet = read(kBlock);
  EXPECT_FALSE(holds(77, kBlock));
  EXPECT_TRUE(file_->complete(packet));
  EXPECT_TRUE(holds(77, kBlock));
}

TEST_F(SparseFileTest, DoesNotCompleteAPacketInOtherMemory) {
  open(noise(3 * kBlock));
  file_->leaveUnread(kBlock / 2);
  AVPacket packet = read(kBlock);
  Bytes copy(memory_.begin(), memory_.begin() + kBlock);
  packet.data = copy.data();
  EXPECT_FALSE(file_->complete(packet));
  EXPECT_EQ(file_->placeOf(packet), std::nullopt);
}

TEST_F(SparseFileTest, TellsNoPlaceOfAPacketThatWasChanged) {
  open(noise(3 * kBlock));
  const AVPacket packet = read(kBlock);
  memory_[kBlock / 2] ^= 1;
  EXPECT_EQ(file_->placeOf(packet), std::nullopt);
}

TEST_F(SparseFileTest, TellsThePlaceOfASmallPacketBehindItsHeader) {
  open(noise(3 * kBlock));
  Bytes small(bytes_.begin() + 1010, bytes_.begin() + 1510);
  AVPacket packet = {};
  packet.data = small.data();
  packet.size = 500;
  packet.pos = 1000;
  EXPECT_EQ(file_->placeOf(packet), 1010);
  packet.pos = 900;
  EXPECT_EQ(file_->placeOf(packet), std::nullopt);
}

TEST_F(SparseFileTest, TellsNoPlaceWhereSeveralArePossible) {
  Bytes bytes(3 * kBlock, 0x80);
  open(bytes);
  Bytes small(500, 0x80);
  AVPacket packet = {};
  packet.data = small.data();
  packet.size = 500;
  packet.pos = 1000;
  EXPECT_EQ(file_->placeOf(packet), std::nullopt);
}

TEST_F(SparseFileTest, EndsWithTheFile) {
  open(noise(kBlock));
  file_->leaveUnread(kBlock / 2);
  file_->beginPacket();
  Bytes memory(2 * kBlock);
  EXPECT_EQ(avio_read(file_->context(), memory.data(), 2 * kBlock), kBlock);
}

}  // namespace
