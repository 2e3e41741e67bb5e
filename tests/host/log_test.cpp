// SPDX-License-Identifier: BSD-2-Clause
#include <gtest/gtest.h>
#include <nkdraw/platform/log.h>

#include <set>
#include <string>
#include <thread>
#include <vector>

namespace {

/// Collects what arrives during its lifetime.
class CollectingSink {
 public:
  CollectingSink() { nkdraw::setLogSink(collect, this); }
  CollectingSink(const CollectingSink&) = delete;
  CollectingSink& operator=(const CollectingSink&) = delete;
  ~CollectingSink() { nkdraw::setLogSink(nullptr, nullptr); }

  std::vector<std::string> messages;

 private:
  static void collect(const char* message, void* context) {
    static_cast<CollectingSink*>(context)->messages.emplace_back(message);
  }
};

std::string messageOf(const char* text) {
  CollectingSink sink;
  ErrOut("%s", text);
  return sink.messages.at(0);
}

TEST(Log, FormatsAsPrintfDoes) {
  CollectingSink sink;
  ErrOut("Error: %s <%d> %5.2f", "file", -7, 1.5);
  EXPECT_EQ(sink.messages, std::vector<std::string>{"Error: file <-7>  1.50"});
}

TEST(Log, LineEndsBecomeBlanksAndThoseAtTheEndGo) {
  EXPECT_EQ(messageOf("plain"), "plain");
  EXPECT_EQ(messageOf("one\ntwo\r\nthree"), "one two  three");
  EXPECT_EQ(messageOf("end\r\n\n"), "end");
  EXPECT_EQ(messageOf("\n"), "");
  EXPECT_EQ(messageOf(""), "");
}

TEST(Log, BlanksAtTheEndArePartOfTheMessage) {
  EXPECT_EQ(messageOf("Error: No colourspace for watermark "),
            "Error: No colourspace for watermark ");
  EXPECT_EQ(messageOf("end  \r\n\n "), "end      ");
  EXPECT_EQ(messageOf("end \n"), "end ");
  EXPECT_EQ(messageOf(" "), " ");
}

TEST(Log, LongMessagesAreCutAt1023Characters) {
  const std::string text(2000, 'x');
  EXPECT_EQ(messageOf(text.substr(0, 1023).c_str()), text.substr(0, 1023));
  EXPECT_EQ(messageOf(text.substr(0, 1024).c_str()), text.substr(0, 1023));
  EXPECT_EQ(messageOf(text.c_str()), text.substr(0, 1023));
}

TEST(Log, WithoutASinkAMessageIsOneLineOnStandardError) {
  testing::internal::CaptureStderr();
  ErrOut("first %d", 1);
  ErrOut("second\n");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "first 1\nsecond\n");
}

TEST(Log, ANullSinkBringsStandardErrorBack) {
  { const CollectingSink sink; }
  testing::internal::CaptureStderr();
  ErrOut("back");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "back\n");
}

TEST(Log, ASinkMaySetAnotherSinkAndLog) {
  CollectingSink sink;
  nkdraw::setLogSink(
      [](const char* message, void* context) {
        auto* const inner = static_cast<CollectingSink*>(context);
        nkdraw::setLogSink(
            [](const char* text, void* to) {
              static_cast<CollectingSink*>(to)->messages.emplace_back(text);
            },
            inner);
        ErrOut("inner %s", message);
      },
      &sink);
  ErrOut("message");
  EXPECT_EQ(sink.messages, std::vector<std::string>{"inner message"});
}

TEST(Log, LinesOfManyThreadsStayWhole) {
  constexpr int kThreads = 4, kMessages = 200;
  testing::internal::CaptureStderr();
  {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < kThreads; ++thread)
      threads.emplace_back([thread] {
        for (int message = 0; message < kMessages; ++message)
          ErrOut("thread %d message %d", thread, message);
      });
  }
  std::multiset<std::string> expected, written;
  for (int thread = 0; thread < kThreads; ++thread)
    for (int message = 0; message < kMessages; ++message)
      expected.insert("thread " + std::to_string(thread) + " message " + std::to_string(message));
  std::istringstream lines(testing::internal::GetCapturedStderr());
  for (std::string line; std::getline(lines, line);)
    written.insert(line);
  EXPECT_EQ(written, expected);
}

TEST(Log, TheSinkMayChangeWhileOthersLog) {
  static const auto ignore = [](const char*, void*) {};
  nkdraw::setLogSink(ignore, nullptr);
  {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 3; ++thread)
      threads.emplace_back([] {
        for (int message = 0; message < 500; ++message)
          ErrOut("message %d", message);
      });
    static int contexts[2];
    for (int change = 0; change < 500; ++change)
      nkdraw::setLogSink(ignore, &contexts[change % 2]);
  }
  nkdraw::setLogSink(nullptr, nullptr);
}

}  // namespace
