// SPDX-License-Identifier: BSD-2-Clause
#include "cli/nearest_name.h"

#include "cli/option_values.h"

#include <numeric>
#include <vector>

namespace nkdraw::tool {

std::size_t nameDistance(std::string_view from, std::string_view to) {
  std::vector<std::size_t> row(to.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 1; i <= from.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= to.size(); ++j) {
      const bool same = isSameName(from.substr(i - 1, 1), to.substr(j - 1, 1));
      const std::size_t changed = diagonal + (same ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({changed, row[j] + 1, row[j - 1] + 1});
    }
  }
  return row.back();
}

}  // namespace nkdraw::tool
