#include "platform/foundation/log.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

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

/// What of a line stands in standard output before anyone flushes it.
std::string writtenAtOnce(int end, int other) {
  std::fflush(stdout);
  const int kept = dup(STDOUT_FILENO);
  dup2(other, STDOUT_FILENO);
  standardOutputSink()("rsrp");
  fcntl(end, F_SETFL, O_NONBLOCK);
  char text[64];
  const ssize_t length = read(end, text, sizeof text);
  std::fflush(stdout);
  dup2(kept, STDOUT_FILENO);
  for (const int descriptor : {kept, end, other}) close(descriptor);
  return {text, static_cast<std::size_t>(std::max<ssize_t>(length, 0))};
}

TEST(StandardOutputSink, GivesATerminalEachLineAtOnceAndOthersManyTogether) {
  static char buffer[BUFSIZ];
  std::setvbuf(stdout, buffer, _IOFBF, sizeof buffer);  // however the tests were started
  const int end = posix_openpt(O_RDWR | O_NOCTTY);
  ASSERT_EQ(grantpt(end), 0);
  ASSERT_EQ(unlockpt(end), 0);
  EXPECT_EQ(writtenAtOnce(end, open(ptsname(end), O_RDWR | O_NOCTTY)), "rsrp\r\n");
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  EXPECT_EQ(writtenAtOnce(ends[0], ends[1]), "");
}

}  // namespace
}  // namespace quorin::test
