// SPDX-License-Identifier: BSD-2-Clause
#include "commands.h"
#include "contact_sheet.h"
#include "failure.h"
#include "output_file.h"
#include "sheet_options.h"
#include "still.h"
#include "sub_command.h"

namespace nkdraw::tool {
namespace {

struct Sheet {
  int tileWidth;
  BgraCanvas (*draw)(SheetPictures& pictures);
};

/// By SheetKind.
constexpr Sheet kSheets[] = {{kWipeTileWidth, wipeSheet}, {kModeTileWidth, modeSheet}};

void drawSheet(const SheetOptions& options) {
  checkOutputName(options.output, options.overwrite);
  for (const auto& input : {options.a, options.b}) {
    if (input && isSameFile(*input, options.output))
      throw Failure(ExitCode::kUsage, "the output is an input", options.output,
                    "choose another name");
  }
  const Sheet& sheet = kSheets[static_cast<std::size_t>(options.kind)];
  SheetPictures pictures = sheetPictures(options.a, options.b, sheet.tileWidth);
  const Frame picture = sheet.draw(pictures).frame();
  OutputFile file(options.output, options.overwrite);
  writeStill(*picture, file.temporary(), options.output);
  file.commit();
}

}  // namespace

std::unique_ptr<Command> addSheet(CLI::App& app) {
  return std::make_unique<SubCommand<SheetArguments, drawSheet>>(app, "sheet");
}

}  // namespace nkdraw::tool
