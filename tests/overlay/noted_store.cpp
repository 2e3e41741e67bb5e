// SPDX-License-Identifier: BSD-2-Clause
#include "noted_store.h"

#include <nkdraw/platform/config.h>

#include <cstring>
#include <sstream>

namespace {

using nkdraw::test::notedStore;

template <class... Parts>
std::string joined(const Parts&... parts) {
  std::ostringstream text;
  (text << ... << parts);
  return text.str();
}

std::string valueCall(nkStore store, const char* root, const char* key, const char* value,
                      std::uint32_t length, std::uint32_t mode) {
  return joined(store, "|", root, "|", key, "|", value, "|", length, "|", mode);
}

constexpr char kRoot[] = "HZW\\Advanced\\Overlay";

}  // namespace

std::string nkdraw::test::existsCall() {
  return joined("exists|", -1, "|", kRoot);
}

std::string nkdraw::test::writeCall(const std::string& key, const std::string& text) {
  return valueCall(-1, kRoot, key.c_str(), text.c_str(), 128, 1);
}

std::string nkdraw::test::readCall(const std::string& key, const std::string& buffer) {
  return valueCall(-1, kRoot, key.c_str(), buffer.c_str(), 128, 0);
}

std::string nkdraw::test::saveCall() {
  return "save|-1|0|0";
}

bool nkCFGKeyExists(nkStore store, const char* root) {
  notedStore.calls.push_back(joined("exists|", store, "|", root));
  return notedStore.rootExists;
}

std::uint32_t nkCFGValueString(nkStore store, const char* root, const char* key, char* value,
                               std::uint32_t* length, std::uint32_t mode) {
  const bool reads = mode == 0;
  const char* const shown = value == nullptr ? "null" : reads ? "buffer" : value;
  notedStore.calls.push_back(valueCall(store, root, key, shown, *length, mode));
  if (!reads && notedStore.keepsWrites)
    notedStore.values[key] = value;
  if (reads && value != nullptr) {
    const std::string text = notedStore.values[key].substr(0, *length - 1);
    std::memcpy(value, text.c_str(), text.size() + 1);
  }
  return notedStore.fails ? 0xFFFFFFFF : 0;
}

std::uint32_t nkCFGSave(nkStore store, std::uint32_t flags, std::uint32_t reserved) {
  notedStore.calls.push_back(joined("save|", store, "|", flags, "|", reserved));
  return notedStore.fails ? 0xFFFFFFFF : 0;
}
