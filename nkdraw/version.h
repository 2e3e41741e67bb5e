/* SPDX-License-Identifier: BSD-2-Clause
 *
 * The version of nkdraw. Valid C99. */
#ifndef NKDRAW_VERSION_H
#define NKDRAW_VERSION_H

#include <nkdraw/export.h>

/* Of the headers that a program is compiled with. */
#define NKDRAW_VERSION_MAJOR 0
#define NKDRAW_VERSION_MINOR 1
#define NKDRAW_VERSION_PATCH 0
#define NKDRAW_VERSION "0.1.0"

#ifdef __cplusplus
extern "C" {
#endif

/* "MAJOR.MINOR.PATCH" of the library that runs, never null, not to be freed. */
NKDRAW_API const char* nkdraw_version(void);

#ifdef __cplusplus
}
#endif

#endif
