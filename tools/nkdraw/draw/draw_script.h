// SPDX-License-Identifier: BSD-2-Clause
//
// Drawing scripts: one verb a line.
#pragma once

#include "draw/draw_canvas.h"
#include "draw/draw_verbs.h"

#include <string>
#include <string_view>
#include <vector>

namespace nkdraw::tool {

/// A position in a script; both count from 1, columns in bytes.
struct Place {
  int line, column;
};

struct Statement {
  const Verb* verb;
  Values values;
  Place place;
};

/// What happens to pixels outside the canvas.
enum class Outside { kRefused, kLeftOut };

class DrawScript {
 public:
  /// The script in `text`, with or without a UTF-8 byte order mark; messages use `name`. Throws
  /// Failure for the first malformed line.
  DrawScript(std::string name, std::string_view text);

  /// Throws Failure for the first statement that the library refuses, or that plots outside the
  /// canvas without permission; throws Interrupted after a signal.
  void draw(DrawCanvas& canvas, Outside outside) const;

  [[nodiscard]] const std::vector<Statement>& statements() const { return statements_; }

 private:
  void add(std::string_view line, int number);
  void draw(const Statement& statement, DrawCanvas& canvas, Outside outside) const;

  std::string name_;
  std::vector<Statement> statements_;
};

/// The name of the script at `path` in messages.
[[nodiscard]] std::string scriptName(const std::string& path);

/// The text of a script from a file, or from standard input for "-". Throws Failure, or Interrupted
/// if a signal arrives while it waits.
[[nodiscard]] std::string readScript(const std::string& path);

}  // namespace nkdraw::tool
