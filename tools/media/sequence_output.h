// SPDX-License-Identifier: BSD-2-Clause
//
// An image sequence that appears under its names only when all pictures are complete.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace nkdraw::media {

/// Throws Failure if pictures `first` to `last` of the sequence `path` can't be written, naming the
/// first that exists unless `overwrite`. Touches no file.
void checkSequence(const std::string& path, std::int64_t first, std::int64_t last, bool overwrite);

/// Collects the pictures in a hidden folder beside their places. If they are not committed, it is
/// removed and nothing else changes.
class SequenceOutput {
 public:
  /// Throws Failure if no folder can be made there.
  SequenceOutput(std::string path, bool overwrite);
  SequenceOutput(const SequenceOutput&) = delete;
  SequenceOutput& operator=(const SequenceOutput&) = delete;
  ~SequenceOutput();

  /// Writes a picture. Throws Failure.
  void write(std::int64_t number, std::span<const std::uint8_t> bytes);

  /// Gives the pictures their names. If a file has taken one in the meantime, none appears. Throws
  /// Failure.
  void commit();

  [[nodiscard]] std::string nameOf(std::int64_t number) const;
  /// Where a picture lies before that.
  [[nodiscard]] std::string temporary(std::int64_t number) const;

 private:
  void move(std::int64_t number) const;

  std::string path_;
  bool overwrite_;
  std::string folder_;
  std::vector<std::int64_t> numbers_;
};

}  // namespace nkdraw::media
