// SPDX-License-Identifier: BSD-2-Clause
//
// The verbs of drawing scripts: their parameters, and the library calls that they make.
#pragma once

#include <nkdraw/draw/draw.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace nkdraw::tool {

/// What a parameter accepts. Numbers have a range; words are also stored as numbers.
struct Word {
  std::string_view name;
  int value;
};
struct Parameter {
  enum class Kind : std::uint8_t { kWhole, kDecimal, kWord, kText };

  std::string_view names;  // separated by blanks
  Kind kind;
  double least, most;
  std::span<const Word> words;

  /// "a whole number from 0 to 9", or what else it may be
  [[nodiscard]] std::string range() const;
};

/// The arguments of one statement.
struct Values {
  std::vector<double> numbers;  // also for words
  std::string text;

  [[nodiscard]] int whole(std::size_t index) const { return static_cast<int>(numbers[index]); }
  [[nodiscard]] std::vector<tagPOINT> points() const;
};

struct Verb {
  std::string_view name;
  /// Names of parameters. One in brackets is optional; a pair in brackets followed by dots may
  /// repeat. TEXT is the rest of the line.
  std::string_view usage;
  std::string_view meaning;
  std::uint32_t (*draw)(NKDraw& surface, const Values& values);
  /// A condition that must hold, for verbs that the library would otherwise refuse.
  std::string_view condition = {};
};

[[nodiscard]] std::span<const Verb> verbs();

/// The verb with this name, ignoring case; null if there is none.
[[nodiscard]] const Verb* verbNamed(std::string_view name);
[[nodiscard]] const Verb& nearestVerb(std::string_view name);

/// The parameter with a name in a verb's usage, without brackets.
[[nodiscard]] const Parameter& parameterNamed(std::string_view name);

}  // namespace nkdraw::tool
