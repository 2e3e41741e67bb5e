// SPDX-License-Identifier: BSD-2-Clause
//
// The panel of audio meters.
#include <nkdraw/overlay/overlay.h>

#include <nkdraw/draw/draw.h>
#include <nkdraw/surface/resolver.h>
#include <nkdraw/surface/truncate.h>
#include <nkdraw/surface/wrapping.h>

#include <array>
#include <cmath>
#include <cstring>

namespace {

using nkdraw::wrappingAdd;

constexpr std::uint32_t kChannels = 8;
constexpr int kRows = 15;
constexpr std::int32_t kPanelWidth = 280, kPanelHeight = 200;
constexpr std::int32_t kColumnWidth = 20;

// A magnitude in decibels, 1 being 0 dB; the meter shows 41 of them.
constexpr double kLowest = 56.0, kSpan = 41.0;

double decibels(double magnitude) {
  return std::log10(magnitude) * 20.0;
}

struct Colour {
  double red, green, blue;
};
struct RowColours {
  int last;  ///< of the rows that have them, from the top
  Colour low, lit;
};
/// A lit row has the second colour. The first is for rows more than 20 lines below the meter, and
/// there are none. Deliberate: channels above 1.0 give the tints that callers know.
constexpr RowColours kRowColours[] = {
    {2, {1.0, 0.0, 0.0}, {1.9, 1.0, 1.0}},
    {5, {1.0, 1.0, 0.0}, {1.9, 1.9, 1.0}},
    {14, {0.0, 1.0, 0.0}, {1.0, 1.9, 1.0}},
};

const RowColours& coloursOf(int row) {
  const auto* colours = kRowColours;
  while (row > colours->last)
    ++colours;
  return *colours;
}

/// Two channels share a word, the even one in its low half.
double magnitudeOf(const std::uint32_t* words, std::uint32_t channel) {
  return words == nullptr ? 0.0 : words[channel / 2] >> (channel % 2 * 16) & 0xFFFF;
}

/// Whether Line takes the coordinate across it as it is: it looks at the low 16 bits.
constexpr bool isNear(std::int32_t y) {
  return y == static_cast<std::int16_t>(y);
}

/// `count` lines from (left, top) down, each `width` pixels and one more, as the surface's Line
/// draws them. A class of the library's own does not override Line.
void lines(NKDraw& surface, std::int32_t left, std::int32_t top, int width, int count) {
  const nkdraw::RunPlotter plotter(surface);
  if (plotter.ownClass() && isNear(top) && isNear(wrappingAdd(top, count)))
    return plotter.block({left, top, static_cast<std::uint32_t>(width) + 1, count}, true);
  for (int line = 0; line < count; ++line) {
    const std::int32_t y = wrappingAdd(top, line);
    surface.Line(left, y, wrappingAdd(left, width), y);
  }
}

/// The column of one channel; `top` is the line of its first row.
struct Column {
  NKDraw& surface;
  std::int32_t left, top;

  void segment(int row) const {
    const std::int32_t end = wrappingAdd(top, 12 * row + 10);
    const std::int32_t bottom = nkdraw::truncateToInt32(top + 200.0);
    const RowColours& colours = coloursOf(row);
    const Colour& colour = bottom < wrappingAdd(end, -20) ? colours.low : colours.lit;
    surface.SetColorRGBA(colour.red, colour.green, colour.blue, 1.0, true);
    lines(surface, left, wrappingAdd(end, -10), kColumnWidth, 10);
  }

  void level(double magnitude) const {
    if (magnitude == 0.0)
      return;
    const auto whole = static_cast<int>(decibels(magnitude));
    const auto steps = static_cast<float>((whole - kLowest) / kSpan * kRows);
    for (int row = static_cast<int>(15.0F - std::floor(steps)); row < kRows; ++row)
      segment(row);
  }

  void peak(double magnitude) const {
    surface.SetColorRGBA(1.0, 1.0, 1.0, 1.0, true);
    if (!(magnitude > 0.0))
      return;
    const double part = (decibels(magnitude) - kLowest) / kSpan;
    if (part > 0.0)
      lines(surface, left, nkdraw::truncateToInt32((200.0 - part * 200.0) + top), kColumnWidth, 3);
  }
};

/// Deliberate: derived classes rely on the values. They move on by one, up to a byte in the middle
/// of a value, which is cut.
void remember(std::int32_t (&history)[100], double magnitude) {
  constexpr std::size_t kMoved = 127;
  std::memmove(&history[1], &history[0], kMoved);
  history[0] = nkdraw::truncateToInt32(magnitude);
}

}  // namespace

std::uint32_t CNkOverlay::drawAudMeters(const std::uint32_t* levels, const std::uint32_t* peaks) {
  AudioChannels = kChannels;  // whatever the setting said
  const std::int32_t top = wrappingAdd(AudioY, 10);

  surface->SetColorRGBA(0.0, 0.0, 0.0, 1.0, true);
  lines(*surface, AudioX, AudioY, kPanelWidth, kPanelHeight);

  surface->SetColorRGBA(0.9, 0.9, 0.9, 1.0, true);
  std::int32_t y = top;
  for (const char* const text : {"  0", "-10", "-20", "-30"}) {
    tagRECT rect = {wrappingAdd(AudioX, 10), y, wrappingAdd(AudioX, 30), wrappingAdd(y, 10)};
    surface->DrawText(text, 3, &rect, DT_CALCRECT);
    y = wrappingAdd(y, 45);
  }

  for (std::uint32_t channel = 0; channel < AudioChannels; ++channel) {
    const Column column{*surface, wrappingAdd(AudioX, 40 + 30 * std::int64_t{channel}), top};
    const double level = magnitudeOf(levels, channel);
    remember(meterHistory[channel], level);
    column.level(level);
    if (peaks != nullptr)
      column.peak(magnitudeOf(peaks, channel));
  }
  return 0;
}
