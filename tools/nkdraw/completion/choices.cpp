// SPDX-License-Identifier: BSD-2-Clause
#include "completion/choices.h"

#include "burnin/overlay_plan.h"
#include "cli/using_media.h"
#include "compare/mux_modes.h"
#include "config/setting_table.h"
#include "draw/draw_layouts.h"
#include "media/layouts.h"
#include "wipe/wipe_names.h"

#include <algorithm>
#include <iterator>

namespace nkdraw::tool {
namespace {

using Words = std::vector<std::string>;

template <class Table>
Words namesIn(const Table& table) {
  Words names;
  for (const auto& row : table)
    names.emplace_back(row.name);
  return names;
}

Words drawnLayouts() {
  return namesIn(layouts());
}
Words surfaceLayouts() {
  return namesIn(drawLayouts());
}
Words wipes() {
  return namesIn(wipeNames());
}
Words modes() {
  return namesIn(muxModes());
}
Words channels() {
  constexpr std::size_t kOptionChannels = 4;
  return {kCaptionChannels, kCaptionChannels + kOptionChannels};
}
Words damage() {
  return {"stop", "continue"};
}
Words progress() {
  return {"line", "json", "none"};
}
Words configWords() {
  Words words = {"list", "get", "set", "unset", "reset", "path"};
  std::ranges::transform(settingTable(), std::back_inserter(words), &Setting::key);
  return words;
}
Words shells() {
  return {"bash", "zsh", "fish"};
}

/// An empty command stands for every one.
struct Choice {
  std::string_view command, option;
  Words (*words)();
};
constexpr Choice kChoices[] = {
    {"burnin", "--layout", drawnLayouts},
    {"draw", "--layout", surfaceLayouts},
    {"wipe", "--wipe", wipes},
    {"compare", "--wipe", wipes},
    {"compare", "--mode", modes},
    {"burnin", "--caption-channel", channels},
    {"", "--on-damage", damage},
    {"", "--progress", progress},
    {"config", "", configWords},
    {"completion", "", shells},
};

}  // namespace

std::vector<std::string> choicesOf(std::string_view command, std::string_view option) {
  const auto* const found = std::ranges::find_if(kChoices, [&](const Choice& choice) {
    return (choice.command.empty() || choice.command == command) && choice.option == option;
  });
  return found != std::end(kChoices) ? found->words() : Words();
}

}  // namespace nkdraw::tool
