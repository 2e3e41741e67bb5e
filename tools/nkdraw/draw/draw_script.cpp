// SPDX-License-Identifier: BSD-2-Clause
#include "draw/draw_script.h"

#include "cli/option_values.h"
#include "media/failure.h"
#include "media/interrupt.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <utility>

namespace nkdraw::tool {
namespace {

constexpr std::size_t kLongestScript = std::size_t{4} << 20, kLongestLine = std::size_t{64} << 10;
/// The number of characters that the widest canvas can show of a text that begins at the smallest
/// x.
constexpr std::size_t kLongestText = 3072;
constexpr std::size_t kLongestQuote = 40;
constexpr char kBlanks[] = " \t";
constexpr std::string_view kRepeated = "...";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr char kStandardInput[] = "standard input";

bool isPrintable(unsigned char letter) {
  return letter >= ' ' && letter <= '~';
}

/// A piece of a script, as shown in a message.
std::string quoted(std::string_view piece) {
  std::string shown(piece.substr(0, kLongestQuote));
  std::ranges::replace_if(
      shown, [](unsigned char letter) { return !isPrintable(letter); }, '?');
  return "'" + shown + (piece.size() > kLongestQuote ? "...'" : "'");
}

/// Removes everything before the first of `ends` from the front.
std::string_view takeUntil(std::string_view& text, const char* ends) {
  const std::string_view taken = text.substr(0, text.find_first_of(ends));
  text.remove_prefix(taken.size());
  return taken;
}

/// One line, read from the left.
class Line {
 public:
  Line(const std::string& script, std::string_view line, int number)
      : script_(script), line_(line), left_(line), number_(number) {
    skipBlanks();
  }

  /// Whether a word follows, not a comment.
  [[nodiscard]] bool hasWord() const { return !left_.empty() && left_.front() != '#'; }
  [[nodiscard]] Place place() const {
    return {number_, static_cast<int>(line_.size() - left_.size()) + 1};
  }

  std::string_view takeWord() {
    const std::string_view word = takeUntil(left_, kBlanks);
    skipBlanks();
    return word;
  }

  /// Everything that is left, without trailing blanks.
  std::string_view takeRest() {
    const std::string_view rest = std::exchange(left_, {});
    return rest.substr(0, rest.find_last_not_of(kBlanks) + 1);
  }

  [[noreturn]] void fail(const std::string& what, const Place& place, std::string_view piece,
                         const std::string& advice) const {
    throw Failure(ExitCode::kInput, what,
                  placeText(script_, place) + (piece.empty() ? "" : ", " + quoted(piece)), advice);
  }

  static std::string placeText(const std::string& script, const Place& place) {
    return script + ":" + std::to_string(place.line) + ":" + std::to_string(place.column);
  }

 private:
  void skipBlanks() {
    left_.remove_prefix(std::min(left_.find_first_not_of(kBlanks), left_.size()));
  }

  const std::string& script_;
  std::string_view line_, left_;
  int number_;
};

std::string usageOf(const Verb& verb) {
  return "write " + std::string(verb.name) + (verb.usage.empty() ? "" : " ") +
         std::string(verb.usage);
}

/// Reads the arguments of one statement.
class ArgumentReader {
 public:
  ArgumentReader(Line& line, const Verb& verb) : line_(line), verb_(verb) {}

  Values read() {
    std::string_view usage = verb_.usage;
    while (!usage.empty()) {
      if (usage.starts_with('['))
        readOptional(usage);
      else
        readOne(takeName(usage));
    }
    if (line_.hasWord()) {
      const Place place = line_.place();
      line_.fail("too many arguments", place, line_.takeWord(), usageOf(verb_));
    }
    return std::move(values_);
  }

 private:
  static std::string_view takeName(std::string_view& usage) {
    const std::string_view name = takeUntil(usage, " ]");
    usage.remove_prefix(std::min<std::size_t>(usage.size(), 1));
    return name;
  }

  void readOptional(std::string_view& usage) {
    usage.remove_prefix(1);
    std::string_view names = takeUntil(usage, "]");
    usage.remove_prefix(1);
    const bool repeated = usage.starts_with(kRepeated);
    usage.remove_prefix(repeated ? kRepeated.size() : 0);
    while (line_.hasWord()) {
      for (std::string_view left = names; !left.empty();)
        readOne(takeName(left));
      if (!repeated)
        return;
    }
  }

  void readOne(std::string_view name) {
    const Parameter& parameter = parameterNamed(name);
    const Place place = line_.place();
    if (parameter.kind == Parameter::Kind::kText) {
      readText(place);
      return;
    }
    if (!line_.hasWord())
      line_.fail("no " + std::string(name) + " for " + std::string(verb_.name), place, "",
                 usageOf(verb_));
    const std::string_view word = line_.takeWord();
    const auto number = numberOf(parameter, word);
    if (!number)
      line_.fail("not a value of " + std::string(name), place, word, "write " + parameter.range());
    values_.numbers.push_back(*number);
  }

