// SPDX-License-Identifier: BSD-2-Clause
//
// What the host asks of its caption module. The module draws with the core library, which stands on
// the host's library; loading it at run time keeps the two from needing each other.
#pragma once

#include <nkdraw/platform/captions.h>

#include <cstdint>

namespace nkdraw {

/// The calls of platform/captions.h, which pass them on.
struct CaptionModule {
  nkCaptionBurner* (*open)(const HZWVIDEO* video);
  std::uint32_t (*setType)(nkCaptionBurner* burner, std::uint32_t type);
  std::uint32_t (*setDisplay)(nkCaptionBurner* burner, std::uint32_t display);
  std::uint32_t (*addData)(nkCaptionBurner* burner, const QFRAME* frame);
  std::uint32_t (*burnIn)(nkCaptionBurner* burner, QFRAME* frame);
  std::uint32_t (*close)(nkCaptionBurner* burner);
};

inline constexpr char kCaptionModule[] = "nkcc.dll";
/// The symbol in the module; a CaptionModule.
inline constexpr char kCaptionModuleTable[] = "nkccModule";

}  // namespace nkdraw
