// SPDX-License-Identifier: BSD-2-Clause
#include "wipe/wipe_names.h"

#include "cli/option_values.h"
#include "cli/using_media.h"
#include "media/failure.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace nkdraw::tool {
namespace {

constexpr WipeName kNames[] = {
    {"dissolve", NKWipeDissolve, "a cross-fade"},
    {"edge-horz", NKWipeEdgeHorz, "an edge travels from left to right"},
    {"edge-vert", NKWipeEdgeVert, "an edge travels from top to bottom"},
    {"corner-tl", NKWipeCornerTL, "a rectangle grows from the upper left corner"},
    {"corner-tr", NKWipeCornerTR, "a rectangle grows from the upper right corner"},
    {"corner-br", NKWipeCornerBR, "a rectangle grows from the lower right corner"},
    {"corner-bl", NKWipeCornerBL, "a rectangle grows from the lower left corner"},
    {"four-corners", NKWipeFourCorners, "four rectangles grow from the corners"},
    {"box-in", NKWipeBoxIn, "a frame closes from all edges on the centre"},
    {"barn-door-vert", NKWipeBarnDoorVert, "two doors close from the left and the right"},
    {"barn-door-horz", NKWipeBarnDoorHorz, "two doors close from the top and the bottom"},
    {"box-top", NKWipeBoxTop, "the old picture shrinks to the middle of the top edge"},
    {"box-right", NKWipeBoxRight, "the old picture shrinks to the middle of the right edge"},
    {"box-bottom", NKWipeBoxBottom, "the old picture shrinks to the middle of the bottom edge"},
    {"box-left", NKWipeBoxLeft, "the old picture shrinks to the middle of the left edge"},
    {"iris", NKWipeIris, "a rectangle grows from the centre"},
    {"slide-up", NKWipeSlideUp, "the old picture moves off upwards"},
    {"slide-left", NKWipeSlideLeft, "the old picture moves off to the left"},
    {"slide-down", NKWipeSlideDown, "the old picture moves off downwards"},
    {"slide-right", NKWipeSlideRight, "the old picture moves off to the right"},
};

/// What the numbers without a name draw.
struct OtherNumbers {
  std::string_view name, numbers;
};
constexpr OtherNumbers kOthers[] = {
    {"iris", "42-48, 61-68, 71-74, 101"},
    {"edge-horz",
     "102-114, 119-125, 127-131, 201-207, 211-214, 221-228, 231-236,\n"
     "               241-246, 251-254, 261-264, 301-306, 310-317, 320-329, 340-345,\n"
     "               350-353, 409"},
    {"slide-down", "504-507"},
    {"dissolve", "every other number up to 2147483647 but 508-515, which draw nothing"},
};

}  // namespace

std::span<const WipeName> wipeNames() {
  return kNames;
}

std::uint32_t readWipe(const std::string& text, const std::string& option) {
  const auto* const row = std::ranges::find_if(
      kNames, [&](const WipeName& each) { return isSameName(each.name, text); });
  if (row != std::end(kNames))
    return row->number;
  const auto number = wholeNumber<std::uint32_t>(text);
  if (!number || *number > NKWipeLastNumber)
    badValue(option, text, "see nkdraw wipe --list");
  if (*number >= NKWipeFirstEmpty && *number <= NKWipeLastEmpty)
    badValue(option, text, "508 to 515 draw nothing; see nkdraw wipe --list");
  return *number;
}

bool isSlide(std::uint32_t number) {
  return number >= NKWipeFirstSlide && number <= NKWipeLastSlide;
}

std::string wipeText(std::uint32_t number) {
  const auto* const row = std::ranges::find(kNames, number, &WipeName::number);
  return row != std::end(kNames) ? std::string(row->name) : "wipe " + std::to_string(number);
}

void listWipes() {
  for (const WipeName& each : kNames)
    std::printf("%-14s %3u  %s\n", std::string(each.name).c_str(), each.number,
                std::string(each.description).c_str());
  std::printf("\nNumbers without a name of their own draw\n");
  for (const OtherNumbers& each : kOthers)
    std::printf("%-14s %s\n", std::string(each.name).c_str(), std::string(each.numbers).c_str());
}

}  // namespace nkdraw::tool
