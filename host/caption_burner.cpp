// SPDX-License-Identifier: BSD-2-Clause
//
// The caption module: for the frames of one stream, a decoder and the screen that it fills.
#include "caption_decoder.h"
#include "caption_module.h"
#include "caption_screen.h"
#include "handle_table.h"

#include <bit>
#include <mutex>

namespace {

using nkdraw::handlesOf;

constexpr std::uint32_t kWithoutBoxes = 2;

struct Burner {
  explicit Burner(const HZWVIDEO& video) : screen(video) {}

  std::mutex mutex;  // copies of an overlay share their burner
  nkdraw::CaptionDecoder decoder;
  nkdraw::CaptionScreen screen;
  bool boxes = true;
};

std::uint64_t toNumber(nkCaptionBurner* burner) {
  return std::bit_cast<std::uint64_t>(burner);
}

/// Calls `action` with exclusive use of the burner; does nothing if it has been closed.
template <class Action>
std::uint32_t with(nkCaptionBurner* handle, Action action) {
  if (const auto burner = handlesOf<Burner>().find(toNumber(handle))) {
    const std::scoped_lock lock(burner->mutex);
    action(*burner);
  }
  return 0;
}

nkCaptionBurner* open(const HZWVIDEO* video) {
  auto burner = nkdraw::tryMakeShared<Burner>(*video);
  if (!burner || !burner->screen)
    return nullptr;
  return std::bit_cast<nkCaptionBurner*>(handlesOf<Burner>().add(std::move(burner)));
}

std::uint32_t setType(nkCaptionBurner* handle, std::uint32_t type) {
  return with(handle, [type](Burner& burner) { burner.decoder.setChannel(type); });
}

std::uint32_t setDisplay(nkCaptionBurner* handle, std::uint32_t display) {
  return with(handle, [display](Burner& burner) { burner.boxes = display != kWithoutBoxes; });
}

std::uint32_t addData(nkCaptionBurner* handle, const QFRAME* frame) {
  return with(handle, [frame](Burner& burner) {
    if (frame == nullptr || frame->captionData == nullptr)
      burner.decoder.addFrame({});
    else
      burner.decoder.addFrame({frame->captionData, frame->captionBytes});
  });
}

std::uint32_t burnIn(nkCaptionBurner* handle, QFRAME* frame) {
  return with(handle, [frame](Burner& burner) {
    if (frame != nullptr && frame->frameBuffer != nullptr)
      burner.screen.draw(burner.decoder.cells(), frame->frameBuffer, burner.boxes);
  });
}

std::uint32_t close(nkCaptionBurner* handle) {
  handlesOf<Burner>().close(toNumber(handle));
  return 0;
}

}  // namespace

extern "C" NKDRAW_API const nkdraw::CaptionModule nkccModule;
const nkdraw::CaptionModule nkccModule = {open, setType, setDisplay, addData, burnIn, close};
