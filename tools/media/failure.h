// SPDX-License-Identifier: BSD-2-Clause
//
// How a run ends: the exit codes, and the exception that carries one.
#pragma once

#include <stdexcept>
#include <string>

namespace nkdraw::media {

/// Exit codes of the process. A run stopped by a signal returns 128 plus the number of the signal.
enum class ExitCode : int {
  kOk = 0,
  kUsage = 1,       ///< the command line asks for something impossible
  kInput = 2,       ///< the input can't be read, or holds no usable video
  kOutput = 3,      ///< the output can't be written
  kProcessing = 4,  ///< decoding, converting, drawing or encoding failed
  kDamaged = 5,     ///< done, but frames of the input are damaged
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
