// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/layer_boxes.h"

#include "burnin/box_place.h"
#include "media/failure.h"

namespace nkdraw::tool {
namespace {

/// The panel, including the mark of the faintest peak below it.
constexpr Point kMeterPanel = {281, 213};

void addLayer(OverlayPlan& plan, const FrameKind& frames, const LayerBox& box,
              const std::string& option) {
  checkInside(box.what, box.at, std::int64_t{box.at.x} + box.size.x,
              std::int64_t{box.at.y} + box.size.y, frames, "give another place with " + option);
  plan.layers.push_back(box);
}

/// If the width is odd, the last pair of a row has only one pixel. The library would then look for
/// the rows of watermark and captions in the wrong place.
void checkPairs(const OverlayRequest& request, const FrameKind& frames) {
  if (frames.pairs && frames.width % 2 != 0 && (request.watermark || request.captions))
    throw Failure(ExitCode::kUsage, "no watermark and no captions in 4:2:2 of odd width",
                  std::to_string(frames.width) + "x" + std::to_string(frames.height),
                  "make the width even first");
}

}  // namespace

void planLayers(OverlayPlan& plan, const FrameKind& frames) {
  OverlayRequest& request = plan.request;
  checkPairs(request, frames);
  if (request.watermark) {
    WatermarkRequest& watermark = *request.watermark;
    if (frames.pairs)
      watermark.at.x = even(watermark.at.x);
    addLayer(plan, frames, {"watermark", watermark.path, watermark.at, watermark.size},
             "--watermark-at");
  }
  if (request.meters) {
    if (frames.interlaced)
      request.meters->y = even(request.meters->y);
    addLayer(plan, frames, {"meter panel", "the clip's sound", *request.meters, kMeterPanel},
             "--meters-at");
  }
  if (request.captions)
    plan.layers.push_back(
        {std::string("captions ") + kCaptionChannels[request.captions->source - 1],
         request.captions->file.value_or("the clip's own"),
         {},
         {frames.width, frames.height}});
}

}  // namespace nkdraw::tool
