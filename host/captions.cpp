// SPDX-License-Identifier: BSD-2-Clause
//
// Passes captions on to the module that has the decoder. Without the module there is never a
// burner, and no frame changes.
#include <nkdraw/platform/captions.h>
#include <nkdraw/platform/log.h>
#include <nkdraw/platform/module.h>

#include "caption_module.h"

namespace {

const nkdraw::CaptionModule* loadModule() {
  const nkHandle library = nkOSLoadLibrary(nkdraw::kCaptionModule, 0);
  const auto* const table = static_cast<const nkdraw::CaptionModule*>(
      nkOSGetProcAddress(library, nkdraw::kCaptionModuleTable));
  if (table == nullptr)
    ErrOut("Captions are not shown: the module %s can't be loaded", nkdraw::kCaptionModule);
  return table;
}

/// Null if there is none. It is looked for once and stays loaded, because burners live in it.
const nkdraw::CaptionModule* captionModule() {
  static const nkdraw::CaptionModule* const found = loadModule();
  return found;
}

/// The corresponding call of the module, if `burner` can be one of its burners.
template <class Routine, class... Arguments>
std::uint32_t pass(Routine nkdraw::CaptionModule::*call, nkCaptionBurner* burner,
                   Arguments... arguments) {
  if (burner == nullptr || captionModule() == nullptr)
    return 0;
  return (captionModule()->*call)(burner, arguments...);
}

}  // namespace

nkCaptionBurner* ccBurnOpen(const HZWVIDEO* video) {
  if (video == nullptr || captionModule() == nullptr)
    return nullptr;
  return captionModule()->open(video);
}

std::uint32_t ccBurnSetCCType(nkCaptionBurner* burner, std::uint32_t type) {
  return pass(&nkdraw::CaptionModule::setType, burner, type);
}

std::uint32_t ccBurnSetCCDisplay(nkCaptionBurner* burner, std::uint32_t display) {
  return pass(&nkdraw::CaptionModule::setDisplay, burner, display);
}

std::uint32_t ccBurnAddCCData(nkCaptionBurner* burner, const QFRAME* frame) {
  return pass(&nkdraw::CaptionModule::addData, burner, frame);
}

std::uint32_t ccBurnIn(nkCaptionBurner* burner, QFRAME* frame) {
  return pass(&nkdraw::CaptionModule::burnIn, burner, frame);
}

std::uint32_t ccBurnClose(nkCaptionBurner* burner) {
  return pass(&nkdraw::CaptionModule::close, burner);
}
