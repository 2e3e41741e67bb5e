// SPDX-License-Identifier: BSD-2-Clause
#include "media/pipe_name.h"

#include <sys/stat.h>
#include <unistd.h>

namespace nkdraw::media {
namespace {

constexpr char kStandard[] = "-";

/// A file that the shell reads from can be opened again, and sought.
bool isStandardFile() {
  struct stat facts = {};
  return fstat(STDIN_FILENO, &facts) == 0 && S_ISREG(facts.st_mode);
}

bool isFifo(const std::string& path) {
  struct stat facts = {};
  return stat(path.c_str(), &facts) == 0 && S_ISFIFO(facts.st_mode);
}

/// The prefix stops a colon in the name from meaning a protocol.
std::string fileUrl(const std::string& path) {
  return "file:" + path;
}

}  // namespace

bool isPipedInput(const std::string& path) {
  return path == kStandard ? !isStandardFile() : isFifo(path);
}

bool isPipedOutput(const std::string& path) {
  return path == kStandard || path == "/dev/stdout" || isFifo(path);
}

std::string inputUrl(const std::string& path) {
  if (path != kStandard)
    return fileUrl(path);
  return isStandardFile() ? "file:/dev/stdin" : "pipe:0";
}

std::string outputUrl(const std::string& path) {
  return path == kStandard || path == "/dev/stdout" ? "pipe:1" : fileUrl(path);
}

}  // namespace nkdraw::media
