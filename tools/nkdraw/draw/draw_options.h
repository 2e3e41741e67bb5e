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
  bool listLayouts = false, listVerbs = false;  // then nothing else is done
  std::string script, output;
  bool raw = false;  // bytes, not a picture
  const DrawLayout* layout = nullptr;
  int width = 0, height = 0;
  bool clip = false;
};

/// The options on the command line.
class DrawArguments {
 public:
  /// Adds them to the command line of a sub-command, which they must outlive.
  void addTo(CLI::App& command);

  /// The request that they make. Throws Failure for impossible values.
  [[nodiscard]] DrawOptions read() const;

 private:
  [[nodiscard]] bool isRaw(const std::string& output) const;
  void readSize(DrawOptions& options) const;

  DrawOptions plain_;  // values that need no interpretation
  std::optional<std::string> layout_, size_, format_;
};

}  // namespace nkdraw::tool
