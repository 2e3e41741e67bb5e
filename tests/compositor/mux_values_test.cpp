// SPDX-License-Identifier: BSD-2-Clause
//
// Results of the multiplexed display, as literal values.
#include "mux_frames.h"

#include <gtest/gtest.h>

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace {

using nkdraw::test::MuxBuffers;
using nkdraw::test::MuxCall;
using nkdraw::test::setWord;
using nkdraw::test::wordAt;

/// A call on two frames of one word each.
MuxCall flatCall(std::uint32_t mode, std::uint32_t width = 6, std::uint32_t height = 4) {
  MuxCall call;
  call.mode = mode;
  call.width = width;
  call.height = height;
  call.pitch = 4 * width;
  call.sizeA = call.sizeB = call.pitch * height;
  return call;
}

void fillWords(nkdraw::test::Frame& frame, std::uint32_t word) {
  for (std::size_t i = 0; i + 4 <= frame.bytes().size(); i += 4)
    setWord(frame.data() + i, word);
  frame.remember();
}

/// The pixel at 0, 0 of two flat frames.
std::uint32_t shown(const MuxCall& call, std::uint32_t first, std::uint32_t second) {
  MuxBuffers buffers(call);
  fillWords(buffers.a, first);
  fillWords(buffers.b, second);
  buffers.show(call);
  return wordAt(buffers.dst.data());
}

/// Rows of `width` letters, for frames whose pixels are one letter four times.
std::vector<std::string> letters(const MuxCall& call, MuxBuffers& buffers, std::uint32_t rows) {
  std::vector<std::string> picture(rows);
  for (std::uint32_t y = 0; y < rows; ++y) {
    for (std::uint32_t x = 0; x < call.width; ++x)
      picture[y] += static_cast<char>(*buffers.pixel(call, x, y));
  }
  return picture;
}

/// Shows a frame of capital letters and one of small ones, column by column or row by row.
std::vector<std::string> picture(const MuxCall& call, bool byRow, std::uint32_t rows) {
  MuxBuffers buffers(call);
  fillWords(buffers.dst, 0x2E2E2E2E);
  for (std::uint32_t y = 0; y <= call.height; ++y) {
    for (std::uint32_t x = 0; x < call.width; ++x) {
      const std::uint32_t place = byRow ? y : x;
      setWord(buffers.a.data() + call.pitch * y + 4 * x, 0x01010101 * ('A' + place));
      setWord(buffers.b.data() + call.pitch * y + 4 * x, 0x01010101 * ('a' + place));
    }
  }
  buffers.show(call);
  return letters(call, buffers, rows);
}

std::vector<std::string> columns(const MuxCall& call) {
  return picture(call, false, call.height);
}
std::vector<std::string> rows(const MuxCall& call) {
  return picture(call, true, call.height);
}

using Picture = std::vector<std::string>;

constexpr std::uint32_t kMark = 1U << 27, kOtherWay = 1U << 28, kSwap = 1U << 31;

/// Memory directly before or directly after a page that faults.
class FencedBlock {
 public:
  FencedBlock(std::size_t bytes, bool atEnd)
      : page_(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))),
        inside_((bytes + page_ - 1) / page_ * page_),
        memory_(static_cast<std::uint8_t*>(
            mmap(nullptr, inside_ + 2 * page_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))),
        start_(page_ + (atEnd ? inside_ - bytes : 0)) {
    EXPECT_EQ(mprotect(memory_ + page_, inside_, PROT_READ | PROT_WRITE), 0);
  }
  ~FencedBlock() { munmap(memory_, inside_ + 2 * page_); }
  FencedBlock(const FencedBlock&) = delete;
  FencedBlock& operator=(const FencedBlock&) = delete;

  [[nodiscard]] std::uint8_t* data() const { return memory_ + start_; }

 private:
  std::size_t page_, inside_;
  std::uint8_t* memory_;
  std::size_t start_;
};

TEST(MuxPlain, IsASumOfTwoModesAndNeitherOfThem) {
  EXPECT_EQ(shown(flatCall(6), 0x11223344, 0x55667788), 0x11223344U);
  EXPECT_EQ(shown(flatCall(2), 0x11223344, 0x55667788), 0x55667788U);
  EXPECT_EQ(shown(flatCall(4), 0x11223344, 0x55667788), 0x00220088U);
}

