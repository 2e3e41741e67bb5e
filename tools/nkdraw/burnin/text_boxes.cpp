// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/text_boxes.h"

#include "burnin/box_place.h"
#include "burnin/overlay_plan.h"

#include <nkdraw/platform/media_names.h>
#include <nkdraw/text/label_glyphs.h>

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace nkdraw::tool {
namespace {

constexpr int kCellWidth = static_cast<int>(kGlyphWidth),
              kCellHeight = static_cast<int>(kGlyphHeight);
constexpr unsigned kOverlayTextSize = 3;  // with which the overlay draws format line and texts
constexpr int kLinesPerTextSize = 360;    // that size at 1080 lines
// The default size grows by one for this many lines: 2 at 360, 4 at 1080, 8 at 2160.
constexpr int kLinesPerSize = 270, kLinesBefore = 180;
constexpr char kLongestClock[] = "00:00:00.000";

/// The rows of the timecode block from top to bottom. The overlay's own are next to each other, as
/// it draws them.
std::vector<TextBox> timecodeRows(const OverlayPlan& plan, const TimecodeStart& timecode) {
  const OverlayRequest& request = plan.request;
  const bool both = request.ltc && plan.record.has_value();
  std::vector<TextBox> rows;
  const auto add = [&](const char* what, TextContent content) {
    rows.push_back({what, rowText(content, timecode, plan, 0), {}, 1, content});
  };
  if (request.ltc)
    add("LTC row", both ? TextContent::kTimecode : TextContent::kOverlay);
  if (plan.record)
    add("record row", TextContent::kRecord);
  else if (request.vitc)
    add("VITC row", TextContent::kOverlay);
  if (request.clock)
    rows.push_back({"clock row", kLongestClock, {}, 1, TextContent::kOverlay});
  if (request.frameNumber)
    add("frame row", TextContent::kFrameNumber);
  return rows;
}

/// The largest size at which the rows fit, up to the one that suits the height of the frame.
unsigned defaultSize(const std::vector<TextBox>& rows, const FrameKind& frames) {
  std::size_t longest = 1;
  for (const TextBox& row : rows)
    longest = std::max(longest, row.text.size());
  const int step = frames.interlaced ? 2 : 1;
  int size = std::clamp((frames.height + kLinesBefore) / kLinesPerSize, step, 20);
  size -= size % step;
  const auto fits = [&](int candidate) {
    return static_cast<int>(longest) * kCellWidth * candidate <= frames.width &&
           static_cast<int>(rows.size()) * kCellHeight * candidate < frames.height;
  };
  while (size > step && !fits(size))
    size -= step;
  return static_cast<unsigned>(size);
}

std::string formatLine(const FrameKind& frames) {
  char text[512];
  const float rate = static_cast<float>(frames.rate.num) / static_cast<float>(frames.rate.den);
  std::snprintf(text, sizeof text, "%.2f %s %s %dx%d %s", static_cast<double>(rate),
                hzwutilFileTypeString(frames.fileType), hzwutilCodecTypeString(frames.sourceCode),
                frames.width, frames.height, frames.interlaced ? "i" : "p");
  return text;
}

void addBox(OverlayPlan& plan, const TextBox& box, const FrameKind& frames) {
  checkInside(box.what, box.at, box.right(), box.bottom(), frames,
              "move it, shorten it or make it smaller");
  plan.boxes.push_back(box);
}

/// The position of rows with these heights, at the lower left.
Point usualPlace(const std::vector<TextBox>& rows, int rowHeight, unsigned size,
                 const FrameKind& frames) {
  std::size_t longest = 0;
  for (const TextBox& row : rows)
    longest = std::max(longest, row.text.size());
  const int width = static_cast<int>(longest) * kCellWidth * static_cast<int>(size);
  const int height = static_cast<int>(rows.size()) * rowHeight + 1;
  const int top = frames.height - height - margin(frames.height, height);
  return {margin(frames.width, width), top >= 0 ? even(top) : top};
}

/// The size that suits the height of the frame, unless the user chose one.
unsigned textSize(const OverlayRequest& request, const FrameKind& frames) {
  constexpr int kLargest = 20;
  if (request.textSize)
    return *request.textSize;
  return static_cast<unsigned>(
      std::clamp((frames.height + kLinesPerTextSize / 2) / kLinesPerTextSize, 1, kLargest));
}

/// The overlay draws texts in one size alone.
TextContent contentOf(unsigned size) {
  return size == kOverlayTextSize ? TextContent::kOverlay : TextContent::kFixed;
}

}  // namespace

std::int64_t TextBox::right() const {
  return std::int64_t{at.x} + std::ssize(text) * kCellWidth * magnification;
}

std::int64_t TextBox::bottom() const {
  return std::int64_t{at.y} + std::int64_t{kCellHeight} * magnification + 1;
}

void planRows(OverlayPlan& plan, const FrameKind& frames, const TimecodeStart& timecode) {
  const OverlayRequest& request = plan.request;
  std::vector<TextBox> rows = timecodeRows(plan, timecode);
  plan.timecodeSize = request.size.value_or(defaultSize(rows, frames));
  if (frames.interlaced)  // the overlay makes sizes even on interlaced frames
    plan.timecodeSize = std::max(plan.timecodeSize & ~1U, 2U);
  const int rowHeight = kCellHeight * static_cast<int>(plan.timecodeSize);
  if (!rows.empty())
    plan.timecodeAt =
        request.position.value_or(usualPlace(rows, rowHeight, plan.timecodeSize, frames));
  plan.timecodeAt.y = rowIn(frames, plan.timecodeAt.y);
  for (TextBox& row : rows) {
    row.at = {plan.timecodeAt.x,
              plan.timecodeAt.y + static_cast<int>(plan.boxes.size()) * rowHeight};
    row.magnification = plan.timecodeSize;
    addBox(plan, row, frames);
  }
  const auto own = std::ranges::find(rows, TextContent::kOverlay, &TextBox::content);
  if (own != rows.end())
    plan.timecodeAt = own->at;
}

void planFormatLine(OverlayPlan& plan, const FrameKind& frames) {
  if (!plan.request.formatLine)
    return;
  const unsigned size = textSize(plan.request, frames);
  TextBox box = {"format line", formatLine(frames), {}, size, contentOf(size)};
  plan.formatAt =
      plan.request.formatAt.value_or(Point{margin(frames.width, static_cast<int>(box.right())),
                                           margin(frames.height, static_cast<int>(box.bottom()))});
  plan.formatAt.y = rowIn(frames, plan.formatAt.y);
  box.at = plan.formatAt;
  addBox(plan, box, frames);
}

void planTexts(OverlayPlan& plan, const FrameKind& frames) {
  const unsigned size = textSize(plan.request, frames);
  int number = 0;
  for (PlacedText& placed : plan.request.texts) {
    placed.at.y = rowIn(frames, placed.at.y);
    addBox(plan,
           {"text " + std::to_string(++number), placed.text, placed.at, size, contentOf(size)},
           frames);
  }
}

/// The mark of damaged frames, in the middle.
void planMark(OverlayPlan& plan, const FrameKind& frames) {
  if (!plan.request.markDamage)
    return;
  TextBox box = {
      "damage mark", "DAMAGED", {}, textSize(plan.request, frames), TextContent::kDamage};
  box.at = {even((frames.width - static_cast<int>(box.right())) / 2),
            even((frames.height - static_cast<int>(box.bottom())) / 2)};
  addBox(plan, box, frames);
}

std::string rowText(TextContent content, const TimecodeStart& timecode, const OverlayPlan& plan,
                    std::int64_t index) {
  char number[32];
  switch (content) {
    case TextContent::kRecord:
      return (plan.request.ltc ? "REC " : "") + timecodeText(*plan.record, index);
    case TextContent::kTimecode:
      return "SRC " + timecodeText(timecode, index);
    case TextContent::kFrameNumber:
      std::snprintf(number, sizeof number, "FRAME %06lld", static_cast<long long>(index));
      return number;
    default:
      return timecodeText(timecode, index);
  }
}

}  // namespace nkdraw::tool
