// SPDX-License-Identifier: BSD-2-Clause
#include "media/output_file.h"

#include "media/failure.h"
#include "media/interrupt.h"
#include "media/pipe_name.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace nkdraw::media {
namespace {

namespace fs = std::filesystem;

constexpr char kStandardUrl[] = "pipe:1";
constexpr mode_t kRights = S_IRWXU | S_IRWXG | S_IRWXO;

[[noreturn]] void cannotWrite(const std::string& path, int error) {
  throw Failure(ExitCode::kOutput, "cannot write the output", path,
                std::string(std::strerror(error)) + "; choose another place");
}

/// The target of a symbolic link, existing or not, so that a commit replaces the file and not the
/// link.
std::string resolved(const std::string& path) {
  constexpr int kMostLinks = 40;  // as many as the system follows
  fs::path target = path;
  std::error_code error;
  for (int i = 0; i < kMostLinks && fs::is_symlink(target, error); ++i)
    target = target.parent_path() / fs::read_symlink(target, error);
  return target.string();
}

/// A hidden name of fixed length, since the output's name may already have the greatest length.
std::string temporaryName(const std::string& path, int attempt) {
  fs::path name(path);
  fs::path hidden = ".nkdraw-" + std::to_string(getpid()) + "-" + std::to_string(attempt);
  hidden += name.extension();
  return name.replace_filename(hidden).string();
}

void checkNoTerminal(const std::string& path) {
  if (outputUrl(path) == kStandardUrl && isatty(STDOUT_FILENO) == 1)
    throw Failure(ExitCode::kOutput, "a terminal shows no video", "standard output",
                  "write into a file or a pipe");
}

}  // namespace

void checkOutputName(const std::string& path, bool overwrite, const std::string& advice) {
  if (isPipedOutput(path))
    return checkNoTerminal(path);
  struct stat facts = {};
  if (stat(path.c_str(), &facts) == 0) {
    if (S_ISDIR(facts.st_mode))
      throw Failure(ExitCode::kOutput, "the output is a folder", path, "name a file in it");
    if (!S_ISREG(facts.st_mode))
      throw Failure(ExitCode::kOutput, "the output is no ordinary file", path, "name a file");
    if (!overwrite)
      throw Failure(ExitCode::kOutput, "the output exists", path, advice);
  } else if (errno != ENOENT) {
    cannotWrite(path, errno);
  } else if (!overwrite && lstat(path.c_str(), &facts) == 0) {
    throw Failure(ExitCode::kOutput, "the output exists", path,
                  "it is a link to a file that doesn't; " + advice);
  }
  const fs::path folder = fs::path(resolved(path)).parent_path();
  const std::string where = folder.empty() ? "." : folder.string();
  if (stat(where.c_str(), &facts) == 0 && !S_ISDIR(facts.st_mode))
    cannotWrite(path, ENOTDIR);
  if (access(where.c_str(), W_OK | X_OK) != 0)
    cannotWrite(path, errno);
}

bool isSameFile(const std::string& a, const std::string& b) {
  struct stat first = {}, second = {};
  return stat(a.c_str(), &first) == 0 && stat(b.c_str(), &second) == 0 &&
         first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

OutputFile::OutputFile(const std::string& path, bool overwrite)
    : path_(isPipedOutput(path) ? path : resolved(path)), overwrite_(overwrite) {
  checkOutputName(path_, overwrite);
  if (isPipedOutput(path_)) {
    temporary_ = path_;
    committed_ = true;
    return;
  }
  struct stat old = {};
  if (stat(path_.c_str(), &old) == 0)
    oldRights_ = old.st_mode & kRights;
  constexpr int kAttempts = 100;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    temporary_ = temporaryName(path_, attempt);
    const int descriptor = open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                                oldRights_ ? S_IRUSR | S_IWUSR : 0666);
    if (descriptor >= 0) {
      close(descriptor);
      return;
    }
    if (errno != EEXIST)
      break;
  }
  cannotWrite(path_, errno);
}

OutputFile::~OutputFile() {
  if (!committed_)
    unlink(temporary_.c_str());
}

void OutputFile::commit() {
  if (committed_)
    return;
  if (oldRights_ && chmod(temporary_.c_str(), *oldRights_) != 0)
    cannotWrite(path_, errno);
  const unsigned flags = overwrite_ ? 0U : RENAME_NOREPLACE;
  int status = renameat2(AT_FDCWD, temporary_.c_str(), AT_FDCWD, path_.c_str(), flags);
  if (status != 0 && errno == EINVAL)  // a file system without the flag
    status = std::rename(temporary_.c_str(), path_.c_str());
  if (status != 0)
    cannotWrite(path_, errno);
  committed_ = true;
}

void OutputFile::withdraw() {
  if (committed_ && !oldRights_ && !isPipedOutput(path_))
    unlink(path_.c_str());
}

void writeBytes(std::span<const std::uint8_t> bytes, const std::string& file,
                const std::string& name) {
  const bool standard = outputUrl(file) == kStandardUrl;
  const int descriptor =
      standard ? dup(STDOUT_FILENO) : open(file.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
  ssize_t written = descriptor >= 0 ? 0 : -1;
  while (!bytes.empty() && (written >= 0 || errno == EINTR)) {
    throwIfInterrupted();
    written = write(descriptor, bytes.data(), bytes.size());
    bytes = bytes.subspan(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
  }
  const int error = errno;
  if (descriptor >= 0 && close(descriptor) == 0 && written >= 0)
    return;
  if (error == EPIPE && isPipedOutput(file))
    throw ReaderGone();
  throw Failure(ExitCode::kOutput, "cannot write the output", name,
                std::string(std::strerror(error)) + "; is the disk full?");
}

}  // namespace nkdraw::media
