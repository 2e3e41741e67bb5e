// SPDX-License-Identifier: BSD-2-Clause
//
// Files and modules loaded at run time.
#pragma once

#include <nkdraw/platform/sync.h>

#include <cstdint>

/// Writes the folder of the running program, with '/' at its end and a zero behind it, into the
/// `size` bytes at `path`. The length without the zero; 0, and the empty text, if it can't fit.
NKDRAW_API std::uint32_t nkOSGetAppDir(char* path, std::uint32_t size);

/// Whether `path` names a file that is there; a folder is none.
[[nodiscard]] NKDRAW_API bool nkOSFileExists(const char* path);

/// Loads the module "NAME.dll", which is the file libNAME.so: beside this library, or the program
/// that it is linked into, if it is there, else wherever the loader looks. `flags` is not read.
/// Null when it can't be loaded, and for a name with a '/' in it: modules are named, not located.
[[nodiscard]] NKDRAW_API nkHandle nkOSLoadLibrary(const char* name, std::uint32_t flags);

/// The address of a symbol of a module; null when the module or the symbol is missing.
[[nodiscard]] NKDRAW_API void* nkOSGetProcAddress(nkHandle module, const char* symbol);

/// Lets a module go. Its addresses are dead afterwards. 1, or 0 for a null or closed handle.
NKDRAW_API std::uint32_t nkOSFreeLibrary(nkHandle module);
