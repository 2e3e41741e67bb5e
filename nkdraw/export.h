// SPDX-License-Identifier: BSD-2-Clause
#ifndef NKDRAW_EXPORT_H
#define NKDRAW_EXPORT_H

/* Everything is hidden but what carries this mark. */
#define NKDRAW_API __attribute__((visibility("default")))
/* What is inside a marked class and for the library alone. */
#define NKDRAW_HIDDEN __attribute__((visibility("hidden")))

#endif
