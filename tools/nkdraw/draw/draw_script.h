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

/// Where something stands in a script; both count from 1, columns in bytes.
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
  /// The script that is `text`, with or without a byte order mark of UTF-8; messages call it
  /// `name`. Throws Failure for the first line that can't be understood.
  DrawScript(std::string name, std::string_view text);

  /// Throws Failure for the first statement that the library refuses or that leaves the canvas
  /// though it may not, and Interrupted.
  void draw(DrawCanvas& canvas, Outside outside) const;

  [[nodiscard]] const std::vector<Statement>& statements() const { return statements_; }

 private:
  void add(std::string_view line, int number);
  void draw(const Statement& statement, DrawCanvas& canvas, Outside outside) const;

  std::string name_;
  std::vector<Statement> statements_;
};

/// What messages call the script at `path`.
[[nodiscard]] std::string scriptName(const std::string& path);

/// The text of a script in a file, or in the standard input for "-". Throws Failure, and
/// Interrupted for a signal that comes while it waits.
[[nodiscard]] std::string readScript(const std::string& path);

}  // namespace nkdraw::tool
