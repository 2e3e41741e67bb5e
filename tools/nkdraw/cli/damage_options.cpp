// SPDX-License-Identifier: BSD-2-Clause
#include "cli/damage_options.h"

#include "cli/option_group.h"
#include "cli/option_values.h"

namespace nkdraw::tool {

void DamageArguments::addTo(CLI::App& command) {
  OptionGroup group(command, "What is written");
  group.add("--on-damage", onDamage_, "stop|continue",
            "At a damaged frame, stop (by default) and name it; or\n"
            "go on, list them all and end with status 5");
}

OnDamage DamageArguments::read() const {
  if (!onDamage_ || *onDamage_ == "stop")
    return OnDamage::kStop;
  if (*onDamage_ != "continue")
    badValue("--on-damage", *onDamage_, "give stop or continue");
  return OnDamage::kContinue;
}

}  // namespace nkdraw::tool
