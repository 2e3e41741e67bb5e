// SPDX-License-Identifier: BSD-2-Clause
//
// The program `nkdraw`: runs the sub-command, once or for each row of a list.
#include "cli/batch.h"
#include "cli/program.h"
#include "media/failure.h"
#include "media/interrupt.h"
#include "media/libav_log.h"

#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

namespace nkdraw::tool {
namespace {

int run(const std::vector<std::string>& arguments) {
  Program program;
  if (const auto code = program.parse(arguments))
    return *code;
  catchInterrupts();
  showLibavMessages(false);
  if (program.batch().empty())
    return program.run();
  try {
    return runBatch(arguments, program.batch());
  } catch (const Failure& failure) {
    report(failure.what());
    return static_cast<int>(failure.code());
  }
}

/// Checks that all standard output was written.
int finish(int code) {
  std::cout.flush();
  const bool arrived = std::fflush(stdout) == 0 && std::ferror(stdout) == 0 && std::cout.good();
  if (arrived || code != static_cast<int>(ExitCode::kOk))
    return code;
  report("cannot write: standard output; is the disk full?");
  return static_cast<int>(ExitCode::kOutput);
}

}  // namespace
}  // namespace nkdraw::tool

int main(int argc, char** argv) {
  return nkdraw::tool::finish(nkdraw::tool::run({argv + 1, argv + argc}));
}
