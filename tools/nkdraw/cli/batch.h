// SPDX-License-Identifier: BSD-2-Clause
//
// A list of runs in a file of comma-separated values (RFC 4180).
#pragma once

#include <string>
#include <vector>

namespace nkdraw::tool {

/// One run: its row in the file, counted from 1, and what the row adds to the arguments.
struct BatchRow {
  int number;
  std::vector<std::string> arguments;
  std::string output;  // that the row names, if it does
};

/// The rows below the first, which names the columns: "input", "output", "second" and "script" hold
/// file names, given in the order of the columns; "options" holds words as on a command line; any
/// other column is the option of that name, such as "start-timecode", and a flag where the cell
/// says "yes". Empty cells add nothing, and empty rows no run. Throws Failure, also if there is no
/// run, or two write one file.
[[nodiscard]] std::vector<BatchRow> readBatch(const std::string& path);

/// Runs the rows one after the other, each with `arguments`, the program's without --batch. A row
/// that fails does not keep the others from running. Tells what was done, and returns the first
/// failure's exit code; an interrupt ends the list.
[[nodiscard]] int runBatch(const std::vector<std::string>& arguments, const std::string& path);

}  // namespace nkdraw::tool
