// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// The host's configuration store: texts under keys, below roots whose parts are separated by '\'.
#pragma once

#include <nkdraw/export.h>

#include <cstdint>

/// Names a store.
using nkStore = std::int64_t;
/// The user's own store.
inline constexpr nkStore kDefaultStore = -1;

/// Modes of nkCFGValueString.
enum nkCFGMode : std::uint32_t {
  kConfigRead = 0,  ///< read the value
  kConfigWrite = 1  ///< write the value
};

/// Whether `root` has any value; false also when the store can't be read, which nkCFGWasRead tells
/// apart.
[[nodiscard]] NKDRAW_API bool nkCFGKeyExists(nkStore store, const char* root);

/// Whether this thread's last nkCFGKeyExists or reading nkCFGValueString could read the store; true
/// for a store that does not exist yet, and before the first such call. When false, values may be
/// there all the same, and must not be overwritten with defaults. A program that replaces the calls
/// of the default host one by one need not provide this; a library that replaces the host must.
[[nodiscard]] NKDRAW_API bool nkCFGWasRead(nkStore store);

/// Reads or writes the text under `key`; `mode` is an nkCFGMode. `length` is the size of the buffer
/// `value` in bytes.
///
/// A read writes at most that many bytes, the final zero included, and sets `length` to the length
/// of the text; a missing key reads as the empty text. A write stores the text up to its zero, or
/// `length` characters of it. This process sees it at once, others after nkCFGSave. A null `value`
/// is not written to by a read, and stored as the empty text by a write. Returns 0, or 0xFFFFFFFF,
/// with a message in the error log, when the store failed; a read then gives the empty text.
NKDRAW_API std::uint32_t nkCFGValueString(nkStore store, const char* root, const char* key,
                                          char* value, std::uint32_t* length, std::uint32_t mode);

/// Makes all that this process wrote durable, in one step: others see all of it or nothing. `flags`
/// and `reserved` are not read. Returns 0, or 0xFFFFFFFF when the store failed and the old values
/// stay.
NKDRAW_API std::uint32_t nkCFGSave(nkStore store, std::uint32_t flags, std::uint32_t reserved);