TEST(MuxPlain, CopiesSizeABytesOfTheOtherInputWhenSwapped) {
  MuxCall call = flatCall(kSwap);
  call.sizeA = 7;
  call.sizeB = 30;
  MuxBuffers buffers(call);
  fillWords(buffers.dst, 0x2E2E2E2E);
  buffers.show(call);
  EXPECT_TRUE(std::ranges::equal(buffers.dst.bytes().first(7), buffers.b.bytes().first(7)));
  EXPECT_EQ(buffers.dst[7], 0x2E);
}

TEST(MuxSecond, CopiesSizeBBytesOfTheFirstInputWhenSwapped) {
  MuxCall call = flatCall(2 | kSwap);
  call.sizeA = 7;
  call.sizeB = 30;
  MuxBuffers buffers(call);
  fillWords(buffers.dst, 0x2E2E2E2E);
  buffers.show(call);
  EXPECT_TRUE(std::ranges::equal(buffers.dst.bytes().first(30), buffers.a.bytes().first(30)));
  EXPECT_EQ(buffers.dst[30], 0x2E);
}

TEST(MuxChannels, TakeTheirBytesByPlace) {
  EXPECT_EQ(shown(flatCall(4), 0x11223344, 0x55667788), 0x00220088U);
  EXPECT_EQ(shown(flatCall(8), 0x11223344, 0x55667788), 0x11227788U);
  EXPECT_EQ(shown(flatCall(16), 0x11223344, 0x55667788), 0x11223388U);
  EXPECT_EQ(shown(flatCall(32), 0x11223344, 0x55667788), 0x11663388U);
}

TEST(MuxAverage, OfTwoOddBytesIsOneLower) {
  EXPECT_EQ(shown(flatCall(128), 0xFF01FE03, 0xFF01FF04), 0xFE00FE03U);
}

TEST(MuxDifference, IsTheLargestSignedOneAround128) {
  EXPECT_EQ(shown(flatCall(256), 0x00102030, 0xFF102030), 0x00808080U);  // byte 3 takes no part
  EXPECT_EQ(shown(flatCall(256), 0x00000000, 0x00FFFFFF), 0x00010101U);  // -128, limited
  EXPECT_EQ(shown(flatCall(256), 0x00FFFFFF, 0x00000000), 0x00FFFFFFU);
  EXPECT_EQ(shown(flatCall(256), 0x00000000, 0x00010203), 0x007F7F7FU);  // towards the lower
  EXPECT_EQ(shown(flatCall(256), 0x00000800, 0x00FF00FF), 0x00848484U);
}

TEST(MuxDifference, IsAmplifiedByThresholdsFrom2To255Alone) {
  for (const auto& [threshold, grey] : {std::pair{0U, 0x83U},
                                        {1U, 0x83U},
                                        {2U, 0x86U},
                                        {42U, 0xFEU},
                                        {43U, 0xFFU},
                                        {255U, 0xFFU},
                                        {256U, 0x83U},
                                        {0xFFFFFFFFU, 0x83U}}) {
    MuxCall call = flatCall(256);
    call.threshold = threshold;
    EXPECT_EQ(shown(call, 0x00060606, 0x00000000), grey * 0x010101) << threshold;
  }
}

TEST(MuxCompare, ShowsTheSecondWhereAllFourBytesAreNear) {
  MuxCall call = flatCall(16384);
  call.threshold = 2;
  EXPECT_EQ(shown(call, 0x10203040, 0x12223242), 0x12223242U);
  EXPECT_EQ(shown(call, 0x12223242, 0x10203040), 0x10203040U);
  EXPECT_EQ(shown(call, 0x10203040, 0x10203043), 0U);
  EXPECT_EQ(shown(call, 0x10203040, 0x13203040), 0U);  // the fourth byte takes part
  call.mode |= kSwap;
  EXPECT_EQ(shown(call, 0x10203040, 0x13203040), 0xFFFFFFFFU);
  EXPECT_EQ(shown(call, 0x10203040, 0x11203040), 0x10203040U);
}

TEST(MuxFadeAndWipe, RunInOppositeDirections) {
  MuxCall fade = flatCall(32768), wipe = flatCall(65536);
  wipe.wipe = 0;
  EXPECT_EQ(shown(fade, 0x10203040, 0x50607080), 0x50607080U);
  EXPECT_EQ(shown(wipe, 0x10203040, 0x50607080), 0x10203040U);
  fade.amount = wipe.amount = 65536;
  EXPECT_EQ(shown(fade, 0x10203040, 0x50607080), 0x10203040U);
  EXPECT_EQ(shown(wipe, 0x10203040, 0x50607080), 0x50607080U);
  fade.amount = 0x4000;
  EXPECT_EQ(shown(fade, 0x10203040, 0x50607080), 0x40506070U);
}

