// SPDX-License-Identifier: BSD-2-Clause
//
// An output file that appears under its name only when it is complete, or a pipe.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include <sys/types.h>

namespace nkdraw::media {

/// Reserves a temporary name beside `path`, with the same suffix. If it is not committed, the
/// temporary file is removed and nothing else changes. A pipe is written as it is, and there is
/// nothing to commit.
class OutputFile {
 public:
  /// Throws Failure if `path` exists and may not be overwritten, or can't be written.
  OutputFile(const std::string& path, bool overwrite);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  [[nodiscard]] const std::string& path() const { return path_; }
  /// The file to write into; it exists and is empty.
  [[nodiscard]] const std::string& temporary() const { return temporary_; }

  /// Renames the file to its final name, with the permissions of the file that it replaces. Throws
  /// Failure, also if another file has taken the name in the meantime.
  void commit();
  /// Takes back a name that was given, unless a file was replaced.
  void withdraw();

 private:
  std::string path_;
  bool overwrite_;
  std::string temporary_;
  std::optional<mode_t> oldRights_;  // of the file that is replaced
  bool committed_ = false;
};

/// Throws what the constructor would throw for a name that can't be an output, without touching any
/// file. `advice` tells what else to do if the file exists.
void checkOutputName(const std::string& path, bool overwrite,
                     const std::string& advice = "choose another name");

/// Writes these bytes into the file or pipe `file`; messages use `name`. Throws Failure, and
/// ReaderGone when nobody reads the pipe.
void writeBytes(std::span<const std::uint8_t> bytes, const std::string& file,
                const std::string& name);

/// Whether both names are the same file.
[[nodiscard]] bool isSameFile(const std::string& a, const std::string& b);

}  // namespace nkdraw::media
