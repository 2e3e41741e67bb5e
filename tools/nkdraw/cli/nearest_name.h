// SPDX-License-Identifier: BSD-2-Clause
//
// The name that someone meant who made a slip of the pen.
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string_view>

namespace nkdraw::tool {

/// How many letters must change, come or go; small and capital ones are the same.
[[nodiscard]] std::size_t nameDistance(std::string_view from, std::string_view to);

/// Where in `table`, which isn't empty, the entry stands whose name is nearest to `name`.
template <class Table, class NameOf>
[[nodiscard]] auto nearestName(const Table& table, std::string_view name, NameOf nameOf) {
  return std::ranges::min_element(
      table, {}, [&](const auto& entry) { return nameDistance(name, std::invoke(nameOf, entry)); });
}

}  // namespace nkdraw::tool
