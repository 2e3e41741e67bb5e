// SPDX-License-Identifier: BSD-2-Clause
#include "cli/command.h"
#include "cli/run_options.h"
#include "media/failure.h"
#include "media/output_file.h"
#include "media/still.h"
#include "sheet/contact_sheet.h"
#include "sheet/drawing_sheets.h"
#include "sheet/sheet_options.h"

namespace nkdraw::tool {
namespace {

/// A sheet made from two pictures.
template <int tileWidth, BgraCanvas (*draw)(SheetPictures& pictures)>
BgraCanvas ofPictures(const SheetOptions& options) {
  SheetPictures pictures = sheetPictures(options.a, options.b, tileWidth);
  return draw(pictures);
}

template <BgraCanvas (*draw)()>
BgraCanvas ofDrawings(const SheetOptions& /*options*/) {
  return draw();
}

/// By SheetKind.
constexpr BgraCanvas (*kSheets[])(const SheetOptions& options) = {
    ofPictures<kWipeTileWidth, wipeSheet>, ofPictures<kModeTileWidth, modeSheet>,
    ofDrawings<glyphSheet>, ofDrawings<shapeSheet>, ofDrawings<layoutSheet>};

void drawSheet(const SheetOptions& options) {
  checkOutput(options.output, options);
  for (const auto& input : {options.a, options.b}) {
    if (input)
      checkIsAnother(options.output, *input, "the output is an input");
  }
  const Frame picture = kSheets[static_cast<std::size_t>(options.kind)](options).frame();
  OutputFile file(options.output, options.overwrite);
  writeStill(*picture, file.temporary(), options.output);
  file.commit();
}

}  // namespace

std::unique_ptr<Command> addSheet(CLI::App& app) {
  return std::make_unique<SubCommand<SheetArguments, drawSheet>>(app, "sheet");
}

}  // namespace nkdraw::tool
