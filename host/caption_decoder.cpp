// SPDX-License-Identifier: BSD-2-Clause
#include "caption_decoder.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <new>

namespace nkdraw {
namespace {

// A cc_data triplet: 1111 1vtt, then two bytes; v valid, tt the kind.
constexpr std::size_t kTriplet = 3;
constexpr std::uint8_t kValid = 0x04;
constexpr std::uint8_t kKind = 0x03;

constexpr std::uint8_t kSevenBits = 0x7F;
constexpr std::uint8_t kNoData = 0x80;  // a zero with its parity bit

// The second field carries a data service (XDS) between its captions. Its packets begin with codes
// 1 to 14 and end with 15; they pause where the captions' own codes, 16 to 31, begin.
constexpr std::uint8_t kPacketEnd = 0x0F;
constexpr std::uint8_t kLastControl = 0x1F;

/// If its clock steps by much more or less than a frame of line 21, the decoder assumes lost data
/// and in the end clears the screen. So the clock runs at line 21's own rate, whatever the frame
/// rate.
constexpr double kStep = 1001.0 / 30000.0;

struct Channel {
  std::uint8_t field;
  vbi_pgno page;
};

// Both fields are decoded as if they were the first: only there does the decoder skip commands that
// are sent twice, and never mix up the two channels.
constexpr vbi_pgno kCaption = 1, kText = 5;
constexpr Channel kChannels[] = {
    {0, kCaption}, {0, kCaption + 1}, {1, kCaption}, {1, kCaption + 1},
    {0, kText},    {0, kText + 1},    {1, kText},    {1, kText + 1},
};

Channel channelOf(std::uint32_t type) {
  return type >= 1 && type <= std::size(kChannels) ? kChannels[type - 1] : kChannels[0];
}

bool hasOddParity(std::uint8_t byte) {
  return std::popcount(byte) % 2 == 1;
}

bool isBlank(const vbi_char& cell) {
  return cell.unicode == ' ';
}

}  // namespace

CaptionDecoder::CaptionDecoder() : decoder_(vbi_decoder_new()) {
  if (decoder_ == nullptr)
    throw std::bad_alloc();
}

void CaptionDecoder::setChannel(std::uint32_t type) {
  const Channel channel = channelOf(type);
  if (channel.field != field_) {
    if (vbi_decoder* const fresh = vbi_decoder_new())
      decoder_.reset(fresh);
    time_ = 0.0;
  }
  field_ = channel.field;
  pageNumber_ = channel.page;
  inDataService_ = false;
}

void CaptionDecoder::addFrame(std::span<const std::uint8_t> triplets) {
  bool any = false;
  for (; triplets.size() >= kTriplet; triplets = triplets.subspan(kTriplet)) {
    if ((triplets[0] & kValid) == 0 || (triplets[0] & kKind) != field_)
      continue;
    addPair(triplets[1], triplets[2]);
    any = true;
  }
  // A silent line 21 carries pairs of zeros; they tell the decoder that a word is finished.
  if (!any)
    decode(kNoData, kNoData);
}

/// Whether a pair with this first byte belongs to captions.
bool CaptionDecoder::isCaption(std::uint8_t first) {
  const std::uint8_t code = first & kSevenBits;
  if (field_ == 0 || code == 0)
    return true;
  if (code <= kPacketEnd) {
    inDataService_ = code != kPacketEnd;
    return false;
  }
  if (code <= kLastControl)
    inDataService_ = false;
  return !inDataService_;
}

void CaptionDecoder::addPair(std::uint8_t first, std::uint8_t second) {
  // A pair with wrong parity is dropped.
  if (hasOddParity(first) && hasOddParity(second) && isCaption(first))
    decode(first, second);
  else
    decode(kNoData, kNoData);
}

void CaptionDecoder::decode(std::uint8_t first, std::uint8_t second) {
  vbi_sliced line{};
  line.id = VBI_SLICED_CAPTION_525_F1;
  line.line = 21;
  line.data[0] = first;
  line.data[1] = second;
  time_ += kStep;
  vbi_decode(decoder_.get(), &line, 1, time_);
}

std::span<const vbi_char> CaptionDecoder::cells() {
  if (vbi_fetch_cc_page(decoder_.get(), &page_, pageNumber_, 1) == 0)
    return {};
  const std::span<const vbi_char> cells(page_.text, std::size_t{kColumns} * kRows);
  // The decoder shows a text channel as a full box from the start; here it waits for text.
  const bool emptyText = pageNumber_ >= kText && std::ranges::all_of(cells, isBlank);
  return emptyText ? std::span<const vbi_char>{} : cells;
}

}  // namespace nkdraw
