// SPDX-License-Identifier: BSD-2-Clause
//
// This host has no caption decoder: there is never a burner, and no frame is changed.
#include <nkdraw/platform/captions.h>

nkCaptionBurner* ccBurnOpen(const HZWVIDEO* /*video*/) {
  return nullptr;
}

std::uint32_t ccBurnSetCCType(nkCaptionBurner* /*burner*/, std::uint32_t /*type*/) {
  return 0;
}

std::uint32_t ccBurnSetCCDisplay(nkCaptionBurner* /*burner*/, std::uint32_t /*display*/) {
  return 0;
}

std::uint32_t ccBurnAddCCData(nkCaptionBurner* /*burner*/, const QFRAME* /*frame*/) {
  return 0;
}

std::uint32_t ccBurnIn(nkCaptionBurner* /*burner*/, QFRAME* /*frame*/) {
  return 0;
}
