// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// What the libraries export.
#ifndef NKDRAW_EXPORT_H
#define NKDRAW_EXPORT_H

/** Exports what carries it: all else is hidden. */
#define NKDRAW_API __attribute__((visibility("default")))
/** Hides a part of an exported class that is for the library alone. */
#define NKDRAW_HIDDEN __attribute__((visibility("hidden")))

#endif
