// SPDX-License-Identifier: BSD-2-Clause
//
// How a run ends: the exit codes, and the failure that carries one.
#pragma once

#include <stdexcept>
#include <string>

namespace nkdraw::media {

/// What the process returns. A run that a signal stopped returns 128 plus the signal's number.
enum class ExitCode : int {
  kOk = 0,
  kUsage = 1,       ///< the command line asks for something that can't be
  kInput = 2,       ///< the input can't be read, or holds no usable video
  kOutput = 3,      ///< the output can't be written
  kProcessing = 4,  ///< decoding, converting, drawing or encoding failed
};

/// Ends the run with one line, "WHAT: WHERE; ADVICE".
class Failure : public std::runtime_error {
 public:
  Failure(ExitCode code, const std::string& what, const std::string& where,
          const std::string& advice)
      : std::runtime_error(what + ": " + where + "; " + advice), code_(code) {}

  [[nodiscard]] ExitCode code() const { return code_; }

 private:
  ExitCode code_;
};

}  // namespace nkdraw::media
