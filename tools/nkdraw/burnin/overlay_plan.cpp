// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/overlay_plan.h"

#include "burnin/layer_boxes.h"

#include <algorithm>

namespace nkdraw::tool {

std::vector<RowSpan> OverlayPlan::rows() const {
  std::vector<RowSpan> spans;
  for (const TextBox& box : boxes)
    spans.push_back({box.at.y, static_cast<int>(box.bottom())});
  for (const LayerBox& layer : layers)
    spans.push_back({layer.at.y, layer.at.y + layer.size.y});
  std::ranges::sort(spans, {}, &RowSpan::first);
  std::vector<RowSpan> joined;
  for (const RowSpan span : spans) {
    if (joined.empty() || span.first > joined.back().end)
      joined.push_back(span);
    else
      joined.back().end = std::max(joined.back().end, span.end);
  }
  return joined;
}

CanvasUse OverlayPlan::canvasUse() const {
  if (request.watermark)
    return CanvasUse::kWatermark;
  const auto isWhole = [](const TextBox& box) {
    return box.at.x % 2 == 0 && box.magnification % 2 == 0;
  };
  return layers.empty() && std::ranges::all_of(boxes, isWhole) ? CanvasUse::kWholePairs
                                                               : CanvasUse::kStrokes;
}

std::optional<Area> OverlayPlan::blended() const {
  if (!request.watermark)
    return std::nullopt;
  const auto [path, at, size] = *request.watermark;
  return Area{at.x, at.y, size.x, size.y};
}

OverlayPlan planOverlay(const OverlayRequest& request, const FrameKind& frames,
                        const TimecodeStart& timecode, const std::optional<TimecodeStart>& record) {
  OverlayPlan plan;
  plan.request = request;
  plan.record = record;
  planRows(plan, frames, timecode);
  planFormatLine(plan, frames);
  planTexts(plan, frames);
  planMark(plan, frames);
  planLayers(plan, frames);
  return plan;
}

}  // namespace nkdraw::tool