TEST(MuxFade, WrapsInsteadOfClampingAboveTheWholeWeight) {
  MuxCall call = flatCall(32768);
  call.amount = 273 << 8;                                       // weights 273 and -17
  EXPECT_EQ(shown(call, 0x000000FF, 0x00000000), 0x0000000FU);  // 255 * 273 >> 8 is 0x10F
  EXPECT_EQ(shown(call, 0x00000000, 0x000000FF), 0x000000EFU);
}

TEST(MuxGrey, PicksTheByteByTheThreshold) {
  for (const auto& [threshold, grey] : {std::pair{0xFF000000U, 0x11U},
                                        {0x00FF0000U, 0x22U},
                                        {0x0000FF00U, 0x33U},
                                        {0x000000FFU, 0x45U},
                                        {0U, 0x33U},
                                        {0xFFFFFFFFU, 0x33U},
                                        {0x00FF00FFU, 0x33U}}) {
    MuxCall call = flatCall(8388608);
    call.threshold = threshold;
    EXPECT_EQ(shown(call, 0x11223345, 0), grey * 0x01010101) << std::hex << threshold;
  }
}

TEST(MuxGrey, NeedsNoSecondFrame) {
  for (const std::uint32_t threshold : {0xFF000000U, 0U}) {
    MuxCall call = flatCall(8388608);
    call.threshold = threshold;
    MuxBuffers buffers(call);
    fillWords(buffers.a, 0x11111111);
    EXPECT_EQ(display(call, buffers.a.data(), nullptr, buffers.dst.data()), 0U);
    EXPECT_EQ(wordAt(buffers.dst.data()), 0x11111111U);
  }
}

TEST(MuxInterleave, TakesRowsOrColumnsInTurn) {
  EXPECT_EQ(rows(flatCall(64, 3, 4)), (Picture{"AAA", "bbb", "CCC", "ddd"}));
  EXPECT_EQ(columns(flatCall(64 | kOtherWay, 4, 2)), (Picture{"AbCd", "AbCd"}));
}

TEST(MuxInterleave, LeavesTheLastColumnOfAnOddWidthAsItWas) {
  EXPECT_EQ(columns(flatCall(64 | kOtherWay, 5, 1)), (Picture{"AbCd."}));
}

TEST(MuxInterleave, ReachesOneRowPastAnOddHeight) {
  const MuxCall call = flatCall(64, 2, 3);
  EXPECT_EQ(picture(call, true, 4), (Picture{"AA", "bb", "CC", "dd"}));
  MuxBuffers buffers(call);
  buffers.show(call);
  EXPECT_LT(buffers.dst.changed().back(), std::ptrdiff_t{4 * 8});
}

TEST(MuxChecker, TakesPixelsInTurnAndRowsTheOtherWayRound) {
  EXPECT_EQ(columns(flatCall(262144, 4, 4)), (Picture{"AbCd", "aBcD", "AbCd", "aBcD"}));
}

TEST(MuxChecker, ReachesOneRowPastAnOddHeightAndOnePixelPastAnOddWidth) {
  EXPECT_EQ(picture(flatCall(262144, 2, 1), true, 2), (Picture{"Aa", "bB"}));
  MuxCall call = flatCall(262144, 3, 2);
  call.pitch = 20;
  MuxBuffers buffers(call);
  buffers.show(call);
  EXPECT_EQ(wordAt(buffers.pixel(call, 3, 0)), wordAt(buffers.b.data() + 12));
  EXPECT_EQ(wordAt(buffers.pixel(call, 3, 1)), wordAt(buffers.a.data() + 32));
  for (const std::ptrdiff_t at : buffers.dst.changed())
    EXPECT_LT(at % 20, 16);
}

TEST(MuxBlocks, AreOnePixelBelow256AndNeverMoreThan100) {
  MuxCall call = flatCall(524288, 4, 2);
  for (const std::uint32_t amount : {0U, 255U, 256U, 511U}) {
    call.amount = amount;
    EXPECT_EQ(columns(call), (Picture{"AbCd", "aBcD"})) << amount;
  }
  call = flatCall(524288, 201, 101);
  for (const std::uint32_t amount : {100U << 8, 101U << 8, 65536U, 0xFFFFFFFFU}) {
    call.amount = amount;
    MuxBuffers buffers(call);
    fillWords(buffers.a, 0x41414141);
    fillWords(buffers.b, 0x61616161);
    buffers.show(call);
    const std::string row = std::string(100, 'A') + std::string(100, 'a') + "A";
    const std::string other = std::string(100, 'a') + std::string(100, 'A') + "a";
    const Picture shownRows = letters(call, buffers, 101);
    EXPECT_EQ(shownRows[99], row) << amount;
    EXPECT_EQ(shownRows[100], other) << amount;
  }
}

