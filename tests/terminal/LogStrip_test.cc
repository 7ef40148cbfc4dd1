#include "platform/terminal/LogStrip.h"

#include <gmock/gmock.h>

namespace quorin::terminal::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(LogStrip, HasALineOnceItsEndCame) {
  LogStrip strip;
  int told = 0;
  strip.setOnAdd([&] { ++told; });
  std::string output;
  std::string errors;
  strip.add(output, "Received ");
  strip.add(errors, "an error\n");
  strip.add(output, "Valid Metric\n\nMetric");
  EXPECT_THAT(strip.before(strip.count(), 10),
              ElementsAre("an error", "Received Valid Metric", ""));
  EXPECT_EQ(told, 2) << "once for each text that ended a line";
  EXPECT_EQ(output, "Metric");
}

TEST(LogStrip, BreaksALineThatIsTooLong) {
  LogStrip strip;
  std::string unfinished;
  strip.add(unfinished, std::string(LogStrip::kLongestLine + 3, 'x') + "\n");
  EXPECT_THAT(strip.before(strip.count(), 10),
              ElementsAre(std::string(LogStrip::kLongestLine, 'x'), "xxx"));
}

TEST(LogStrip, ForgetsTheOldest) {
  LogStrip strip;
  std::string unfinished;
  for (std::size_t i = 1; i <= LogStrip::kLines + 5; ++i)
    strip.add(unfinished, std::to_string(i) + "\n");
  EXPECT_EQ(strip.count(), LogStrip::kLines + 5);
  EXPECT_THAT(strip.before(7, 10), ElementsAre("6", "7"));
  EXPECT_THAT(strip.before(3, 10), IsEmpty());
  EXPECT_THAT(strip.before(strip.count() + 9, 2), ElementsAre("1004", "1005"));
}

}  // namespace
}  // namespace quorin::terminal::test
