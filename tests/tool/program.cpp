// SPDX-License-Identifier: BSD-2-Clause
#include "program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>
#include <thread>

#include <fcntl.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

std::string contents(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

/// Where the output of a running program goes; outside the work folder, whose files tests count.
class Capture {
 public:
  Capture() {
    const fs::path base = fs::path(NKDRAW_TEST_FOLDER) / ("capture-" + std::to_string(getpid()));
    fs::create_directories(NKDRAW_TEST_FOLDER);
    out_ = base.string() + ".out";
    err_ = base.string() + ".err";
  }
  ~Capture() {
    fs::remove(out_);
    fs::remove(err_);
  }

  [[nodiscard]] pid_t start(const std::string& program, const Arguments& arguments) const {
    std::vector<char*> argv = {const_cast<char*>(program.c_str())};
    for (const std::string& argument : arguments)
      argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    setenv("LSAN_OPTIONS", "print_suppressions=0:suppressions=" NKDRAW_LEAKS, 1);
    // Freed memory that the address sanitizer keeps back counts in a run's peak.
    setenv("ASAN_OPTIONS", "quarantine_size_mb=8", 0);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    constexpr int kFlags = O_WRONLY | O_CREAT | O_TRUNC;
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, out_.c_str(), kFlags, 0600);
    posix_spawn_file_actions_addopen(&actions, 2, err_.c_str(), kFlags, 0600);
    pid_t child = -1;
    const int error =
        posix_spawnp(&child, program.c_str(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    EXPECT_EQ(error, 0) << program;
    return child;
  }

  [[nodiscard]] Outcome wait(pid_t child) const {
    Outcome outcome;
    int status = 0;
    struct rusage used = {};
    wait4(child, &status, 0, &used);
    outcome.peakKilobytes = used.ru_maxrss;
    outcome.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    outcome.out = contents(out_);
    outcome.err = contents(err_);
    return outcome;
  }

 private:
  std::string out_, err_;
};

std::string folderOf(const testing::TestInfo& test) {
  std::string name = std::string(test.test_suite_name()) + "." + test.name();
  for (char& letter : name) {
    if (letter == '/')
      letter = '-';
  }
  return (fs::path(NKDRAW_TEST_FOLDER) / name).string();
}

/// The files of a test stay only if it failed.
class Sweeper : public testing::EmptyTestEventListener {
  void OnTestEnd(const testing::TestInfo& test) override {
    if (test.result()->Passed())
      fs::remove_all(folderOf(test));
  }
};

[[maybe_unused]] const bool sweeps = [] {
  testing::UnitTest::GetInstance()->listeners().Append(std::make_unique<Sweeper>().release());
  return true;
}();

Arguments withBurnin(const Arguments& arguments) {
  Arguments all = {"burnin"};
  all.insert(all.end(), arguments.begin(), arguments.end());
  return all;
}

/// Looks again and again, at most that often.
bool comesTrue(int looks, const std::function<bool()>& condition) {
  for (int i = 0; i < looks && !condition(); ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  return condition();
}

/// As ps(1) shows it: S waits, Z has ended.
char stateOf(pid_t process) {
  const std::string facts = contents("/proc/" + std::to_string(process) + "/stat");
  return facts.substr(facts.rfind(')')).at(2);
}

int bytesIn(int pipe) {
  int bytes = -1;
  ioctl(pipe, FIONREAD, &bytes);
  return bytes;
}

bool writeAll(int file, const std::string& bytes) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t written = write(file, bytes.data() + done, bytes.size() - done);
    if (written <= 0)
      return false;
    done += static_cast<std::size_t>(written);
  }
  return true;
}

}  // namespace

Outcome runProgram(const std::string& program, const Arguments& arguments) {
  const Capture capture;
  return capture.wait(capture.start(program, arguments));
}

Outcome nkdrawTool(const Arguments& arguments) {
  return runProgram(NKDRAW_TOOL, arguments);
}

void expectRefusal(const Arguments& arguments, int exitCode, const std::string& words) {
  auto before = filesAtWork();
  const Outcome outcome = nkdrawTool(arguments);
  EXPECT_EQ(outcome.exitCode, exitCode) << outcome.err;
  EXPECT_EQ(outcome.out, "");
  EXPECT_TRUE(outcome.err.starts_with("nkdraw: ")) << outcome.err;
  EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
  EXPECT_TRUE(outcome.err.ends_with("\n"));
  EXPECT_NE(outcome.err.find(words), std::string::npos) << outcome.err;
  EXPECT_NE(outcome.err.find("; "), std::string::npos) << outcome.err;
  auto after = filesAtWork();
  std::ranges::sort(before);
  std::ranges::sort(after);
  EXPECT_EQ(before, after);
}

Outcome burnin(const Arguments& arguments) {
  return runProgram(NKDRAW_TOOL, withBurnin(arguments));
}

Outcome burninUntil(const Arguments& arguments, const std::string& prefix, int signal) {
  const Capture capture;
  const pid_t child = capture.start(NKDRAW_TOOL, withBurnin(arguments));
  const auto begun = [&] {
    for (const std::string& name : filesAtWork()) {
      std::error_code gone;
      if (name.starts_with(prefix) && fs::file_size(at(name), gone) > 0 && !gone)
        return true;
    }
    return false;
  };
  for (int i = 0; i < 10000 && !begun(); ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  EXPECT_TRUE(begun()) << "the run was over before it could be stopped";
  kill(child, signal);
  return capture.wait(child);
}

Fed toolFed(const Feed& feed, const Arguments& arguments) {
  mkfifo(feed.pipe.c_str(), 0600);
  signal(SIGPIPE, SIG_IGN);
  const Capture capture;
  Arguments all = {"-c", feed.shell + "exec \"$@\"", "bash", NKDRAW_TOOL};
  all.insert(all.end(), arguments.begin(), arguments.end());
  const pid_t child = capture.start("bash", all);
  const int pipe = open(feed.pipe.c_str(), O_WRONLY | O_CLOEXEC);  // waits for the reader
  EXPECT_TRUE(writeAll(pipe, feed.head));
  EXPECT_TRUE(comesTrue(10000, [&] { return bytesIn(pipe) == 0 && stateOf(child) == 'S'; }))
      << "the run does not wait for its input";
  kill(child, feed.signal);
  const bool stopped = comesTrue(2000, [&] { return stateOf(child) == 'Z'; });
  EXPECT_TRUE(stopped || writeAll(pipe, feed.tail));
  close(pipe);
  return {capture.wait(child), stopped};
}

void ffmpeg(const Arguments& arguments) {
  Arguments all = {"-nostdin", "-v", "error", "-y"};
  all.insert(all.end(), arguments.begin(), arguments.end());
  const Outcome outcome = runProgram("ffmpeg", all);
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
}

std::string workFolder() {
  const auto& test = *testing::UnitTest::GetInstance()->current_test_info();
  const fs::path folder = folderOf(test);
  static std::string current;
  if (current != folder.string()) {
    fs::remove_all(folder);
    fs::create_directories(folder);
    current = folder.string();
  }
  return current;
}

std::string at(const std::string& name) {
  return workFolder() + "/" + name;
}

bool exists(const std::string& path) {
  return fs::exists(path);
}

std::vector<std::string> filesAtWork() {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(workFolder()))
    names.push_back(entry.path().filename().string());
  return names;
}