TEST(MuxOverAndUnder, ShowsEveryOtherRowOfBothAndLeavesALastOddRow) {
  EXPECT_EQ(rows(flatCall(512, 1, 4)), (Picture{"A", "C", "a", "c"}));
  EXPECT_EQ(rows(flatCall(512, 1, 5)), (Picture{"A", "C", "a", "c", "."}));
}

TEST(MuxSideBySide, ShowsEveryOtherColumnOfBoth) {
  EXPECT_EQ(columns(flatCall(1024, 6, 2)), (Picture{"ACEace", "ACEace"}));
}

TEST(MuxSideBySide, BeginsTheRightHalfInsideAPixelWhenTheWidthIsOdd) {
  const MuxCall call = flatCall(1024, 3, 1);
  MuxBuffers buffers(call);
  buffers.show(call);
  EXPECT_EQ(wordAt(buffers.dst.data()), wordAt(buffers.a.data()));
  EXPECT_EQ(wordAt(buffers.dst.data() + 6), wordAt(buffers.b.data()));
  for (const std::ptrdiff_t at : buffers.dst.changed())
    EXPECT_TRUE(at < 4 || (at >= 6 && at < 10)) << at;
}

TEST(MuxSideBySide, TakesRowsAsPackedWhateverThePitch) {
  MuxCall call = flatCall(1024, 2, 2);
  call.pitch = 100;
  MuxBuffers buffers(call);
  buffers.show(call);
  EXPECT_EQ(wordAt(buffers.dst.data() + 8), wordAt(buffers.a.data() + 8));
  EXPECT_EQ(wordAt(buffers.dst.data() + 12), wordAt(buffers.b.data() + 8));
}

TEST(MuxSplit, IsInTheMiddleForAPlaceBeyondTheFrame) {
  MuxCall call = flatCall(2048, 5, 1);
  call.splitX = 3;
  EXPECT_EQ(columns(call), (Picture{"ABCde"}));
  call.splitX = 5;
  EXPECT_EQ(columns(call), (Picture{"ABCDE"}));
  call.splitX = 6;
  EXPECT_EQ(columns(call), (Picture{"ABcde"}));
  call = flatCall(2048 | kOtherWay, 1, 3);
  call.splitY = 4;
  EXPECT_EQ(rows(call), (Picture{"A", "b", "c"}));
}

TEST(MuxSplit, MarksItsFirstColumnOrRowOfTheSecond) {
  MuxCall call = flatCall(2048 | kMark, 3, 2);
  call.splitX = call.splitY = 1;
  EXPECT_EQ(columns(call), (Picture{"A\x80"
                                    "c",
                                    "A\x80"
                                    "c"}));
  call.mode |= kOtherWay;
  EXPECT_EQ(rows(call), (Picture{"AAA", "\x80\x80\x80"}));
}

TEST(MuxSplit, MarksThePixelBehindTheRowForASplitAtTheWidth) {
  MuxCall call = flatCall(2048 | kMark, 3, 2);
  call.pitch = 20;
  call.splitX = 3;
  MuxBuffers buffers(call);
  buffers.show(call);
  EXPECT_EQ(wordAt(buffers.pixel(call, 3, 0)), 0x80808080U);
  EXPECT_EQ(wordAt(buffers.pixel(call, 3, 1)), 0x80808080U);
  for (const std::ptrdiff_t at : buffers.dst.changed())
    EXPECT_LT(at % 20, 16);
}

TEST(MuxSplit, MarksNoRowForASplitAtTheHeight) {
  MuxCall call = flatCall(2048 | kMark | kOtherWay, 3, 2);
  call.splitY = 2;
  EXPECT_EQ(picture(call, true, 3), (Picture{"AAA", "BBB", "..."}));
}

TEST(MuxMirror, ShowsTheSecondsOtherHalfReversed) {
  EXPECT_EQ(columns(flatCall(4096, 6, 1)), (Picture{"ABCdcb"}));
  EXPECT_EQ(columns(flatCall(8192, 5, 1)), (Picture{"ABcba"}));
  EXPECT_EQ(rows(flatCall(4096 | kOtherWay, 1, 6)), (Picture{"A", "B", "C", "d", "c", "b"}));
  EXPECT_EQ(rows(flatCall(8192 | kOtherWay, 1, 5)), (Picture{"A", "B", "c", "b", "a"}));
}

