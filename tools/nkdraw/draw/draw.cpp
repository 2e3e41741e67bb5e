// SPDX-License-Identifier: BSD-2-Clause
#include "cli/command.h"
#include "cli/run_options.h"
#include "draw/draw_canvas.h"
#include "draw/draw_options.h"
#include "draw/draw_script.h"
#include "media/output_file.h"
#include "media/still.h"

#include <cstdio>

namespace nkdraw::tool {
namespace {

void listLayouts() {
  for (const DrawLayout& layout : drawLayouts())
    std::printf("%-13s %s\n", std::string(layout.name).c_str(),
                std::string(layout.description).c_str());
}

void listVerbs() {
  for (const Verb& verb : verbs())
    std::printf("%s\n    %s\n",
                (std::string(verb.name) + (verb.usage.empty() ? "" : " ") + std::string(verb.usage))
                    .c_str(),
                std::string(verb.meaning).c_str());
}

void writeRaw(const DrawCanvas& canvas, const std::string& file, const std::string& name) {
  writeBytes(canvas.frame(), file, name);
}

void drawFile(const DrawOptions& options) {
  checkOutput(options.output, options);
  checkIsAnother(options.output, options.script, "the output is the script");
  const DrawScript script(scriptName(options.script), readScript(options.script));
  DrawCanvas canvas(*options.layout, options.width, options.height);
  script.draw(canvas, options.clip ? Outside::kLeftOut : Outside::kRefused);
  OutputFile file(options.output, options.overwrite);
  if (options.raw)
    writeRaw(canvas, file.temporary(), options.output);
  else
    writeStill(*canvas.picture(), file.temporary(), options.output);
  file.commit();
}

void drawOrList(const DrawOptions& options) {
  if (options.listLayouts)
    listLayouts();
  if (options.listVerbs)
    listVerbs();
  if (options.layout != nullptr)
    drawFile(options);
}

}  // namespace

std::unique_ptr<Command> addDraw(CLI::App& app) {
  return std::make_unique<SubCommand<DrawArguments, drawOrList>>(app, "draw");
}

}  // namespace nkdraw::tool
