// SPDX-License-Identifier: BSD-2-Clause
//
// The interface between the host and its caption module. The module draws with the core library,
// which depends on the host's library; loading it at run time avoids a circular dependency.
#pragma once

#include <nkdraw/platform/captions.h>

#include <cstdint>

namespace nkdraw {

/// The functions that implement platform/captions.h.
struct CaptionModule {
  nkCaptionBurner* (*open)(const HZWVIDEO* video);
  std::uint32_t (*setType)(nkCaptionBurner* burner, std::uint32_t type);
  std::uint32_t (*setDisplay)(nkCaptionBurner* burner, std::uint32_t display);
  std::uint32_t (*addData)(nkCaptionBurner* burner, const QFRAME* frame);
  std::uint32_t (*burnIn)(nkCaptionBurner* burner, QFRAME* frame);
  std::uint32_t (*close)(nkCaptionBurner* burner);
};

inline constexpr char kCaptionModule[] = "nkcc.dll";
/// The name of the symbol in the module; it is a CaptionModule.
inline constexpr char kCaptionModuleTable[] = "nkccModule";

}  // namespace nkdraw
