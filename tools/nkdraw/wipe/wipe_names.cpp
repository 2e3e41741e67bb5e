// SPDX-License-Identifier: BSD-2-Clause
#include "wipe/wipe_names.h"

#include "cli/option_values.h"
#include "media/failure.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace nkdraw::tool {
namespace {

constexpr WipeName kNames[] = {
    {"dissolve", 0, "a cross-fade"},
    {"edge-horz", 1, "an edge travels from left to right"},
    {"edge-vert", 2, "an edge travels from top to bottom"},
    {"corner-tl", 3, "a rectangle grows from the upper left corner"},
    {"corner-tr", 4, "a rectangle grows from the upper right corner"},
    {"corner-br", 5, "a rectangle grows from the lower right corner"},
    {"corner-bl", 6, "a rectangle grows from the lower left corner"},
    {"four-corners", 7, "four rectangles grow from the corners"},
    {"box-in", 8, "a frame closes from all edges on the centre"},
    {"barn-door-vert", 21, "two doors close from the left and the right"},
    {"barn-door-horz", 22, "two doors close from the top and the bottom"},
    {"box-top", 23, "the old picture shrinks to the middle of the top edge"},
    {"box-right", 24, "the old picture shrinks to the middle of the right edge"},
    {"box-bottom", 25, "the old picture shrinks to the middle of the bottom edge"},
    {"box-left", 26, "the old picture shrinks to the middle of the left edge"},
    {"iris", 41, "a rectangle grows from the centre"},
    {"slide-up", 500, "the old picture moves off upwards"},
    {"slide-left", 501, "the old picture moves off to the left"},
    {"slide-down", 502, "the old picture moves off downwards"},
    {"slide-right", 503, "the old picture moves off to the right"},
};

/// What numbers beside those of the names draw.
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

constexpr std::uint32_t kFirstSlide = 500, kLastSlide = 507, kLastEmpty = 515;

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
  if (!number || *number >= kSwapWipe)
    badValue(option, text, "see nkdraw wipe --list");
  if (*number > kLastSlide && *number <= kLastEmpty)
    badValue(option, text, "508 to 515 draw nothing; see nkdraw wipe --list");
  return *number;
}

bool isSlide(std::uint32_t number) {
  return number >= kFirstSlide && number <= kLastSlide;
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
