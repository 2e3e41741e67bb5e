// SPDX-License-Identifier: BSD-2-Clause
#include "cli/description.h"

#include <algorithm>

namespace nkdraw::tool {
namespace {

constexpr std::size_t kLabelWidth = 9;  // and a space

std::string lineOf(std::string label, const std::string& words) {
  label.resize(std::max(label.size(), kLabelWidth), ' ');
  return label + ' ' + words;
}

}  // namespace

void Description::add(const std::string& label, const std::string& place,
                      std::initializer_list<Piece> pieces) {
  Json& object = values_[Json::json_pointer(place)];
  std::string words;
  for (const Piece& piece : pieces) {
    words += piece.words;
    if (!piece.key.empty())
      object[piece.key] = piece.value;
  }
  if (!label.empty())
    lines_.push_back(lineOf(label, words));
}

void Description::addText(const std::string& label, const std::string& place,
                          const std::string& text) {
  values_[Json::json_pointer(place)] = text;
  lines_.push_back(lineOf(label, text));
}

void Description::addList(const std::string& place) {
  values_[Json::json_pointer(place)] = Json::array();
}

void Description::print(std::FILE* to) const {
  for (const std::string& line : lines_)
    std::fprintf(to, "%s\n", line.c_str());
}

void Description::printJson(std::FILE* to) const {
  std::fprintf(to, "%s\n", values_.dump(-1, ' ', false, Json::error_handler_t::replace).c_str());
}

}  // namespace nkdraw::tool
