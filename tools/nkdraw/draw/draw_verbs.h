// SPDX-License-Identifier: BSD-2-Clause
//
// The verbs of drawing scripts: what each takes, and which call of the library it is.
#pragma once

#include <nkdraw/draw/draw.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace nkdraw::tool {

/// What a parameter takes. Numbers lie in a range; words have numbers, too.
struct Word {
  std::string_view name;
  int value;
};
struct Parameter {
  enum class Kind : std::uint8_t { kWhole, kDecimal, kWord, kText };

  std::string_view names;  // with blanks between them
  Kind kind;
  double least, most;
  std::span<const Word> words;

  /// "a whole number from 0 to 9", or what else it may be
  [[nodiscard]] std::string range() const;
};

/// The arguments of one statement.
struct Values {
  std::vector<double> numbers;  // of words, too
  std::string text;

  [[nodiscard]] int whole(std::size_t index) const { return static_cast<int>(numbers[index]); }
  [[nodiscard]] std::vector<tagPOINT> points() const;
};

struct Verb {
  std::string_view name;
  /// Names of parameters. One in brackets may be left out; a pair in brackets with dots behind it
  /// may come again and again. TEXT is the rest of the line.
  std::string_view usage;
  std::string_view meaning;
  std::uint32_t (*draw)(NKDraw& surface, const Values& values);
  /// What must hold, for verbs that the library refuses otherwise.
  std::string_view condition = {};
};

[[nodiscard]] std::span<const Verb> verbs();

/// The verb with this name, in small or capital letters; null when there is none.
[[nodiscard]] const Verb* verbNamed(std::string_view name);
[[nodiscard]] const Verb& nearestVerb(std::string_view name);

/// The parameter of a name in a verb's usage, without brackets.
[[nodiscard]] const Parameter& parameterNamed(std::string_view name);

}  // namespace nkdraw::tool
