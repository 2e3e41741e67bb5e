// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// The version of nkdraw. The header is C99 and C++.
#ifndef NKDRAW_VERSION_H
#define NKDRAW_VERSION_H

#include <nkdraw/export.h>

// The version of the headers that a program is compiled with.
#define NKDRAW_VERSION_MAJOR 0  ///< first part of the headers' version
#define NKDRAW_VERSION_MINOR 1  ///< second part of the headers' version
#define NKDRAW_VERSION_PATCH 0  ///< third part of the headers' version
#define NKDRAW_VERSION "0.1.0"  ///< the headers' version, as text

#ifdef __cplusplus
extern "C" {
#endif

/// The version of the library at run time, as "MAJOR.MINOR.PATCH". Never null; not to be freed.
NKDRAW_API const char* nkdraw_version(void);

#ifdef __cplusplus
}
#endif

#endif
