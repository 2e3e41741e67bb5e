// SPDX-License-Identifier: BSD-2-Clause
#include "sheet_options.h"

#include "failure.h"
#include "option_values.h"

#include <CLI/CLI.hpp>

namespace nkdraw::tool {
namespace {

constexpr char kDescription[] = "Draw a contact sheet of all wipes, or of all modes of compare.";

constexpr char kMore[] =
    "Examples:\n"
    "  nkdraw sheet wipes wipes.png\n"
    "  nkdraw sheet modes modes.png --a reel7.mov --b reel8.mov";

}  // namespace

void SheetArguments::addTo(CLI::App& command) {
  command.description(kDescription);
  command.footer(kMore);
  command.add_option("KIND", kind_, "wipes (each at five positions) or modes")->type_name("");
  command.add_option("OUTPUT", output_, "The picture to write; ends in .png")->type_name("");
  command.add_option("--a", a_, "Show this clip's first frame as the first picture")
      ->type_name("FILE");
  command.add_option("--b", b_, "And this one's as the second")->type_name("FILE");
  command.add_flag("--overwrite", overwrite_, "Replace OUTPUT if it exists");
  command.add_flag("-v,--verbose", verbose_, "Say more, with FFmpeg's messages");
}

SheetOptions SheetArguments::read() const {
  if (!isSameName(kind_, "wipes") && !isSameName(kind_, "modes"))
    throw Failure(ExitCode::kUsage, "no such sheet", kind_.empty() ? "(none)" : kind_,
                  "give wipes or modes, and OUTPUT.png");
  if (!output_.ends_with(".png"))
    throw Failure(ExitCode::kUsage, "a sheet is written as PNG",
                  output_.empty() ? "(no output)" : output_, "name an output that ends in .png");
  SheetOptions options;
  options.kind = isSameName(kind_, "wipes") ? SheetKind::kWipes : SheetKind::kModes;
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
