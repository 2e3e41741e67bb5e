// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/output_options.h"

#include "cli/option_group.h"
#include "cli/pipe_options.h"
#include "media/failure.h"
#include "media/image_sequence.h"
#include "media/pipe_name.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <utility>

namespace nkdraw::tool {
namespace {

constexpr char kOutput[] = "--output";

OutputRequest requestOf(const std::string& path, const std::optional<std::string>& format,
                        OutputRequest request, StreamRequest streams) {
  request.path = path;
  request.format = format;
  request.streams = std::move(streams);
  if (request.viewingCopy && !request.streams.noAudio && !request.streams.audio.asked) {
    request.streams.audio.asked = "aac";
    request.streams.keepAAC = true;
  }
  return request;
}

std::filesystem::path placeOf(const OutputRequest& output) {
  return isPipedOutput(output.path)
             ? std::filesystem::path(outputUrl(output.path))
             : std::filesystem::weakly_canonical(std::filesystem::absolute(output.path));
}

/// Each picture is a file of its own, encoded by the suffix. Throws Failure.
void checkPictures(const OutputRequest& output) {
  const bool isSequence = !output.format && isSequenceName(output.path);
  for (const auto& [given, option] : {std::pair{output.lossless, "--lossless"},
                                      {output.viewingCopy, "--viewing-copy"},
                                      {!output.containerOptions.empty(), "--container-option"}}) {
    if (isSequence && given)
      throw Failure(ExitCode::kUsage, "an option that image sequences do not have", option,
                    "leave it out; --codec sets options of the pictures' encoder");
  }
}

/// Throws Failure for outputs that can't be written together.
void checkTogether(const std::vector<OutputRequest>& outputs, bool isStill) {
  if (outputs.size() < 2)
    return;
  for (const OutputRequest& output : outputs) {
    if (isStill || (!output.format && isSequenceName(output.path)))
      throw Failure(ExitCode::kUsage, "pictures are written alone", output.path,
                    "give them a run of their own");
    if (std::ranges::count(outputs, placeOf(output), placeOf) > 1)
      throw Failure(ExitCode::kUsage, "two outputs are one file", output.path,
                    "choose another name");
  }
}

}  // namespace

void OutputArguments::addTo(CLI::App& command) {
  const auto before = std::ssize(command.get_options());
  last_.delivery.addTo(command);
  last_.streams.addTo(command);
  addFormatTo(command, last_.format);
  const auto all = command.get_options();
  options_.assign(std::next(all.begin(), before), all.end());
  command
      .add_option_function<std::string>(
          kOutput, [this](const std::string& path) { begin(path); },
          "Another file that the same run writes; may be repeated.\n"
          "Options for encoding and streams count for the output\n"
          "that they stand behind")
      ->type_name("FILE")
      ->group("What is written")
      ->trigger_on_parse();
}

void OutputArguments::begin(const std::string& path) {
  for (CLI::Option* const option : options_) {
    if (option->count() == 0)
      continue;
    last_.any = true;
    option->run_callback();
    option->clear();
  }
  begun_.push_back(last_);
  last_ = {};
  last_.path = path;
}

std::vector<OutputArguments::Asked> OutputArguments::all(
    const std::optional<std::string>& plain) const {
  std::vector<Asked> asked = begun_;
  asked.push_back(last_);
  if (plain) {
    asked.front().path = plain;
  } else {
    if (asked.front().any)
      throw Failure(ExitCode::kUsage, "an option stands before the output that it is for", kOutput,
                    "write it behind --output FILE");
    asked.erase(asked.begin());
  }
  return asked;
}

std::vector<OutputRequest> OutputArguments::read(const std::optional<std::string>& plain,
                                                 bool isStill, bool streams) const {
  std::vector<OutputRequest> outputs;
  for (const Asked& each : all(plain)) {
    if (each.path->empty())
      throw Failure(ExitCode::kUsage, "a file name is empty", "nkdraw burnin",
                    "give INPUT and OUTPUT");
    outputs.push_back(requestOf(*each.path, each.format, each.delivery.read(*each.path, isStill),
                                each.streams.read(streams)));
    if (!isStill)
      checkPictures(outputs.back());
  }
  checkTogether(outputs, isStill);
  return outputs;
}

}  // namespace nkdraw::tool
