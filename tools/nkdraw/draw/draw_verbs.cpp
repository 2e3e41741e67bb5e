// SPDX-License-Identifier: BSD-2-Clause
#include "draw/draw_verbs.h"

#include "cli/option_values.h"

#include <algorithm>
#include <iterator>

namespace nkdraw::tool {
namespace {

/// Lines are stepped in 16.16 fixed point, which holds differences below 32,768.
constexpr int kFarthest = 16383;
constexpr int kMostDegrees = 3600;
constexpr int kLargestScale = 100;

constexpr Word kStates[] = {{"off", 0}, {"on", 1}};
constexpr Word kModes[] = {
    {"601", NKPixel::mode601Studio},
    {"601-full", NKPixel::mode601Full},
    {"709", NKPixel::mode709Studio},
    {"709-full", NKPixel::mode709Full},
    {"2020", NKPixel::mode2020Studio},
    {"2020-full", NKPixel::mode2020Full},
    {"2020-constant", NKPixel::mode2020Constant},
};

using enum Parameter::Kind;
constexpr Parameter kParameters[] = {
    {"X Y X1 Y1 X2 Y2 X3 Y3 X4 Y4", kWhole, -kFarthest - 1, kFarthest, {}},
    {"RADIUS RX RY WIDTH HEIGHT ON OFF", kWhole, 0, kFarthest, {}},
    {"SCALE", kWhole, 1, kLargestScale, {}},
    {"START END", kDecimal, -kMostDegrees, kMostDegrees, {}},
    {"R G B A WEIGHT", kDecimal, 0.0, 1.0, {}},
    {"STATE", kWord, 0, 0, kStates},
    {"MODE", kWord, 0, 0, kModes},
    {"TEXT", kText, 0, 0, {}},
};

/// Calls a member function of NKDraw with as many integers as it takes.
template <class... Numbers, std::size_t... kIndex>
std::uint32_t call(NKDraw& surface, std::uint32_t (NKDraw::*member)(Numbers...),
                   const Values& values, std::index_sequence<kIndex...> /*indices*/) {
  return (surface.*member)(static_cast<Numbers>(values.numbers[kIndex])...);
}

template <class... Numbers>
std::uint32_t callWith(NKDraw& surface, std::uint32_t (NKDraw::*member)(Numbers...),
                       const Values& values) {
  return call(surface, member, values, std::index_sequence_for<Numbers...>());
}

template <auto member>
std::uint32_t numbers(NKDraw& surface, const Values& values) {
  return callWith(surface, member, values);
}

using TwoInts = std::uint32_t (NKDraw::*)(int, int);
using FourInts = std::uint32_t (NKDraw::*)(int, int, int, int);

template <bool foreground>
std::uint32_t setColour(NKDraw& surface, const Values& values) {
  const std::vector<double>& channels = values.numbers;
  const double alpha = channels.size() > 3 ? channels[3] : 1.0;
  return surface.SetColorRGBA(channels[0], channels[1], channels[2], alpha, foreground);
}

template <bool foreground>
std::uint32_t point(NKDraw& surface, const Values& values) {
  return surface.Point(values.whole(0), values.whole(1), foreground);
}

template <auto member>
std::uint32_t chain(NKDraw& surface, const Values& values) {
  const std::vector<tagPOINT> points = values.points();
  return (surface.*member)(points.data(), static_cast<std::uint32_t>(points.size()));
}

/// The library takes the new pen position from one past the points; the last point is repeated
/// there.
template <auto member>
std::uint32_t chainTo(NKDraw& surface, const Values& values) {
  constexpr std::size_t kFarthestBehind = 3;
  std::vector<tagPOINT> points = values.points();
  const auto count = static_cast<std::uint32_t>(points.size());
  points.insert(points.end(), kFarthestBehind, points.back());
  return (surface.*member)(points.data(), count);
}

template <bool invert, bool fill>
std::uint32_t label(NKDraw& surface, const Values& values) {
  return surface.Label(values.whole(0), values.whole(1), values.text.c_str(), invert, fill);
}

std::uint32_t drawText(NKDraw& surface, tagRECT rect, const std::string& text,
                       std::uint32_t format) {
  const std::int32_t status =
      surface.DrawText(text.c_str(), static_cast<std::int32_t>(text.size()), &rect, format);
  return status == 0 ? 0 : NKStatusRefused;
}

std::uint32_t text(NKDraw& surface, const Values& values) {
  const int x = values.whole(0), y = values.whole(1);
  return drawText(surface, {x, y, x, y + values.whole(2)}, values.text, 0);
}

template <std::uint32_t format>
std::uint32_t textInRect(NKDraw& surface, const Values& values) {
  const tagRECT rect = {values.whole(0), values.whole(1), values.whole(2), values.whole(3)};
  return drawText(surface, rect, values.text, format);
}

std::uint32_t fill(NKDraw& surface, const Values& values) {
  const tagRECT rect = {values.whole(0), values.whole(1), values.whole(2), values.whole(3)};
  return surface.FillRect(&rect);
}

/// ArcTo and Pie hide that their arc, whose start is transposed, was refused: ArcTo still moves the
/// pen, and Pie draws to the ends of an earlier arc.
template <auto member>
std::uint32_t arcHidden(NKDraw& surface, const Values& values) {
  const auto at = [&](std::size_t index) { return values.whole(index); };
  const double centreX = at(2) - (at(2) - at(0)) * 0.5, centreY = at(3) - (at(3) - at(1)) * 0.5;
  const auto isCentre = [&](int x, int y) { return x == centreX && y == centreY; };
  if (at(2) <= at(0) || at(3) <= at(1) || isCentre(at(5), at(4)) || isCentre(at(6), at(7)))
    return NKStatusRefused;
  return numbers<member>(surface, values);
}

std::uint32_t setTransparency(NKDraw& surface, const Values& values) {
  const double weight = values.numbers[0];
  surface.SetTransparency(weight, true);
  surface.SetTransparency(weight, false);
  surface.SetTransparency(weight > 0.0);
  return 0;
}

std::uint32_t setAdditive(NKDraw& surface, const Values& values) {
  surface.SetAlphaAdditive(values.whole(0) != 0);
  return 0;
}

std::uint32_t setTextGround(NKDraw& surface, const Values& values) {
  surface.SetTextTransparent(values.whole(0) == 0);
  return 0;
}

std::uint32_t setMode(NKDraw& surface, const Values& values) {
  return surface.SetYCbCrMode(static_cast<NKPixel::cmYCbCr>(values.whole(0)));
}

std::uint32_t setScale(NKDraw& surface, const Values& values) {
  return surface.LabelFont(0U, values.whole(0));
}

std::uint32_t erase(NKDraw& surface, const Values& /*values*/) {
  return surface.EraseCanvas(true);
}

constexpr std::string_view kArcCondition =
    "the second corner must lie right of and below the first, and no ray at the centre";
constexpr std::string_view kTurnedArcCondition =
    "the second corner must lie right of and below the first, and no ray at the centre; the first "
    "ray goes through Y3,X3";
constexpr std::string_view kArcUsage = "X1 Y1 X2 Y2 X3 Y3 X4 Y4";
constexpr std::string_view kPolyBezierUsage = "X1 Y1 X2 Y2 X3 Y3 X4 Y4 [X Y]...";
constexpr std::string_view kPolyBezierCondition =
    "there must be 7, 10, 13 or further points, each three more";

constexpr Verb kVerbs[] = {
    {"color", "R G B [A]", "sets the foreground colour, in which all verbs draw", setColour<true>},
    {"background", "R G B [A]", "sets the background colour, for texts and point-background",
     setColour<false>},
    {"transparency", "WEIGHT", "blends what is plotted, with this weight; 0 ends it",
     setTransparency},
    {"additive", "STATE", "adds the foreground to what stands there", setAdditive},
    {"mode", "MODE", "chooses the YCbCr matrix for colours that are set, and for the picture",
     setMode},
    {"erase", "", "fills the canvas with the foreground colour", erase},
    {"point", "X Y", "plots a pixel; moves the pen", point<true>},
    {"point-background", "X Y", "plots one in the background colour; moves the pen", point<false>},
    {"moveto", "X Y", "moves the pen", numbers<static_cast<TwoInts>(&NKDraw::MoveTo)>},
    {"line", "X1 Y1 X2 Y2", "draws a line, both ends included",
     numbers<static_cast<FourInts>(&NKDraw::Line)>},
    {"lineto", "X Y", "draws one from the pen, and moves it", numbers<&NKDraw::LineTo>},
    {"wu", "X1 Y1 X2 Y2", "draws an antialiased line, two pixels wide", numbers<&NKDraw::LineWu>},
    {"wuto", "X Y", "draws one from the pen, and moves it", numbers<&NKDraw::LineWuTo>},
    {"vert", "X Y1 Y2", "draws a column downward, both ends included", numbers<&NKDraw::LineVert>},
    {"horiz", "X1 Y X2", "draws a row to the right; the layout says whether X2 belongs to it",
     numbers<&NKDraw::LineHoriz>},
    {"dash", "X1 Y1 X2 Y2 ON OFF", "draws a line of ON pixels plotted and OFF skipped in turn",
     numbers<&NKDraw::Dash>},
    {"polyline", "X1 Y1 X2 Y2 [X Y]...", "draws lines from point to point",
     chain<&NKDraw::Polyline>},
    {"polylineto", "X1 Y1 X2 Y2 [X Y]...", "the same; moves the pen to the last point",
     chainTo<&NKDraw::PolylineTo>},
    {"rect", "X1 Y1 X2 Y2", "outlines a rectangle", numbers<&NKDraw::Rectangle>},
    {"fill", "X1 Y1 X2 Y2",
     "fills a rectangle without its bottom row; the layout says whether X2 belongs to it", fill},
    {"roundrect", "X1 Y1 X2 Y2 WIDTH HEIGHT",
     "outlines a rectangle with corners of that ellipse; moves the pen",
     numbers<&NKDraw::RoundRect>, "WIDTH and HEIGHT must fit in the rectangle"},
    {"circle", "X Y RADIUS", "outlines a circle about X,Y", numbers<&NKDraw::Circle>},
    {"ellipse", "X Y RX RY", "outlines an ellipse about X,Y; moves the pen",
     numbers<&NKDraw::Ellipse>},
    {"arc", kArcUsage, "draws the arc, in the box of the first corners, from ray X3,Y3 to X4,Y4",
     numbers<&NKDraw::Arc>, kArcCondition},
    {"arcto", kArcUsage, "the same from ray Y3,X3; moves the pen to X4,Y4",
     arcHidden<&NKDraw::ArcTo>, kTurnedArcCondition},
    {"anglearc", "X Y RADIUS START END", "draws an arc about X,Y between two angles",
     numbers<&NKDraw::AngleArc>},
    {"anglearcto", "X Y RX RY START END", "the same of an ellipse; moves the pen",
     numbers<&NKDraw::AngleArcTo>},
    {"pie", kArcUsage, "draws the arc of arcto and lines from its ends to the centre",
     arcHidden<&NKDraw::Pie>, kTurnedArcCondition},
    {"bezier", kArcUsage, "draws a curve from X1,Y1 to X4,Y4; moves the pen",
     numbers<&NKDraw::Bezier>, "the two ends must differ"},
    {"polybezier", kPolyBezierUsage, "draws curves that share their ends; moves the pen",
     chain<&NKDraw::PolyBezier>, kPolyBezierCondition},
    {"polybezierto", kPolyBezierUsage, "the same; moves the pen to the last point",
     chainTo<&NKDraw::PolyBezierTo>, kPolyBezierCondition},
    {"label-scale", "SCALE", "magnifies the labels that follow", setScale},
    {"label", "X Y TEXT", "stamps a text with its upper left corner at X,Y", label<false, false>},
    {"label-box", "X Y TEXT", "the same on a box in the background colour", label<false, true>},
    {"label-inverse", "X Y TEXT", "the text in the background colour", label<true, false>},
    {"label-inverse-box", "X Y TEXT", "the same on a box in the foreground colour",
     label<true, true>},
    {"text-ground", "STATE", "paints the box of the texts that follow in the background colour",
     setTextGround},
    {"text", "X Y HEIGHT TEXT", "writes a text, in whole magnifications of 10 pixels", text},
    {"text-center", "X1 Y1 X2 Y2 TEXT", "writes one into the middle of a rectangle",
     textInRect<DT_CENTER>},
    {"text-right", "X1 Y1 X2 Y2 TEXT", "writes one at a rectangle's right edge",
     textInRect<DT_RIGHT>},
};

}  // namespace

std::string Parameter::range() const {
  if (kind == Kind::kText)
    return "printable ASCII characters";
  if (kind == Kind::kWord) {
    std::string names;
    for (const Word& word : words)
      names.append(names.empty() ? "" : " or ").append(word.name);
    return names;
  }
  std::string range = kind == Kind::kWhole ? "a whole number from " : "a number from ";
  range.append(std::to_string(static_cast<int>(least))).append(" to ");
  return range.append(std::to_string(static_cast<int>(most)));
}

std::vector<tagPOINT> Values::points() const {
  std::vector<tagPOINT> points;
  for (std::size_t i = 0; i + 1 < numbers.size(); i += 2)
    points.push_back({whole(i), whole(i + 1)});
  return points;
}

std::span<const Verb> verbs() {
  return kVerbs;
}

const Verb* verbNamed(std::string_view name) {
  const auto* const found =
      std::ranges::find_if(kVerbs, [&](const Verb& verb) { return isSameName(verb.name, name); });
  return found != std::end(kVerbs) ? found : nullptr;
}

const Verb& nearestVerb(std::string_view name) {
  return *nearestName(kVerbs, name, &Verb::name);
}

const Parameter& parameterNamed(std::string_view name) {
  const auto holds = [&](const Parameter& parameter) {
    std::string_view left = parameter.names;
    while (!left.empty()) {
      const std::size_t end = std::min(left.find(' '), left.size());
      if (left.substr(0, end) == name)
        return true;
      left.remove_prefix(std::min(end + 1, left.size()));
    }
    return false;
  };
  return *std::ranges::find_if(kParameters, holds);
}

}  // namespace nkdraw::tool
