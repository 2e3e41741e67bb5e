// SPDX-License-Identifier: BSD-2-Clause
#include "sheet/sheet_options.h"

#include "cli/option_values.h"
#include "cli/using_media.h"
#include "media/failure.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace nkdraw::tool {
namespace {

constexpr char kDescription[] =
    "Draw a contact sheet of all wipes, modes of compare, glyphs, shapes or layouts.";

constexpr char kMore[] =
    "Examples:\n"
    "  nkdraw sheet wipes wipes.png\n"
    "  nkdraw sheet modes modes.png --a reel7.mov --b reel8.mov\n"
    "  nkdraw sheet layouts layouts.png";

struct KindName {
  std::string_view name;
  SheetKind kind;
  bool showsClips;
};
constexpr KindName kKinds[] = {{"wipes", SheetKind::kWipes, true},
                               {"modes", SheetKind::kModes, true},
                               {"glyphs", SheetKind::kGlyphs, false},
                               {"shapes", SheetKind::kShapes, false},
                               {"layouts", SheetKind::kLayouts, false}};

const KindName& kindNamed(const std::string& name) {
  const auto* const found = std::ranges::find_if(
      kKinds, [&](const KindName& kind) { return isSameName(kind.name, name); });
  if (found == std::end(kKinds))
    throw Failure(ExitCode::kUsage, "no such sheet", name.empty() ? "(none)" : name,
                  "give wipes, modes, glyphs, shapes or layouts, and OUTPUT.png");
  return *found;
}

}  // namespace

void SheetArguments::addTo(CLI::App& command) {
  command.description(kDescription);
  command.footer(kMore);
  command
      .add_option("KIND", kind_,
                  "wipes (each at five positions), modes, glyphs, shapes\n"
                  "or layouts")
      ->type_name("");
  command.add_option("OUTPUT", output_, "The picture to write; ends in .png")->type_name("");
  command.add_option("--a", a_, "Show this clip's first frame as the first picture")
      ->type_name("FILE");
  command.add_option("--b", b_, "And this one's as the second")->type_name("FILE");
  command.add_flag("--overwrite", overwrite_, "Replace OUTPUT if it exists");
  command.add_flag("-v,--verbose", verbose_, "Say more, with FFmpeg's messages");
}

SheetOptions SheetArguments::read() const {
  const KindName& kind = kindNamed(kind_);
  if (!kind.showsClips && !(a_.empty() && b_.empty()))
    throw Failure(ExitCode::kUsage, "this sheet shows no clips", std::string(kind.name),
                  "leave --a and --b out");
  if (!output_.ends_with(".png"))
    throw Failure(ExitCode::kUsage, "a sheet is written as PNG",
                  output_.empty() ? "(no output)" : output_, "name an output that ends in .png");
  SheetOptions options;
  options.kind = kind.kind;
  options.output = output_;
  if (!a_.empty())
    options.a = a_;
  if (!b_.empty())
    options.b = b_;
  options.overwrite = overwrite_;
  options.verbose = verbose_;
  return options;
}

}  // namespace nkdraw::tool
