// SPDX-License-Identifier: BSD-2-Clause
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <nkdraw/platform/module.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "failing_new.h"

namespace {

using nkdraw::test::FailingNew;

constexpr std::uint32_t kAnyFlags = 2;
constexpr const char kBeside[] = "nkdraw_test_beside.dll";
constexpr const char kElsewhere[] = "nkdraw_test_elsewhere.dll";

int answerOf(nkHandle module) {
  void* const entry = nkOSGetProcAddress(module, "testModuleAnswer");
  return entry != nullptr ? reinterpret_cast<int (*)()>(entry)() : -1;
}

TEST(Module, IsFoundBesideTheLibrary) {
  const nkHandle module = nkOSLoadLibrary(kBeside, kAnyFlags);
  ASSERT_NE(module, nullptr);
  EXPECT_EQ(answerOf(module), 41);
  EXPECT_EQ(nkOSFreeLibrary(module), 1u);
}

TEST(Module, IsFoundInTheLibrarysOwnFolder) {
  const nkHandle module = nkOSLoadLibrary("nkdraw_test_inside.dll", kAnyFlags);
  ASSERT_NE(module, nullptr);
  EXPECT_EQ(answerOf(module), 43);
  EXPECT_EQ(nkOSFreeLibrary(module), 1u);
}

TEST(Module, IsFoundByTheLoaderWhenItIsNotBesideTheLibrary) {
  ASSERT_EQ(nkOSLoadLibrary(kElsewhere, kAnyFlags), nullptr);
  void* const known = dlopen(TEST_MODULE_ELSEWHERE, RTLD_NOW);
  ASSERT_NE(known, nullptr) << dlerror();
  const nkHandle module = nkOSLoadLibrary(kElsewhere, kAnyFlags);
  ASSERT_NE(module, nullptr);
  EXPECT_EQ(answerOf(module), 42);
  EXPECT_EQ(nkOSFreeLibrary(module), 1u);
  dlclose(known);
}

TEST(Module, IsLetGoWithItsLastHandle) {
  const auto isLoaded = [] {
    void* const library = dlopen("libnkdraw_test_beside.so", RTLD_NOW | RTLD_NOLOAD);
    if (library != nullptr)
      dlclose(library);
    return library != nullptr;
  };
  const nkHandle first = nkOSLoadLibrary(kBeside, kAnyFlags);
  const nkHandle second = nkOSLoadLibrary(kBeside, kAnyFlags);
  EXPECT_NE(first, second);
  nkOSFreeLibrary(first);
  EXPECT_EQ(answerOf(second), 41);
  EXPECT_TRUE(isLoaded());
  nkOSFreeLibrary(second);
  EXPECT_FALSE(isLoaded());
}

TEST(Module, ThatIsMissingGivesNull) {
  EXPECT_EQ(nkOSLoadLibrary("nkdraw_no_such_module.dll", kAnyFlags), nullptr);
}

TEST(Module, NamesThatAreNoneGiveNull) {
  EXPECT_EQ(nkOSLoadLibrary(nullptr, kAnyFlags), nullptr);
  EXPECT_EQ(nkOSLoadLibrary("", kAnyFlags), nullptr);
  EXPECT_EQ(nkOSLoadLibrary(".dll", kAnyFlags), nullptr);
  EXPECT_EQ(nkOSLoadLibrary("./nkdraw_test_beside.dll", kAnyFlags), nullptr);
}

TEST(Module, ASymbolThatIsMissingIsNull) {
  const nkHandle module = nkOSLoadLibrary(kBeside, kAnyFlags);
  EXPECT_EQ(nkOSGetProcAddress(module, "noSuchEntry"), nullptr);
  nkOSFreeLibrary(module);
}

TEST(Module, NullAndClosedHandlesAreRefused) {
  const nkHandle module = nkOSLoadLibrary(kBeside, kAnyFlags);
  EXPECT_EQ(nkOSFreeLibrary(module), 1u);
  for (const nkHandle refused : {module, nkHandle{nullptr}}) {
    EXPECT_EQ(nkOSGetProcAddress(refused, "testModuleAnswer"), nullptr);
    EXPECT_EQ(nkOSFreeLibrary(refused), 0u);
  }
}

TEST(Module, GivesNullWithoutMemoryHoweverFarItGets) {
  int allowed = 0;
  for (;; ++allowed) {
    ASSERT_LT(allowed, 100);
    nkHandle module = nullptr;
    {
      const FailingNew failing(allowed);
      module = nkOSLoadLibrary(kBeside, kAnyFlags);
    }
    if (nkOSFreeLibrary(module) == 1)
      break;
  }
  EXPECT_GT(allowed, 0);
}

TEST(AppDir, IsTheProgramsFolderWithASlashAtItsEnd) {
  const std::string folder =
      std::filesystem::read_symlink("/proc/self/exe").parent_path().string() + "/";
  std::vector<char> path(folder.size() + 2, '#');
  EXPECT_EQ(nkOSGetAppDir(path.data(), static_cast<std::uint32_t>(folder.size() + 1)),
            folder.size());
  EXPECT_EQ(std::string(path.data()), folder);
  EXPECT_EQ(path.back(), '#');
}

TEST(AppDir, IsEmptyWhenItDoesNotFit) {
  std::vector<char> whole(4096);
  const std::uint32_t length = nkOSGetAppDir(whole.data(), 4096);
  for (std::uint32_t size = 1; size <= length; ++size) {
    std::vector<char> path(size, '#');
    EXPECT_EQ(nkOSGetAppDir(path.data(), size), 0u);
    EXPECT_EQ(path[0], '\0');
  }
  EXPECT_EQ(nkOSGetAppDir(nullptr, 0), 0u);
}

TEST(FileExists, IsTrueForFilesAlone) {
  const std::filesystem::path folder = testing::TempDir();
  const std::filesystem::path file = folder / "nkdraw_file_exists_test";
  std::filesystem::remove(file);
  EXPECT_FALSE(nkOSFileExists(file.c_str()));
  std::ofstream(file) << "here";
  EXPECT_TRUE(nkOSFileExists(file.c_str()));
  std::filesystem::remove(file);
  EXPECT_FALSE(nkOSFileExists(folder.c_str()));
  EXPECT_FALSE(nkOSFileExists(""));
  EXPECT_FALSE(nkOSFileExists(nullptr));
}

}  // namespace
