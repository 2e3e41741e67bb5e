// SPDX-License-Identifier: BSD-2-Clause
#include "child.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <sstream>

#include <sched.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

std::string contents(int descriptor) {
  std::string text;
  char buffer[4096];
  off_t offset = 0;
  for (ssize_t count; (count = pread(descriptor, buffer, sizeof buffer, offset)) > 0;
       offset += count)
    text.append(buffer, static_cast<std::size_t>(count));
  close(descriptor);
  return text;
}

}  // namespace

nkdraw::test::Child::Child(const std::function<std::string()>& work)
    : id_(-1), answer_(memfd_create("answer", 0)), messages_(memfd_create("messages", 0)) {
  id_ = fork();
  if (id_ != 0)
    return;
  dup2(messages_, 2);
  const std::string answer = work();
  const ssize_t written = write(answer_, answer.data(), answer.size());
  _exit(written == static_cast<ssize_t>(answer.size()) ? 0 : 1);
}

void nkdraw::test::Child::kill(int signal) const {
  ::kill(id_, signal);
}

bool nkdraw::test::Child::ended() const {
  siginfo_t info{};
  waitid(P_PID, static_cast<id_t>(id_), &info, WEXITED | WNOHANG | WNOWAIT);
  return info.si_pid != 0;
}

nkdraw::test::ChildOutcome nkdraw::test::Child::wait() const {
  ChildOutcome outcome;
  int status = 0;
  EXPECT_EQ(waitpid(id_, &status, 0), id_);
  outcome.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  outcome.answer = contents(answer_);
  std::istringstream lines(contents(messages_));
  for (std::string line; std::getline(lines, line);)
    outcome.messages.push_back(line);
  return outcome;
}

std::string nkdraw::test::inChild(const std::function<std::string()>& work) {
  const ChildOutcome outcome = Child(work).wait();
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.messages, std::vector<std::string>());
  return outcome.answer;
}

nkdraw::test::StoreFolder::StoreFolder() {
  std::string name = testing::TempDir() + "nkdraw-store-XXXXXX";
  EXPECT_NE(mkdtemp(name.data()), nullptr);
  folder_ = name;
  setenv("NKDRAW_CONFIG", file().c_str(), 1);
}

nkdraw::test::StoreFolder::~StoreFolder() {
  fs::remove_all(folder_);
}

std::vector<std::string> nkdraw::test::StoreFolder::names() const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder_))
    names.push_back(entry.path().filename().string());
  std::ranges::sort(names);
  return names;
}

void nkdraw::test::put(const std::string& key, const std::string& text, const char* root) {
  std::string value = text;
  auto length = static_cast<std::uint32_t>(value.size());
  nkCFGValueString(kDefaultStore, root, key.c_str(), value.data(), &length, kConfigWrite);
}

std::string nkdraw::test::get(const std::string& key, const char* root) {
  std::string value(100'000, '?');
  auto length = static_cast<std::uint32_t>(value.size());
  nkCFGValueString(kDefaultStore, root, key.c_str(), value.data(), &length, kConfigRead);
  return value.c_str();
}

std::uint32_t nkdraw::test::save() {
  return nkCFGSave(kDefaultStore, 0, 0);
}

void nkdraw::test::putInChild(const std::string& key, const std::string& text) {
  EXPECT_EQ(inChild([&] {
              put(key, text);
              return std::to_string(save());
            }),
            "0");
}

std::string nkdraw::test::getInChild(const std::string& key) {
  return inChild([&] { return get(key); });
}

nkdraw::test::SharedNumber::SharedNumber()
    : number_(static_cast<int*>(
          mmap(nullptr, sizeof(int), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0))) {}

nkdraw::test::SharedNumber::~SharedNumber() {
  munmap(number_, sizeof(int));
}

void nkdraw::test::SharedNumber::waitFor(int number) const {
  while (__atomic_load_n(number_, __ATOMIC_SEQ_CST) < number)
    sched_yield();
}
