// SPDX-License-Identifier: BSD-2-Clause
//
// An output that appears under its name when it is complete, and not before.
#pragma once

#include <optional>
#include <string>

#include <sys/types.h>

namespace nkdraw::media {

/// Reserves a temporary name beside `path`, with the same suffix. Unless it is committed the
/// temporary file is removed, and nothing has changed.
class OutputFile {
 public:
  /// Throws Failure when `path` exists and may not be overwritten, or can't be written.
  OutputFile(const std::string& path, bool overwrite);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  [[nodiscard]] const std::string& path() const { return path_; }
  /// The file to write into; it exists and is empty.
  [[nodiscard]] const std::string& temporary() const { return temporary_; }

  /// Gives the file its name, and the rights of a file that it replaces. Throws Failure, also when
  /// another file took the name meanwhile.
  void commit();

 private:
  std::string path_;
  bool overwrite_;
  std::string temporary_;
  std::optional<mode_t> oldRights_;  // of the file that is replaced
  bool committed_ = false;
};

/// Throws what the constructor would throw for a name that can't be an output, and touches nothing.
/// `advice` says what else to do where the file exists.
void checkOutputName(const std::string& path, bool overwrite,
                     const std::string& advice = "choose another name");

/// Whether both names mean the same file.
[[nodiscard]] bool isSameFile(const std::string& a, const std::string& b);

}  // namespace nkdraw::media
