// SPDX-License-Identifier: BSD-2-Clause
//
// Every named number is the documented one, written out.
#include <nkdraw/constants.h>
#include <nkdraw/platform/sync.h>
#include <nkdraw/surface/factory.h>

#include <gtest/gtest.h>

namespace {

struct Named {
  const char* name;
  std::uint32_t named, number;
};

void expectAll(std::initializer_list<Named> rows) {
  for (const Named& row : rows)
    EXPECT_EQ(row.named, row.number) << row.name;
}

TEST(Constants, WithATypeOfTheirOwn) {
  expectAll({
      {"NKStatusRefused", NKStatusRefused, 0xFFFFFFFF},
      {"NKStatusNoSurface", NKStatusNoSurface, 0xFFFFFFFE},
      {"NKWaitFailed", NKWaitFailed, 0xFFFFFFFF},
      {"NKForever", NKForever, 0xFFFFFFFF},
      {"NKOnlyRead", NKOnlyRead, 0xFFFFFFFF},
      {"NKWipeSwap", NKWipeSwap, 0x80000000},
      {"NKMuxSwap", NKMuxSwap, 0x80000000},
      {"NKMuxWhole", NKMuxWhole, 65536},
  });
}

TEST(Constants, Statuses) {
  expectAll({
      {"NKStatusOk", NKStatusOk, 0},
      {"NKLockTimedOut", NKLockTimedOut, 0},
      {"NKLockTaken", NKLockTaken, 128},
      {"NKTryLockBusy", NKTryLockBusy, 0},
      {"NKTryLockTaken", NKTryLockTaken, 1},
      {"NKWaitSignalled", NKWaitSignalled, 0},
      {"NKWaitTimedOut", NKWaitTimedOut, 258},
  });
}

TEST(Constants, Wipes) {
  expectAll({
      {"NKWipeDissolve", NKWipeDissolve, 0},
      {"NKWipeEdgeHorz", NKWipeEdgeHorz, 1},
      {"NKWipeEdgeVert", NKWipeEdgeVert, 2},
      {"NKWipeCornerTL", NKWipeCornerTL, 3},
      {"NKWipeCornerTR", NKWipeCornerTR, 4},
      {"NKWipeCornerBR", NKWipeCornerBR, 5},
      {"NKWipeCornerBL", NKWipeCornerBL, 6},
      {"NKWipeFourCorners", NKWipeFourCorners, 7},
      {"NKWipeBoxIn", NKWipeBoxIn, 8},
      {"NKWipeBarnDoorVert", NKWipeBarnDoorVert, 21},
      {"NKWipeBarnDoorHorz", NKWipeBarnDoorHorz, 22},
      {"NKWipeBoxTop", NKWipeBoxTop, 23},
      {"NKWipeBoxRight", NKWipeBoxRight, 24},
      {"NKWipeBoxBottom", NKWipeBoxBottom, 25},
      {"NKWipeBoxLeft", NKWipeBoxLeft, 26},
      {"NKWipeIris", NKWipeIris, 41},
      {"NKWipeSlideUp", NKWipeSlideUp, 500},
      {"NKWipeSlideLeft", NKWipeSlideLeft, 501},
      {"NKWipeSlideDown", NKWipeSlideDown, 502},
      {"NKWipeSlideRight", NKWipeSlideRight, 503},
  });
}

TEST(Constants, RangesOfWipes) {
  expectAll({
      {"NKWipeFirstSlide", NKWipeFirstSlide, 500},
      {"NKWipeLastSlide", NKWipeLastSlide, 507},
      {"NKWipeFirstEmpty", NKWipeFirstEmpty, 508},
      {"NKWipeLastEmpty", NKWipeLastEmpty, 515},
      {"NKWipeLastNumber", NKWipeLastNumber, 0x7FFFFFFF},
  });
}

TEST(Constants, ModesAndFlagsOfTheDisplay) {
  expectAll({
      {"NKMuxPlain", NKMuxPlain, 1},
      {"NKMuxSecond", NKMuxSecond, 2},
      {"NKMuxRedBlue", NKMuxRedBlue, 4},
      {"NKMuxRedCyan", NKMuxRedCyan, 8},
      {"NKMuxYellowBlue", NKMuxYellowBlue, 16},
      {"NKMuxGreenMagenta", NKMuxGreenMagenta, 32},
      {"NKMuxInterleave", NKMuxInterleave, 64},
      {"NKMuxAverage", NKMuxAverage, 128},
      {"NKMuxDifference", NKMuxDifference, 256},
      {"NKMuxOverUnder", NKMuxOverUnder, 512},
      {"NKMuxSideBySide", NKMuxSideBySide, 1024},
      {"NKMuxSplit", NKMuxSplit, 2048},
      {"NKMuxMirror", NKMuxMirror, 4096},
      {"NKMuxMirrorToo", NKMuxMirrorToo, 8192},
      {"NKMuxCompare", NKMuxCompare, 16384},
      {"NKMuxFade", NKMuxFade, 32768},
      {"NKMuxWipe", NKMuxWipe, 65536},
      {"NKMuxChecker", NKMuxChecker, 262144},
      {"NKMuxBlocks", NKMuxBlocks, 524288},
      {"NKMuxQuarterPair", NKMuxQuarterPair, 1048576},
      {"NKMuxCropPair", NKMuxCropPair, 2097152},
      {"NKMuxGrey", NKMuxGrey, 8388608},
      {"NKMuxValueMask", NKMuxValueMask, 0x00FFFFFF},
      {"NKMuxGrid", NKMuxGrid, 0x01000000},
      {"NKMuxFlipSecondHorz", NKMuxFlipSecondHorz, 0x02000000},
      {"NKMuxFlipSecondVert", NKMuxFlipSecondVert, 0x04000000},
      {"NKMuxMarkSplit", NKMuxMarkSplit, 0x08000000},
      {"NKMuxOtherWay", NKMuxOtherWay, 0x10000000},
      {"NKMuxFlipFirstHorz", NKMuxFlipFirstHorz, 0x20000000},
      {"NKMuxFlipFirstVert", NKMuxFlipFirstVert, 0x40000000},
  });
}

TEST(Constants, GridsOfTheDisplay) {
  expectAll({
      {"NKGridNone", NKGridNone, 0},
      {"NKGridPercent", NKGridPercent, 1},
      {"NKGridPixels", NKGridPixels, 2},
  });
}

TEST(Constants, ScanFlags) {
  expectAll({
      {"NKScanMask", NKScanMask, 0x300},
      {"NKScanInterlaced", NKScanInterlaced, 0x100},
      {"NKScanSegmented", NKScanSegmented, 0x200},
  });
}

TEST(Constants, KindsOfCommands) {
  expectAll({
      {"NKCommandReport", NKCommandReport, 14},
      {"NKCommandSet", NKCommandSet, 15},
      {"NKCommandReportToo", NKCommandReportToo, 16},
  });
}

TEST(Constants, MaskBits) {
  expectAll({
      {"NKMaskSmallValue", NKMaskSmallValue, 0x10},
      {"NKMaskExtraValue", NKMaskExtraValue, 0x20},
      {"NKMaskValue1", NKMaskValue1, 0x40},
      {"NKMaskValue2", NKMaskValue2, 0x100},
      {"NKMaskValue3", NKMaskValue3, 0x400},
      {"NKMaskText", NKMaskText, 0x2000},
  });
}

TEST(Constants, GroupsOfSettings) {
  expectAll({
      {"NKGroupMaster", NKGroupMaster, 111000},
      {"NKGroupAudio", NKGroupAudio, 111001},
      {"NKGroupVChip", NKGroupVChip, 111002},
      {"NKGroupCaptions", NKGroupCaptions, 111003},
      {"NKGroupTimecode", NKGroupTimecode, 111004},
      {"NKGroupWatermark", NKGroupWatermark, 111005},
      {"NKGroupSourceFormat", NKGroupSourceFormat, 111006},
      {"NKGroupCustomText", NKGroupCustomText, 111007},
      {"NKGroupFirstEmpty", NKGroupFirstEmpty, 111008},
      {"NKGroupLastEmpty", NKGroupLastEmpty, 111010},
  });
}

TEST(Constants, RowsOfTimecode) {
  expectAll({
      {"NKRowNone", NKRowNone, 0},
      {"NKRowLtc", NKRowLtc, 1},
      {"NKRowVitc", NKRowVitc, 2},
      {"NKRowClock", NKRowClock, 16},
      {"NKLayerTimecode", NKLayerTimecode, 0},
      {"NKLayerWatermark", NKLayerWatermark, 1},
      {"NKLayerSourceFormat", NKLayerSourceFormat, 2},
      {"NKLayerCustomText", NKLayerCustomText, 3},
      {"NKLayerAudio", NKLayerAudio, 4},
      {"NKLayerCaptions", NKLayerCaptions, 5},
  });
}

TEST(Constants, HaveTheSameNumbersUnderTheirOlderNames) {
  EXPECT_EQ(kNoSurface, 0xFFFFFFFE);
  EXPECT_EQ(kWaitSignalled, 0U);
  EXPECT_EQ(kWaitTimedOut, 258U);
  EXPECT_EQ(kWaitFailed, 0xFFFFFFFF);
}

}  // namespace
