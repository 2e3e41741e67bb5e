// SPDX-License-Identifier: BSD-2-Clause
#include "media/dpx_header.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>

namespace nkdraw::media {
namespace {

using Header = std::span<std::uint8_t>;

// Places in the header.
constexpr std::size_t kImageOffset = 4, kFileSize = 16, kIndustrySize = 28;
constexpr std::size_t kColours = 801, kElementOffset = 808;
constexpr std::size_t kGenericEnd = 1664, kTimecode = 1920, kFrameRate = 1940, kEnd = 2048;

/// Numbers of the film and television parts, which are all ones where they are not known.
struct Part {
  std::size_t from, to;
};
constexpr Part kUnknownNumbers[] = {{1712, 1732}, {1928, 1931}, {1932, 1972}};

// Bits of a timecode's bytes in SMPTE ST 12-1 that belong to the digits; the frames have the flag
// of drop-frame behind them.
constexpr std::array<unsigned, 4> kDigits = {0x3F, 0x7F, 0x7F, 0x3F};
constexpr std::array<unsigned, 4> kLimits = {24, 60, 60, 60};
constexpr std::uint8_t kDropFlag = 0x40;
constexpr std::array<std::uint8_t, 4> kUnknown = {0xFF, 0xFF, 0xFF, 0xFF};

bool isBigEndian(std::span<const std::uint8_t> header) {
  return header[0] == 'S';
}

bool isDPX(std::span<const std::uint8_t> header) {
  return header.size() >= kGenericEnd &&
         (std::memcmp(header.data(), "SDPX", 4) == 0 || std::memcmp(header.data(), "XPDS", 4) == 0);
}

/// The four bytes at `place`, the most significant first.
std::array<std::uint8_t, 4> wordAt(std::span<const std::uint8_t> header, std::size_t place) {
  std::array<std::uint8_t, 4> bytes{};
  std::ranges::copy(header.subspan(place, bytes.size()), bytes.begin());
  if (!isBigEndian(header))
    std::ranges::reverse(bytes);
  return bytes;
}

std::uint32_t numberAt(std::span<const std::uint8_t> header, std::size_t place) {
  std::uint32_t number = 0;
  for (const std::uint8_t byte : wordAt(header, place))
    number = number << 8 | byte;
  return number;
}

void putWord(Header header, std::size_t place, std::array<std::uint8_t, 4> bytes) {
  if (!isBigEndian(header))
    std::ranges::reverse(bytes);
  std::ranges::copy(bytes, header.subspan(place).begin());
}

void putNumber(Header header, std::size_t place, std::size_t number) {
  putWord(header, place,
          {static_cast<std::uint8_t>(number >> 24), static_cast<std::uint8_t>(number >> 16),
           static_cast<std::uint8_t>(number >> 8), static_cast<std::uint8_t>(number)});
}

/// Binary-coded decimals; none for what are no digits of a timecode.
std::optional<std::string> textOf(const std::array<std::uint8_t, 4>& word) {
  std::array<unsigned, 4> values{};
  for (std::size_t i = 0; i < word.size(); ++i) {
    const unsigned digits = word[i] & kDigits[i];
    values[i] = (digits >> 4) * 10 + (digits & 0xF);
    if ((digits & 0xF) > 9 || values[i] >= kLimits[i])
      return std::nullopt;
  }
  char text[16];
  std::snprintf(text, sizeof text, "%02u:%02u:%02u%c%02u", values[0], values[1], values[2],
                (word[3] & kDropFlag) != 0 ? ';' : ':', values[3]);
  return text;
}

/// Of a text as timecodes are written in this library: two digits each.
std::array<std::uint8_t, 4> wordOf(const std::string& timecode) {
  std::array<std::uint8_t, 4> word{};
  for (std::size_t i = 0; i < word.size(); ++i)
    word[i] =
        static_cast<std::uint8_t>((timecode.at(3 * i) - '0') << 4 | (timecode.at(3 * i + 1) - '0'));
  if (timecode[8] == ';')
    word[3] |= kDropFlag;
  return word;
}

/// Whole, or whole thousands in 1001 seconds; 0 for what is no frame rate.
AVRational rateOf(double perSecond) {
  constexpr double kMost = 1000.0, kNear = 1e-3;
  if (!(perSecond >= 1.0 && perSecond <= kMost))
    return {0, 1};
  const double broadcast = perSecond * 1.001;
  const auto whole = static_cast<int>(std::lround(perSecond));
  const auto thousands = static_cast<int>(std::lround(broadcast));
  if (std::abs(perSecond - whole) < kNear)
    return {whole, 1};
  return std::abs(broadcast - thousands) < kNear ? AVRational{thousands * 1000, 1001}
                                                 : av_d2q(perSecond, 1 << 12);
}

/// The parts for film and television, in which nothing is known.
void insertIndustryParts(std::vector<std::uint8_t>& file) {
  constexpr std::size_t kAdded = kEnd - kGenericEnd;
  file.insert(file.begin() + kGenericEnd, kAdded, 0);
  for (const Part& part : kUnknownNumbers)
    std::fill(file.begin() + static_cast<std::ptrdiff_t>(part.from),
              file.begin() + static_cast<std::ptrdiff_t>(part.to), std::uint8_t{0xFF});
  const std::size_t offset = numberAt(file, kImageOffset) + kAdded;
  putNumber(file, kImageOffset, offset);
  putNumber(file, kElementOffset, offset);
  putNumber(file, kFileSize, file.size());
  putNumber(file, kIndustrySize, kAdded);
}

}  // namespace

bool countsInDPX(AVRational rate) {
  return av_cmp_q(rate, {30, 1}) <= 0;
}

DPXFacts readDPX(const std::string& file) {
  std::vector<std::uint8_t> header(kEnd);
  std::ifstream stream(file, std::ios::binary);
  stream.read(reinterpret_cast<char*>(header.data()), static_cast<std::streamsize>(header.size()));
  header.resize(static_cast<std::size_t>(stream.gcount()));
  DPXFacts facts;
  if (!isDPX(header))
    return facts;
  facts.colours = {header[kColours], header[kColours + 1]};
  if (header.size() < kEnd || numberAt(header, kImageOffset) < kEnd)
    return facts;
  facts.timecode = textOf(wordAt(header, kTimecode));
  facts.rate = rateOf(std::bit_cast<float>(numberAt(header, kFrameRate)));
  return facts;
}

std::vector<std::uint8_t> withFacts(std::span<const std::uint8_t> bytes, const DPXFacts& facts) {
  std::vector<std::uint8_t> file(bytes.begin(), bytes.end());
  if (!isDPX(file))
    return file;
  if (facts.colours)
    std::ranges::copy(*facts.colours, file.begin() + kColours);
  if (numberAt(file, kImageOffset) < kEnd)
    insertIndustryParts(file);
  const bool isTold = facts.timecode && countsInDPX(facts.rate);
  putWord(file, kTimecode, isTold ? wordOf(*facts.timecode) : kUnknown);
  if (facts.rate.num > 0)
    putNumber(file, kFrameRate,
              std::bit_cast<std::uint32_t>(static_cast<float>(av_q2d(facts.rate))));
  return file;
}

}  // namespace nkdraw::media
