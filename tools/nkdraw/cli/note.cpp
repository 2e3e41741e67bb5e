// SPDX-License-Identifier: BSD-2-Clause
#include "cli/note.h"

#include <cstdio>

namespace nkdraw::tool {

void printNote(const std::string& note) {
  if (!note.empty())
    std::fprintf(stderr, "nkdraw: note: %s\n", note.c_str());
}

}  // namespace nkdraw::tool
