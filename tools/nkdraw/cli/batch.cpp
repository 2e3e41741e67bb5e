// SPDX-License-Identifier: BSD-2-Clause
#include "cli/batch.h"

#include "cli/program.h"
#include "media/interrupt.h"
#include "media/pipe_name.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

namespace nkdraw::tool {
namespace {

using Cells = std::vector<std::string>;

constexpr char kOutputColumn[] = "output";
constexpr const char* kFileColumns[] = {"input", "second", "script", kOutputColumn};
constexpr char kOptionsColumn[] = "options", kYes[] = "yes";
constexpr char kBatchOption[] = "--batch";

/// Takes the file apart, row by row.
class CsvReader {
 public:
  explicit CsvReader(std::string text) : text_(std::move(text)) {}

  [[nodiscard]] bool hasMore() const { return at_ < text_.size(); }
  [[nodiscard]] int line() const { return line_; }

  /// Throws Failure for a quote that doesn't end.
  [[nodiscard]] Cells row(const std::string& path) {
    Cells cells(1);
    while (hasMore()) {
      const char letter = text_[at_++];
      if (letter == '"')
        takeQuoted(cells.back(), path);
      else if (letter == ',')
        cells.emplace_back();
      else if (letter == '\n')
        break;
      else if (letter != '\r')
        cells.back() += letter;
    }
    ++line_;
    return cells;
  }

 private:
  /// A doubled quote stands for one.
  void takeQuoted(std::string& cell, const std::string& path) {
    for (;;) {
      const std::size_t end = text_.find('"', at_);
      if (end == std::string::npos)
        throw Failure(ExitCode::kInput, "a quoted cell doesn't end", path,
                      "row " + std::to_string(line_) + "; close the quote");
      cell.append(text_, at_, end - at_);
      at_ = end + 1;
      if (at_ >= text_.size() || text_[at_] != '"')
        return;
      cell += '"';
      ++at_;
    }
  }

  std::string text_;
  std::size_t at_ = 0;
  int line_ = 1;
};

std::string readText(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  file.peek();  // a folder can be opened, but not read
  if (file.fail() && !file.eof())
    throw Failure(ExitCode::kInput, "cannot read the list", path,
                  std::string(std::strerror(errno)) + "; check the name");
  file.clear();
  constexpr char kMark[] = "\xEF\xBB\xBF";  // that some programs write in front of UTF-8
  std::string text(std::istreambuf_iterator<char>(file), {});
  return text.starts_with(kMark) ? text.substr(std::strlen(kMark)) : text;
}

bool isFile(const std::string& column) {
  return std::ranges::find(kFileColumns, column) != std::end(kFileColumns);
}

/// Options first, because a file name may follow a list of values.
std::vector<std::string> argumentsOf(const Cells& header, const Cells& cells) {
  std::vector<std::string> options, files;
  for (std::size_t i = 0; i < std::min(header.size(), cells.size()); ++i) {
    if (cells[i].empty())
      continue;
    if (isFile(header[i])) {
      files.push_back(cells[i]);
    } else if (header[i] == kOptionsColumn) {
      std::ranges::move(CLI::detail::split_up(cells[i]), std::back_inserter(options));
    } else if (cells[i] == kYes) {
      options.push_back("--" + header[i]);
    } else {
      options.insert(options.end(), {"--" + header[i], cells[i]});
    }
  }
  std::ranges::move(files, std::back_inserter(options));
  return options;
}

/// The arguments without --batch and its value.
std::vector<std::string> withoutList(std::vector<std::string> arguments) {
  const auto found = std::ranges::find_if(
      arguments, [](const std::string& each) { return each.starts_with(kBatchOption); });
  if (found != arguments.end())
    arguments.erase(found, std::next(found, *found == kBatchOption ? 2 : 1));
  return arguments;
}

int runRow(std::vector<std::string> arguments, const BatchRow& row, const std::string& path) {
  std::ranges::copy(row.arguments, std::back_inserter(arguments));
  Program program;
  const std::string where = path + " row " + std::to_string(row.number) + ": ";
  const std::optional<int> code = program.parse(arguments, where);
  if (code)
    return *code;
  if (!program.batch().empty()) {
    report(where + "a list in a list: " + program.batch() + "; leave it out");
    return static_cast<int>(ExitCode::kUsage);
  }
  return program.run(where);
}

/// Throws Failure if two rows write one file.
void checkOutputs(const std::vector<BatchRow>& rows, const std::string& path) {
  std::map<std::filesystem::path, int> writers;
  for (const BatchRow& row : rows) {
    if (row.output.empty() || isPipedOutput(row.output))
      continue;
    const auto place = std::filesystem::weakly_canonical(std::filesystem::absolute(row.output));
    if (const auto [first, isNew] = writers.emplace(place, row.number); !isNew)
      throw Failure(ExitCode::kInput, "two rows write one file", row.output,
                    path + " rows " + std::to_string(first->second) + " and " +
                        std::to_string(row.number) + "; choose another name");
  }
}

std::string outputOf(const Cells& header, const Cells& cells) {
  const auto column =
      static_cast<std::size_t>(std::ranges::find(header, kOutputColumn) - header.begin());
  return column < cells.size() ? cells[column] : "";
}

}  // namespace

std::vector<BatchRow> readBatch(const std::string& path) {
  CsvReader reader(readText(path));
  const Cells header = reader.row(path);
  if (std::ranges::none_of(header, isFile))
    throw Failure(ExitCode::kInput, "the list's first row names no columns", path,
                  "write for example input,output,options");
  std::vector<BatchRow> rows;
  while (reader.hasMore()) {
    const int number = reader.line();
    const Cells cells = reader.row(path);
    if (cells.size() > header.size())
      throw Failure(ExitCode::kInput, "a row has more cells than the first", path,
                    "row " + std::to_string(number) + "; put quotes around commas");
    auto arguments = argumentsOf(header, cells);
    if (!arguments.empty())
      rows.push_back({number, std::move(arguments), outputOf(header, cells)});
  }
  if (rows.empty())
    throw Failure(ExitCode::kInput, "the list has no rows below the first", path,
                  "write one for each run");
  checkOutputs(rows, path);
  return rows;
}

int runBatch(const std::vector<std::string>& arguments, const std::string& path) {
  const std::vector<BatchRow> rows = readBatch(path);
  const std::vector<std::string> common = withoutList(arguments);
  int first = 0, failed = 0;
  for (const BatchRow& row : rows) {
    const int code = runRow(common, row, path);
    if (pendingInterrupt() != 0)
      return code;
    failed += code != 0 ? 1 : 0;
    first = first != 0 ? first : code;
  }
  report(path + ": " + std::to_string(std::ssize(rows) - failed) + " of " +
         std::to_string(rows.size()) + " done");
  return first;
}

}  // namespace nkdraw::tool