TEST(MuxQuarterPair, ShowsBothAtHalfSizeInTheMiddleOfBlack) {
  const std::string black(4, '\0');
  EXPECT_EQ(columns(flatCall(1048576, 4, 4)), (Picture{black, "ACac", "ACac", black}));
}

TEST(MuxQuarterPair, GivesTheMiddleColumnOfAnOddWidthToTheFirst) {
  EXPECT_EQ(columns(flatCall(1048576, 5, 1)), (Picture{"ACEce"}));
}

TEST(MuxQuarterPair, GivesASingleColumnToTheSecond) {
  EXPECT_EQ(columns(flatCall(1048576, 1, 1)), (Picture{"a"}));
}

TEST(MuxCropPair, ShowsAWindowOfEachHalfAsWide) {
  MuxCall call = flatCall(2097152, 6, 1);
  call.splitX = 2;
  EXPECT_EQ(columns(call), (Picture{"CDEcde"}));
  call.splitX = 100;
  EXPECT_EQ(columns(call), (Picture{"DEFdef"}));
  call = flatCall(2097152, 5, 1);
  EXPECT_EQ(columns(call), (Picture{std::string("ABab") + '\0'}));
}

TEST(MuxCropPair, ShowsAWindowOfEachHalfAsHigh) {
  MuxCall call = flatCall(2097152 | kOtherWay, 2, 4);
  call.splitY = 1;
  EXPECT_EQ(rows(call), (Picture{"BB", "CC", "bb", "cc"}));
  call.splitY = 100;
  EXPECT_EQ(rows(call), (Picture{"CC", "DD", "cc", "dd"}));
}

TEST(MuxCropPair, BeginsTheLowerHalfInsideARowWhenTheHeightIsOdd) {
  const std::string z(1, '\0');
  EXPECT_EQ(rows(flatCall(2097152 | kOtherWay, 2, 3)), (Picture{"AA", z + "a", "a" + z}));
}

TEST(MuxFlips, StayInTheInputsForALaterCall) {
  MuxCall call = flatCall(0, 3, 2);
  call.mode = 1U << 29;
  MuxBuffers buffers(call);
  const std::uint32_t corner = wordAt(buffers.a.data()), right = wordAt(buffers.a.data() + 8);
  buffers.show(call);
  EXPECT_EQ(wordAt(buffers.dst.data()), right);
  EXPECT_EQ(wordAt(buffers.a.data()), right);
  buffers.show(call);
  EXPECT_EQ(wordAt(buffers.dst.data()), corner);
}

TEST(MuxFlips, ActOnTheFramesAsSwapped) {
  const auto changesOf = [](std::uint32_t flags) {
    const MuxCall call = flatCall(flags, 3, 2);
    MuxBuffers buffers(call);
    nkdraw::test::Frame a = buffers.a, b = buffers.b;
    buffers.show(call);
    return std::pair(buffers.a.all() != a.all(), buffers.b.all() != b.all());
  };
  for (const int ofFirst : {29, 30}) {
    EXPECT_EQ(changesOf(1U << ofFirst), std::pair(true, false));
    EXPECT_EQ(changesOf(kSwap | 1U << ofFirst), std::pair(false, true));
  }
  for (const int ofSecond : {25, 26}) {
    EXPECT_EQ(changesOf(1U << ofSecond), std::pair(false, true));
    EXPECT_EQ(changesOf(kSwap | 1U << ofSecond), std::pair(true, false));
  }
}

TEST(MuxGrid, LiesInPercentOrInPixels) {
  MuxCall call = flatCall(2, 8, 4);
  call.sizeB = 0;
  call.gridX = 50;  // two cells
  call.gridY = 3;
  call.mode |= 1U << 24;
  const Picture percent = {"\xBF\xBF\xBF\xBF\xBF\xBF\xBF\xBF", "\xBF...\xBF...",
                           "\xBF\xBF\xBF\xBF\xBF\xBF\xBF\xBF", "\xBF...\xBF..."};
  EXPECT_EQ(columns(call), percent);
  call.gridType = 1;
  EXPECT_EQ(columns(call), percent);
  call.gridType = 2;
  call.gridX = 5;
  EXPECT_EQ(columns(call), (Picture{"\xBF\xBF\xBF\xBF\xBF\xBF\xBF\xBF", "\xBF....\xBF..",
                                    "\xBF....\xBF..", "\xBF\xBF\xBF\xBF\xBF\xBF\xBF\xBF"}));
}

