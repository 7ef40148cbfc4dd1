#include "tests/tools/import_rig.h"

namespace quorin::test {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;

TEST(Import, TakesTimesAsUtcToTheMillisecond) {
  EXPECT_THAT(import(log("\t\t\t7000\t4G\t\t\t\t\t\t")).times, ElementsAre(1000));
  const std::string end = "\",\"Cell ID\":1}\n";
  const std::string start = "{\"type_id\":\"LTE_RRC_Serv_Cell_Info\",\"timestamp\":\"";
  EXPECT_THAT(import(start + "2016-02-29 03:40:41.642506" + end).times, ElementsAre(1456717241643));
  EXPECT_THAT(import(start + "2016-02-29 03:40:41" + end).times, ElementsAre(1456717241000));
}

TEST(Import, RefusesWhatIsNoDriveLog) {
  for (const char* text : {"", "\n \n", "hello\n", "[1,2]\n", "{\"kKeyMetricID\":3952132}\n"}) {
    const Import result = import(text);
    EXPECT_EQ(result.exitCode, 2) << text;
    EXPECT_THAT(result.complaints,
                EndsWith("drive is neither a G-NetTrack Pro nor a MobileInsight log\n"));
  }
  for (const char* unreadable : {"missing", "."}) {
    const Import result = importFile(unreadable);
    EXPECT_EQ(result.exitCode, 2) << unreadable;
    EXPECT_THAT(result.complaints, HasSubstr("metricctl: cannot read "));
  }
}

TEST(Import, NeverReplacesTheLogByItsRecording) {
  const std::string text = log("\t\t\t7000\t4G\t\t\t\t\t\t");
  writeFile("drive", text);
  const Import result = importFile("drive", "drive");
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_THAT(result.complaints, HasSubstr("would replace the log"));
  EXPECT_EQ(readFile("drive"), text);
}

TEST(Import, SaysWhereItCannotWrite) {
  writeFile("drive", log("\t\t\t7000\t4G\t\t\t\t\t\t"));
  const Import result = importFile("drive", "missing/recording");
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_THAT(result.complaints, EndsWith("missing/recording\n"));
}

}  // namespace
}  // namespace quorin::test
