// SPDX-License-Identifier: BSD-2-Clause
//
// Files, and modules on the system's loader.
#include <nkdraw/platform/module.h>

#include <dlfcn.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "handle_table.h"

namespace {

using nkdraw::handlesOf;

struct CloseLibrary {
  void operator()(void* library) const { dlclose(library); }
};
using Library = std::unique_ptr<void, CloseLibrary>;

struct Module {
  explicit Module(Library opened) : library(std::move(opened)) {}

  const Library library;
};

/// `path` up to and including its last '/'; empty if there is none.
std::string_view folderOf(std::string_view path) {
  return path.substr(0, path.rfind('/') + 1);
}

/// The folder of the program. The loader knows the program by the name it was called by.
std::string folderOfProgram() {
  std::array<char, PATH_MAX> folder{};
  nkOSGetAppDir(folder.data(), folder.size());
  return folder.data();
}

/// The folder of this library, or of the program that it is linked into.
std::string folderOfThisLibrary() {
  static const char inThisLibrary = 0;
  Dl_info info{};
  link_map* loaded = nullptr;
  if (dladdr1(&inThisLibrary, &info, reinterpret_cast<void**>(&loaded), RTLD_DL_LINKMAP) == 0)
    return {};
  const bool inProgram = loaded == nullptr || *loaded->l_name == '\0';
  return inProgram ? folderOfProgram() : std::string(folderOf(info.dli_fname));
}

/// "NAME.dll" becomes libNAME.so. Empty for anything but a plain name: modules are not loaded by
/// path.
std::string fileNameOf(std::string_view module) {
  constexpr std::string_view kSuffix = ".dll";
  if (module.ends_with(kSuffix))
    module.remove_suffix(kSuffix.size());
  if (module.empty() || module.find('/') != std::string_view::npos)
    return {};
  return "lib" + std::string(module) + ".so";
}

Library openLibrary(std::string_view module) {
  const std::string name = fileNameOf(module);
  if (name.empty())
    return nullptr;
  std::string found = name;
  for (const char* const folder : {"nkdraw/", ""}) {  // as installed, and as built
    if (const std::string path = folderOfThisLibrary() + folder + name;
        nkOSFileExists(path.c_str()))
      found = path;
  }
  return Library(dlopen(found.c_str(), RTLD_NOW | RTLD_LOCAL));
}

}  // namespace

std::uint32_t nkOSGetAppDir(char* path, std::uint32_t size) {
  if (size == 0)
    return 0;
  std::array<char, PATH_MAX> program;
  const ssize_t length = readlink("/proc/self/exe", program.data(), program.size());
  const std::string_view folder =
      length > 0 ? folderOf({program.data(), static_cast<std::size_t>(length)}) : "";
  if (folder.size() >= size) {
    *path = '\0';
    return 0;
  }
  folder.copy(path, folder.size());
  path[folder.size()] = '\0';
  return static_cast<std::uint32_t>(folder.size());
}

bool nkOSFileExists(const char* path) {
  struct stat status {};
  return path != nullptr && stat(path, &status) == 0 && !S_ISDIR(status.st_mode);
}

nkHandle nkOSLoadLibrary(const char* name, std::uint32_t /*flags*/) {
  if (name == nullptr)
    return nullptr;
  try {
    if (auto library = openLibrary(name))
      return nkdraw::toHandle(
          handlesOf<Module>().add(nkdraw::tryMakeShared<Module>(std::move(library))));
  } catch (const std::exception&) {
    return nullptr;
  }
  return nullptr;
}

void* nkOSGetProcAddress(nkHandle module, const char* symbol) {
  const auto found = handlesOf<Module>().find(nkdraw::toNumber(module));
  return found ? dlsym(found->library.get(), symbol) : nullptr;
}

std::uint32_t nkOSFreeLibrary(nkHandle module) {
  return handlesOf<Module>().close(nkdraw::toNumber(module)) ? 1 : 0;
}
