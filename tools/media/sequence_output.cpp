// SPDX-License-Identifier: BSD-2-Clause
#include "media/sequence_output.h"

#include "media/failure.h"
#include "media/image_sequence.h"
#include "media/output_file.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace nkdraw::media {
namespace {

namespace fs = std::filesystem;

constexpr char kAdvice[] = "choose another name or give --overwrite";

[[noreturn]] void cannotWrite(const std::string& path, int error) {
  throw Failure(ExitCode::kOutput, "cannot write the output", path,
                std::string(std::strerror(error)) + "; choose another place");
}

std::string makeFolder(const std::string& path) {
  constexpr int kAttempts = 100;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    const std::string hidden =
        ".nkdraw-" + std::to_string(getpid()) + "-" + std::to_string(attempt);
    const std::string folder = fs::path(path).replace_filename(hidden).string();
    if (mkdir(folder.c_str(), S_IRWXU) == 0)
      return folder;
    if (errno != EEXIST)
      break;
  }
  cannotWrite(path, errno);
}

}  // namespace

void checkSequence(const std::string& path, std::int64_t first, std::int64_t last, bool overwrite) {
  checkOutputName(pictureName(path, first), overwrite, kAdvice);
  const auto lowest = lowestPicture(path, first);
  if (lowest && *lowest <= last)
    checkOutputName(pictureName(path, *lowest), overwrite, kAdvice);
}

SequenceOutput::SequenceOutput(std::string path, bool overwrite)
    : path_(std::move(path)), overwrite_(overwrite), folder_(makeFolder(path_)) {}

SequenceOutput::~SequenceOutput() {
  std::error_code error;
  fs::remove_all(folder_, error);
}

std::string SequenceOutput::nameOf(std::int64_t number) const {
  return pictureName(path_, number);
}

std::string SequenceOutput::temporary(std::int64_t number) const {
  return (fs::path(folder_) / fs::path(pictureName(path_, number)).filename()).string();
}

void SequenceOutput::write(std::int64_t number, std::span<const std::uint8_t> bytes) {
  const std::string name = temporary(number);
  std::ofstream(name).close();
  writeBytes(bytes, name, pictureName(path_, number));
  numbers_.push_back(number);
}

void SequenceOutput::move(std::int64_t number) const {
  const std::string from = temporary(number), to = pictureName(path_, number);
  const unsigned flags = overwrite_ ? 0U : RENAME_NOREPLACE;
  int status = renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), flags);
  if (status != 0 && errno == EINVAL)  // a file system without the flag
    status = std::rename(from.c_str(), to.c_str());
  if (status != 0)
    cannotWrite(to, errno);
}

void SequenceOutput::commit() {
  std::size_t moved = 0;
  try {
    for (; moved < numbers_.size(); ++moved)
      move(numbers_[moved]);
  } catch (const Failure&) {
    // What was replaced can't be brought back.
    for (std::size_t i = 0; i < moved && !overwrite_; ++i)
      unlink(pictureName(path_, numbers_[i]).c_str());
    throw;
  }
}

}  // namespace nkdraw::media
