// SPDX-License-Identifier: BSD-2-Clause
//
// The command line of `nkdraw sheet`.
#pragma once

#include "cli/run_options.h"

#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace nkdraw::tool {

enum class SheetKind { kWipes, kModes, kGlyphs, kShapes, kLayouts };

struct SheetOptions : RunOptions {
  SheetKind kind = SheetKind::kWipes;
  std::string output;
  std::optional<std::string> a, b;  // clips whose first frames are shown
};

/// The options on the command line.
class SheetArguments {
 public:
  /// Adds them to the command line of a sub-command, which they must outlive.
  void addTo(CLI::App& command);

  /// The request that they make. Throws Failure for impossible values.
  [[nodiscard]] SheetOptions read() const;

 private:
  SheetOptions plain_;  // values that need no interpretation
  std::string kind_, a_, b_;
};

}  // namespace nkdraw::tool
