// SPDX-License-Identifier: BSD-2-Clause
//
// What a run would do, said once: lines for a user, and the same facts by name for programs.
#pragma once

#include <nlohmann/json.hpp>

#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace nkdraw::tool {

using Json = nlohmann::ordered_json;

/// A part of a line: words for a user, a named value for programs, or both.
struct Piece {
  Piece(const char* text) : words(text) {}
  Piece(std::string text) : words(std::move(text)) {}
  /// A value that a user reads as it is: a text, or a number.
  Piece(std::string name, Json plain)
      : key(std::move(name)),
        value(std::move(plain)),
        words(value.is_string() ? value.get<std::string>() : value.dump()) {}
  /// A value that a user reads as `text`; empty for a value that only programs need.
  Piece(std::string name, Json plain, std::string text)
      : key(std::move(name)), value(std::move(plain)), words(std::move(text)) {}

  std::string key;
  Json value;
  std::string words;
};

/// The number, or null for 0, which stands for an unknown one.
[[nodiscard]] inline Json orNull(std::int64_t number) {
  return number != 0 ? Json(number) : Json(nullptr);
}

class Description {
 public:
  /// Adds the line "LABEL  WORDS", and the values to the object at `place`: a JSON pointer, "" for
  /// the whole description, "/frames" for a part of it, "/boxes/-" for a new part of a list.
  /// Without a label there is no line.
  void add(const std::string& label, const std::string& place, std::initializer_list<Piece> pieces);

  /// Adds the line "LABEL  TEXT", and the text as the value at `place`.
  void addText(const std::string& label, const std::string& place, const std::string& text);

  /// Programs find a list there, even if nothing is added to it.
  void addList(const std::string& place);

  /// One fact a line, behind a label of ten columns.
  void print(std::FILE* to) const;

  /// One JSON object in one line. What is no UTF-8, in names of files, is replaced.
  void printJson(std::FILE* to) const;

 private:
  std::vector<std::string> lines_;
  Json values_ = Json::object();
};

}  // namespace nkdraw::tool