  static std::optional<double> numberOf(const Parameter& parameter, std::string_view word) {
    if (parameter.kind == Parameter::Kind::kWord) {
      const auto found = std::ranges::find_if(
          parameter.words, [&](const Word& entry) { return isSameName(entry.name, word); });
      return found != parameter.words.end() ? std::optional<double>(found->value) : std::nullopt;
    }
    std::optional<double> number = wholeNumber<double>(word);
    if (parameter.kind == Parameter::Kind::kWhole)
      number = wholeNumber<int>(word);
    // Not-a-number compares as false.
    const bool fits = number && *number >= parameter.least && *number <= parameter.most;
    return fits ? number : std::nullopt;
  }

  void readText(const Place& place) {
    const std::string_view text = line_.takeRest();
    if (text.empty())
      line_.fail("no TEXT for " + std::string(verb_.name), place, "", usageOf(verb_));
    if (text.size() > kLongestText)
      line_.fail("too long a text", place, "",
                 "at most " + std::to_string(kLongestText) + " characters");
    const auto* const bad = std::ranges::find_if_not(text, isPrintable);
    if (bad != text.end()) {
      const auto before = static_cast<int>(bad - text.begin());
      line_.fail("a character without a glyph", {place.line, place.column + before},
                 text.substr(static_cast<std::size_t>(before), 1), "write printable ASCII");
    }
    values_.text = text;
  }

  Line& line_;
  const Verb& verb_;
  Values values_;
};

Failure cannotRead(const std::string& name, const std::string& why) {
  return {ExitCode::kInput, "cannot read the script", name, why};
}

/// Throws for a system call that failed: Interrupted, or Failure.
[[noreturn]] void failToRead(const std::string& name, const char* advice) {
  const int error = errno;
  throwIfInterrupted();
  throw cannotRead(name, std::string(std::strerror(error)) + "; " + advice);
}

/// Uses C streams, whose reads end when interrupted, and which distinguish an error from the end.
std::string readAll(std::FILE* in, const std::string& name) {
  std::string text(kLongestScript + 1, '\0');
  text.resize(std::fread(text.data(), 1, text.size(), in));
  if (std::ferror(in) != 0)
    failToRead(name, "name a file");
  if (text.size() > kLongestScript)
    throw cannotRead(name, "it is longer than 4 MiB; draw in several runs");
  return text;
}

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

}  // namespace

DrawScript::DrawScript(std::string name, std::string_view text) : name_(std::move(name)) {
  if (text.starts_with(kByteOrderMark))
    text.remove_prefix(kByteOrderMark.size());
  for (int number = 1; !text.empty(); ++number) {
    std::string_view line = takeUntil(text, "\n");
    text.remove_prefix(std::min<std::size_t>(text.size(), 1));
    if (line.ends_with('\r'))
      line.remove_suffix(1);
    add(line, number);
  }
}

void DrawScript::add(std::string_view text, int number) {
  Line line(name_, text, number);
  const Place place = line.place();
  if (text.size() > kLongestLine)
    line.fail("too long a line", place, "", "at most 65536 bytes");
  if (!line.hasWord())
    return;
  const std::string_view word = line.takeWord();
  const Verb* const verb = verbNamed(word);
  if (verb == nullptr)
    line.fail("no such verb", place, word,
              "the nearest is " + std::string(nearestVerb(word.substr(0, kLongestQuote)).name) +
                  "; see nkdraw draw --list-verbs");
  statements_.push_back({verb, ArgumentReader(line, *verb).read(), place});
}

void DrawScript::draw(DrawCanvas& canvas, Outside outside) const {
  for (const Statement& statement : statements_) {
    throwIfInterrupted();
    draw(statement, canvas, outside);
  }
}

void DrawScript::draw(const Statement& statement, DrawCanvas& canvas, Outside outside) const {
  const Verb& verb = *statement.verb;
  const std::string where = Line::placeText(name_, statement.place) + ", ";
  if (verb.draw(canvas.surface(), statement.values) != 0)
    throw Failure(ExitCode::kInput, "not drawn", where + std::string(verb.name),
                  std::string(verb.condition.empty() ? usageOf(verb) : verb.condition));
  const auto stray = canvas.takeStray();
  if (stray && outside == Outside::kRefused)
    throw Failure(ExitCode::kInput, "outside the canvas",
                  where + std::string(verb.name) + " plots " + std::to_string(stray->x) + "," +
                      std::to_string(stray->y),
                  "keep to 0,0 to " + std::to_string(canvas.width() - 1) + "," +
                      std::to_string(canvas.height() - 1) + ", or give --clip");
}

std::string scriptName(const std::string& path) {
  return path == "-" ? kStandardInput : path;
}

std::string readScript(const std::string& path) {
  const std::string name = scriptName(path);
  if (path == "-")
    return readAll(stdin, name);
  const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "rbe"));
  if (!file)
    failToRead(name, "name a file or -");
  return readAll(file.get(), name);
}

}  // namespace nkdraw::tool
