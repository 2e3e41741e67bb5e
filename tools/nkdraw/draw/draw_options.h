// SPDX-License-Identifier: BSD-2-Clause
//
// The command line of `nkdraw draw`.
#pragma once

#include "cli/run_options.h"
#include "draw/draw_layouts.h"

#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace nkdraw::tool {

struct DrawOptions : RunOptions {
  bool listLayouts = false, listVerbs = false;  // nothing else is asked
  std::string script, output;
  bool raw = false;  // and not a picture
  const DrawLayout* layout = nullptr;
  int width = 0, height = 0;
  bool clip = false;
};

/// The options as they stand on the command line.
class DrawArguments {
 public:
  /// Puts them on the command line of a sub-command, which they must outlive.
  void addTo(CLI::App& command);

  /// What they mean. Throws Failure for values that can't be.
  [[nodiscard]] DrawOptions read() const;

 private:
  void readSize(DrawOptions& options) const;

  DrawOptions plain_;  // what the command line says without being read
  std::optional<std::string> layout_, size_;
};

}  // namespace nkdraw::tool
