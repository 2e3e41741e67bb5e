// SPDX-License-Identifier: BSD-2-Clause
#include "sheet/sheet_options.h"

#include "cli/option_group.h"
#include "cli/option_values.h"
#include "cli/using_media.h"
#include "media/failure.h"

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
  describe(command, kDescription, kMore);
  OptionGroup plain(command);
  plain.add("KIND", kind_, "",
            "wipes (each at five positions), modes, glyphs, shapes\n"
            "or layouts");
  plain.add("OUTPUT", plain_.output, "", "The picture to write; ends in .png");
  plain.add("--a", a_, "FILE", "Show this clip's first frame as the first picture");
  plain.add("--b", b_, "FILE", "And this one's as the second");
  plain.addFlag("--overwrite", plain_.overwrite, "Replace OUTPUT if it exists");
  plain.addFlag("-v,--verbose", plain_.verbose, "Say more, with FFmpeg's messages");
}

SheetOptions SheetArguments::read() const {
  const KindName& kind = kindNamed(kind_);
  SheetOptions options = plain_;
  options.kind = kind.kind;
  options.a = given(a_);
  options.b = given(b_);
  if (!kind.showsClips && (options.a || options.b))
    throw Failure(ExitCode::kUsage, "this sheet shows no clips", std::string(kind.name),
                  "leave --a and --b out");
  if (!options.output.ends_with(".png"))
    throw Failure(ExitCode::kUsage, "a sheet is written as PNG",
                  options.output.empty() ? "(no output)" : options.output,
                  "name an output that ends in .png");
  return options;
}

}  // namespace nkdraw::tool
