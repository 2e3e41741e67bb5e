// SPDX-License-Identifier: BSD-2-Clause
#include "config_status.h"

#include <nkdraw/platform/config.h>

thread_local bool nkdraw::storeWasRead = true;

bool nkCFGWasRead(nkStore /*store*/) {
  return nkdraw::storeWasRead;
}
