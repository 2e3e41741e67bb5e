// SPDX-License-Identifier: BSD-2-Clause
//
// Runs programs, the command under test above all.
#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

struct Outcome {
  int exitCode = -1;  // 128 plus the signal for one that a signal ended
  std::string out, err;
  long peakKilobytes = 0;  // of memory, the largest at any time
};

using Arguments = std::vector<std::string>;

/// Runs a program to its end, in the folder of the test's files.
Outcome runProgram(const std::string& program, const Arguments& arguments);

/// `nkdraw ARGUMENTS`
Outcome nkdrawTool(const Arguments& arguments);

/// Runs the same and expects it to fail with one line that contains `words`, leaving the work
/// folder unchanged.
void expectRefusal(const Arguments& arguments, int exitCode, const std::string& words);

/// `nkdraw burnin ARGUMENTS`
Outcome burnin(const Arguments& arguments);

/// The same, but sends `signal` once a file whose name begins with `prefix` is being written.
Outcome burninUntil(const Arguments& arguments, const std::string& prefix, int signal);

/// `nkdraw ARGUMENTS` behind `shell` in a shell, which reads the FIFO `pipe`: gets `head`, the
/// signal while it waits for more, and `tail` if it runs on all the same.
struct Feed {
  std::string shell, pipe, head, tail;
  int signal;
};
struct Fed {
  Outcome outcome;
  bool stopped = false;  // by the signal, and not by the end of the input
};
Fed toolFed(const Feed& feed, const Arguments& arguments);

/// Makes a clip with the ffmpeg command, whose output is the last argument. Fails the test if that
/// does not work.
void ffmpeg(const Arguments& arguments);

/// A folder of this test's own for clips and pictures, made anew.
std::string workFolder();
/// The path of a file in it.
std::string at(const std::string& name);

bool exists(const std::string& path);
/// The files in the work folder, hidden ones too.
std::vector<std::string> filesAtWork();