TEST(MuxGrid, FillsALinesRowToThePitch) {
  MuxCall call = flatCall(2, 2, 3);
  call.sizeB = 0;
  call.pitch = 13;
  call.gridType = 2;
  call.gridX = call.gridY = 100;
  MuxBuffers buffers(call);
  buffers.show(call);
  EXPECT_TRUE(std::ranges::all_of(buffers.dst.bytes().first(13),
                                  [](std::uint8_t byte) { return byte == 0xBF; }));
  for (const std::ptrdiff_t at : buffers.dst.changed())
    EXPECT_TRUE(at < 13 || at % 13 < 4) << at;
}

TEST(MuxGrid, IsNotDrawnWhereItsStepDownCannotBeTold) {
  struct Settings {
    std::uint32_t type, x, y;
  };
  for (const Settings& settings : {Settings{1, 0, 1}, {1, 101, 1}, {1, 1, 1}, {2, 3, 0}}) {
    MuxCall call = flatCall(2, 200, 3);
    call.sizeB = 0;
    call.gridType = settings.type;
    call.gridX = settings.x;
    call.gridY = settings.y;
    MuxBuffers buffers(call);
    EXPECT_EQ(buffers.show(call), 0U);
    EXPECT_TRUE(buffers.dst.untouched()) << settings.type << " " << settings.x;
  }
}

TEST(MuxGrid, WithoutAStepAcrossHasItsFirstColumnAlone) {
  MuxCall call = flatCall(2, 3, 3);
  call.sizeB = 0;
  call.gridType = 2;
  call.gridX = 0;
  call.gridY = 2;
  EXPECT_EQ(columns(call), (Picture{"\xBF\xBF\xBF", "\xBF..", "\xBF\xBF\xBF"}));
}

TEST(MuxGrid, CoversEveryRowWhenThereAreAsManyCellsAsRowsAndMoreThanColumns) {
  MuxCall call = flatCall(2, 3, 4);
  call.sizeB = 0;
  call.gridType = 1;
  call.gridX = 25;
  EXPECT_EQ(columns(call), Picture(4, "\xBF\xBF\xBF"));
}

TEST(Mux, ReadsAndWritesNoByteThatAModeHasNoNeedOf) {
  struct Need {
    std::uint32_t mode, width, height;
    std::size_t bytes;  // of all three frames, with a pitch of 4 * width + 3
  };
  // A frame ends with its last pixel; where rows are copied by the pitch, with its last row.
  constexpr Need kNeeds[] = {
      {4, 7, 3, 2 * 31 + 28},
      {128, 7, 3, 2 * 31 + 28},
      {256, 7, 3, 2 * 31 + 28},
      {16384, 7, 3, 2 * 31 + 28},
      {32768, 7, 3, 2 * 31 + 28},
      {8388608, 7, 3, 2 * 31 + 28},
      {524288, 7, 3, 2 * 31 + 28},
      {4096, 7, 3, 2 * 31 + 28},
      {2048, 7, 3, 2 * 31 + 28},
      {64, 7, 3, 4 * 31},
      {64 | kOtherWay, 7, 3, 2 * 31 + 28},
      {512, 7, 3, 3 * 31},
      {1024, 7, 3, 3 * 28},
      {262144, 7, 3, 3 * 31 + 32},
      {1048576, 7, 3, 3 * 28},
      {2097152, 7, 3, 3 * 28},
      {2097152 | kOtherWay, 7, 3, 3 * 28},
      {4096 | kOtherWay, 7, 3, 2 * 31 + 28},
      {1U << 25 | 1U << 26 | 1U << 29 | 1U << 30, 7, 3, 2 * 31 + 28},
  };
  for (const Need& need : kNeeds) {
    MuxCall call = flatCall(need.mode, need.width, need.height);
    call.pitch = 31;
    call.sizeA = call.sizeB = static_cast<std::uint32_t>(need.bytes);
    for (const bool atEnd : {true, false}) {
      const FencedBlock a(need.bytes, atEnd), b(need.bytes, atEnd), dst(need.bytes, atEnd);
      EXPECT_EQ(display(call, a.data(), b.data(), dst.data()), 0U);  // a byte beyond would fault
    }
  }
}

}  // namespace
