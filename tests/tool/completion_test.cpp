// SPDX-License-Identifier: BSD-2-Clause
//
// The shells themselves complete the command line with the scripts that the command prints.
#include "program.h"

#include <gtest/gtest.h>

#include <fstream>

namespace {

std::string scriptFor(const std::string& shell) {
  const Outcome outcome = nkdrawTool({"completion", shell});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  const std::string path = at("completion." + shell);
  std::ofstream(path) << outcome.out;
  return path;
}

/// What bash offers for the last of these words.
std::string bashOffers(const std::string& words) {
  const Outcome outcome = runProgram(
      "bash",
      {"-c", "source " + scriptFor("bash") + "; COMP_WORDS=(" + words +
                 "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _nkdraw; echo \"${COMPREPLY[*]}\""});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  return outcome.out;
}

/// What fish offers for this command line.
std::string fishOffers(const std::string& line) {
  const Outcome outcome = runProgram(
      "fish", {"--private", "-c", "source " + scriptFor("fish") + "; complete -C '" + line + "'"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  return outcome.out;
}

}  // namespace

TEST(BashCompletion, OffersCommandsOptionsAndValues) {
  EXPECT_EQ(bashOffers("nkdraw bur"), "burnin\n");
  EXPECT_EQ(bashOffers("nkdraw burnin --record"), "--record-timecode\n");
  EXPECT_EQ(bashOffers("nkdraw burnin --layout v2"), "v210\n");
  EXPECT_EQ(bashOffers("nkdraw wipe --wipe dissol"), "dissolve\n");
  EXPECT_EQ(bashOffers("nkdraw config res"), "reset\n");
  EXPECT_EQ(bashOffers("nkdraw config get WatermarkE"), "WatermarkEnable\n");
  EXPECT_EQ(bashOffers("nkdraw burnin clip"), "\n") << "files are the shell's";
}

TEST(BashCompletion, LeavesOutOldNames) {
  EXPECT_EQ(bashOffers("nkdraw burnin --size"), "\n");
}

TEST(FishCompletion, OffersCommandsOptionsAndValues) {
  EXPECT_EQ(fishOffers("nkdraw bur").find("burnin\t"), 0U);
  EXPECT_EQ(fishOffers("nkdraw burnin --record").find("--record-timecode\t"), 0U);
  EXPECT_NE(fishOffers("nkdraw burnin --layout v2").find("v210"), std::string::npos);
  EXPECT_NE(fishOffers("nkdraw config res").find("reset"), std::string::npos);
}

TEST(ZshCompletion, IsAScriptThatZshLoads) {
  const std::string script = scriptFor("zsh");
  EXPECT_EQ(runProgram("zsh", {"-n", script}).exitCode, 0);
  const Outcome outcome = runProgram("zsh", {"-f", "-c",
                                             "autoload -U compinit && compinit -D -u && source " +
                                                 script + " && echo $_comps[nkdraw]"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "_nkdraw\n");
}

TEST(Completion, KnowsThreeShells) {
  EXPECT_EQ(nkdrawTool({"completion", "tcsh"}).exitCode, 1);
  EXPECT_EQ(nkdrawTool({"completion"}).exitCode, 1);
}
