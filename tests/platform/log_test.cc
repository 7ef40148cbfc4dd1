#include "platform/foundation/log.h"

#include "tests/support/rig.h"

namespace quorin::test {
namespace {

using ::testing::ElementsAre;

TEST(Log, KeepsItsTwoChannelsApart) {
  RecordedLog log;
  systemLog("to the system");
  printLine("to the reader");
  systemLog("");
  EXPECT_THAT(log.systemLines(), ElementsAre("to the system", ""));
  EXPECT_THAT(log.printedLines(), ElementsAre("to the reader"));
}

TEST(Log, GivesBackTheSinkThatWasReplaced) {
  std::vector<std::string> first;
  std::vector<std::string> second;
  const LogSink before = setPrintSink([&](std::string_view line) { first.emplace_back(line); });
  const LogSink replaced = setPrintSink([&](std::string_view line) { second.emplace_back(line); });
  printLine("a");
  (void)setPrintSink(replaced);
  printLine("b");
  (void)setPrintSink(before);
  EXPECT_THAT(first, ElementsAre("b"));
  EXPECT_THAT(second, ElementsAre("a"));
}

TEST(Log, WritesWholeLinesToItsStandardSinks) {
  const LogSink errors = standardErrorSink();
  const LogSink output = standardOutputSink();
  ::testing::internal::CaptureStderr();
  ::testing::internal::CaptureStdout();
  errors("one %s");
  errors("");
  output("two");
  output(std::string_view("not terminated").substr(0, 3));
  flushPrintedLines();
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), "two\nnot\n");
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "one %s\n\n");
}

}  // namespace
}  // namespace quorin::test
