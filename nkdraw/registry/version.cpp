// SPDX-License-Identifier: BSD-2-Clause
#include <nkdraw/version.h>

const char* nkdraw_version() {
  return NKDRAW_VERSION;
}
