// SPDX-License-Identifier: BSD-2-Clause
//
// The host's configuration store: texts under keys, below roots whose parts are divided by '\'.
#pragma once

#include <nkdraw/export.h>

#include <cstdint>

/// Names the store in every call.
using nkStore = std::int64_t;
inline constexpr nkStore kDefaultStore = -1;

/// Modes of nkCFGValueString.
enum nkCFGMode : std::uint32_t { kConfigRead = 0, kConfigWrite = 1 };

/// Whether `root` has any value. False, too, when the store can't be read; nkCFGWasRead tells the
/// two apart.
[[nodiscard]] NKDRAW_API bool nkCFGKeyExists(nkStore store, const char* root);

/// Whether the store could be read when this thread last asked it whether a root exists or for a
/// value. What it could not read may be there: nobody should write in its place. True for a store
/// that does not exist yet, and before the first question. A host that can always read its store
/// need not bring this.
[[nodiscard]] NKDRAW_API bool nkCFGWasRead(nkStore store);

/// Reads or writes the text under `key`. `length` is the size of the buffer `value`. A read writes
/// at most so many bytes, the zero at the end included, and leaves the length of the text in
/// `length`; a missing key is the empty text. A write takes the text up to its zero, or `length`
/// characters, and is seen by this process at once, by others after nkCFGSave. A null `value` is
/// left alone, or written as the empty text. Returns 0, or 0xFFFFFFFF when the store failed, which
/// the error log tells; a read then gives the empty text.
NKDRAW_API std::uint32_t nkCFGValueString(nkStore store, const char* root, const char* key,
                                          char* value, std::uint32_t* length, std::uint32_t mode);

/// Makes all that was written durable, in one step that others see whole. The last two arguments
/// are not read. Returns 0, or 0xFFFFFFFF when the store failed; the old values then stay.
NKDRAW_API std::uint32_t nkCFGSave(nkStore store, std::uint32_t flags, std::uint32_t reserved);
