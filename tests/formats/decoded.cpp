// SPDX-License-Identifier: BSD-2-Clause
#include "decoded.h"

#include <tests/support/temporary_file.h>

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace nkdraw::test {
namespace {

int run(std::vector<std::string> words, const std::string& output) {
  std::vector<char*> argv;
  for (std::string& word : words)
    argv.push_back(word.data());
  argv.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 1, output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  pid_t child = -1;
  const int error = posix_spawnp(&child, argv[0], &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  int status = -1;
  if (error == 0)
    waitpid(child, &status, 0);
  return status;
}

}  // namespace

std::vector<std::uint8_t> throughFfmpeg(std::span<const std::uint8_t> bytes,
                                        const std::string& suffix,
                                        const std::vector<std::string>& arguments) {
  const std::string base = testing::TempDir() + "nkdraw_" + std::to_string(getpid());
  const TemporaryFile input(base + suffix, {bytes.begin(), bytes.end()}), output(base + ".out", {});
  std::vector<std::string> words = {"ffmpeg", "-nostdin", "-loglevel", "error"};
  for (const std::string& argument : arguments)
    words.push_back(argument == "{}" ? std::string(input.path()) : argument);
  EXPECT_EQ(run(words, output.path()), 0);
  std::ifstream file(output.path(), std::ios::binary);
  const std::vector<char> read{std::istreambuf_iterator<char>(file),
                               std::istreambuf_iterator<char>()};
  return {read.begin(), read.end()};
}

std::vector<std::uint16_t> wordsOf(std::span<const std::uint8_t> bytes) {
  std::vector<std::uint16_t> words(bytes.size() / 2);
  for (std::size_t i = 0; i < words.size(); ++i)
    words[i] = static_cast<std::uint16_t>(bytes[2 * i] | bytes[2 * i + 1] << 8);
  return words;
}

std::vector<std::uint16_t> decodedWords(std::span<const std::uint8_t> frame,
                                        const std::string& from, int width, int height,
                                        const std::string& to) {
  return wordsOf(throughFfmpeg(frame, ".raw",
                               {"-f", "rawvideo", "-pixel_format", from, "-video_size",
                                std::to_string(width) + "x" + std::to_string(height), "-i", "{}",
                                "-f", "rawvideo", "-pix_fmt", to, "-"}));
}

}  // namespace nkdraw::test
