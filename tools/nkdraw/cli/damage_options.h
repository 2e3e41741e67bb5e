// SPDX-License-Identifier: BSD-2-Clause
//
// The option for damaged inputs, shared by the sub-commands that read clips.
#pragma once

#include "cli/using_media.h"
#include "media/damage.h"

#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace nkdraw::tool {

class DamageArguments {
 public:
  /// Adds it to the command line of a sub-command, which it must outlive.
  void addTo(CLI::App& command);

  /// Throws Failure for another value.
  [[nodiscard]] OnDamage read() const;
  [[nodiscard]] bool given() const { return onDamage_.has_value(); }

 private:
  std::optional<std::string> onDamage_;
};

}  // namespace nkdraw::tool
