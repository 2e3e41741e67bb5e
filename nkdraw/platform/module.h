// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// Files and modules loaded at run time.
#pragma once

#include <nkdraw/platform/sync.h>

#include <cstdint>

/// Writes the folder of the running program, with a '/' at its end and a final zero, into the
/// `size` bytes at `path`. Returns the length without the zero, or 0, and the empty text, if it
/// doesn't fit.
NKDRAW_API std::uint32_t nkOSGetAppDir(char* path, std::uint32_t size);

/// Whether `path` names an existing file; a folder is none.
[[nodiscard]] NKDRAW_API bool nkOSFileExists(const char* path);

/// Loads the module "NAME.dll", which is the file libNAME.so: from the folder of this library (or
/// of the program that it is linked into) if it is there, otherwise from the folder nkdraw in that
/// one, otherwise from where the loader looks.
/// `flags` is not read. Null when it can't be loaded, and for a name with a '/' in it: modules are
/// named, not located. Given back with nkOSFreeLibrary.
[[nodiscard]] NKDRAW_API nkHandle nkOSLoadLibrary(const char* name, std::uint32_t flags);

/// The address of a symbol of a module; null when the module or the symbol is missing.
[[nodiscard]] NKDRAW_API void* nkOSGetProcAddress(nkHandle module, const char* symbol);

/// Unloads a module, whose addresses must no longer be used. Returns 1, or 0 for a null or closed
/// handle.
NKDRAW_API std::uint32_t nkOSFreeLibrary(nkHandle module);
