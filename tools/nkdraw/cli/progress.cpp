// SPDX-License-Identifier: BSD-2-Clause
#include "cli/progress.h"

#include "cli/option_values.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include <unistd.h>

namespace nkdraw::tool {
namespace {

constexpr auto kInterval = std::chrono::milliseconds(200);
constexpr char kClearLine[] = "\r\033[K";

}  // namespace

ProgressForm progressNamed(const std::string& name) {
  struct Form {
    const char* name;
    ProgressForm form;
  };
  constexpr Form kForms[] = {
      {"line", ProgressForm::kLine}, {"json", ProgressForm::kJson}, {"none", ProgressForm::kNone}};
  const auto* const found =
      std::ranges::find_if(kForms, [&](const Form& form) { return name == form.name; });
  if (found == std::end(kForms))
    badValue("--progress", name, "give line, json or none");
  return found->form;
}

Progress::Progress(std::int64_t total, ProgressForm form)
    : form_(form == ProgressForm::kLine && isatty(STDERR_FILENO) != 1 ? ProgressForm::kNone : form),
      total_(total) {}

Progress::~Progress() {
  if (form_ == ProgressForm::kLine)
    std::fputs(kClearLine, stderr);
  else if (form_ == ProgressForm::kJson)
    show(Clock::now());
}

void Progress::advance() {
  ++done_;
  if (form_ == ProgressForm::kNone)
    return;
  if (const auto now = Clock::now(); now - lastShown_ >= kInterval) {
    lastShown_ = now;
    show(now);
  }
}

void Progress::show(Clock::time_point now) const {
  const double seconds = std::max(std::chrono::duration<double>(now - start_).count(), 1e-6);
  const double rate = static_cast<double>(done_) / seconds;
  if (form_ == ProgressForm::kJson)
    showJson(rate);
  else
    showLine(rate);
}

void Progress::showLine(double rate) const {
  if (total_ <= 0) {
    std::fprintf(stderr, "%sframe %lld, %.1f frames/s", kClearLine, static_cast<long long>(done_),
                 rate);
    return;
  }
  const auto left =
      static_cast<long long>(static_cast<double>(std::max<std::int64_t>(total_ - done_, 0)) / rate);
  std::fprintf(stderr, "%sframe %lld of %lld, %.1f frames/s, %lld:%02lld left", kClearLine,
               static_cast<long long>(done_), static_cast<long long>(total_), rate, left / 60,
               left % 60);
}

void Progress::showJson(double rate) const {
  std::fprintf(stderr, "{\"frame\":%lld,", static_cast<long long>(done_));
  if (total_ > 0)
    std::fprintf(stderr, "\"frames\":%lld,", static_cast<long long>(total_));
  std::fprintf(stderr, "\"rate\":%.1f", rate);
  if (total_ > 0 && done_ > 0)
    std::fprintf(stderr, ",\"left\":%.1f",
                 static_cast<double>(std::max<std::int64_t>(total_ - done_, 0)) / rate);
  std::fputs("}\n", stderr);
}

}  // namespace nkdraw::tool
