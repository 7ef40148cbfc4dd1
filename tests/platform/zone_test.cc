#include <cstdlib>
#include <ctime>
#include <filesystem>

#include "tests/support/rig.h"

namespace quorin::test {
namespace {

/// A time zone in force while it lives.
class Zone {
 public:
  explicit Zone(const char* zone) { zone ? setenv("TZ", zone, 1) : unsetenv("TZ"); }
  ~Zone() { setenv("TZ", "UTC", 1); }
};

constexpr const char* kZones[] = {
    "UTC",
    "Europe/Berlin",
    "America/New_York",
    "Asia/Kolkata",
    ":Australia/Lord_Howe",
    "Asia/Tehran",
    "CET-1CEST,M3.5.0,M10.5.0/3",
    "<+0330>-3:30",
    "Africa/Casablanca",
    "no such zone",
    "Africa/Monrovia",
    "Europe/Dublin",
    "Pacific/Apia",
    "",
    "/usr/share/zoneinfo/Asia/Tokyo",
    "right/Europe/Berlin",
};

TEST(LocalZone, IsWhatTheCLibrarySaysAtEveryHourAndNextToEveryChange) {
  for (const char* name : kZones) {
    const Zone zone(name);
    for (std::int64_t seconds = -2'900'000'000; seconds < 4'200'000'000;
         seconds += 86'400 * 9 + 3'607) {
      const auto instants = {seconds, localZone(seconds).from, localZone(seconds).until - 1,
                             localZone(seconds).until};
      for (const std::int64_t at : instants) {
        if (std::abs(at) > 5'000'000'000) continue;
        const auto instant = static_cast<std::time_t>(at);
        std::tm local{};
        localtime_r(&instant, &local);
        const LocalZone& found = localZone(at);
        ASSERT_EQ(found.offset, local.tm_gmtoff) << name << " " << at;
        ASSERT_EQ(found.abbreviation, local.tm_zone) << name << " " << at;
        ASSERT_LE(found.from, at);
        ASSERT_GT(found.until, at);
      }
    }
  }
}

TEST(LocalZone, IsAskedOnceForAsLongAsItHolds) {
  const Zone zone("Europe/Berlin");
  const std::int64_t summer = 1'790'000'000;
  const LocalZone first = localZone(summer);
  EXPECT_EQ(first.offset, 7200);
  EXPECT_EQ(first.abbreviation, "CEST");
  EXPECT_EQ(localZone(first.from).serial, first.serial);
  EXPECT_EQ(localZone(first.until - 1).serial, first.serial);
  EXPECT_NE(localZone(first.until).serial, first.serial);
  EXPECT_EQ(localZone(first.until).abbreviation, "CET");
}

TEST(LocalZone, KeepsTheSystemsFileUntilAChangeIsTold) {
  if (!std::filesystem::exists("/etc/localtime")) GTEST_SKIP() << "a machine without a zone";
  const Zone zone(nullptr);
  constexpr std::int64_t kInstant = 1'790'000'000;
  const LocalZone first = localZone(kInstant);
  EXPECT_EQ(localZone(kInstant).serial, first.serial);
  EXPECT_EQ(localZone(first.until - 1).serial, first.serial);
  const Zone other("Asia/Tokyo");
  EXPECT_EQ(localZone(kInstant).abbreviation, "JST");
  unsetenv("TZ");
  EXPECT_EQ(localZone(kInstant).abbreviation, first.abbreviation);
}

TEST(LocalZone, FollowsTheVariableHoweverItIsChanged) {
  constexpr std::int64_t kInstant = 1'790'000'000;
  const Zone zone("UTC");
  EXPECT_EQ(localZone(kInstant).abbreviation, "UTC");
  setenv("TZ", "Asia/Tokyo", 1);
  EXPECT_EQ(localZone(kInstant).abbreviation, "JST");
  static char entry[] = "TZ=Asia/Seoul";
  putenv(entry);
  EXPECT_EQ(localZone(kInstant).abbreviation, "KST");
  entry[3] = 'X';  // in its place, to a zone that does not exist
  EXPECT_EQ(localZone(kInstant).offset, 0);
  unsetenv("TZ");
  (void)localZone(kInstant);
  setenv("QUORIN_ANOTHER", "1", 1);
  setenv("TZ", "Asia/Tokyo", 1);
  unsetenv("QUORIN_ANOTHER");
  EXPECT_EQ(localZone(kInstant).abbreviation, "JST");
  setenv("QUORIN_ANOTHER", "1", 1);  // behind it
  unsetenv("TZ");
  setenv("TZ", "Asia/Seoul", 1);
  EXPECT_EQ(localZone(kInstant).abbreviation, "KST");
  unsetenv("TZ");
  EXPECT_NE(localZone(kInstant).abbreviation, "KST");
  unsetenv("QUORIN_ANOTHER");
  setenv("TZ", "Asia/Tokyo", 1);  // as many as before
  EXPECT_EQ(localZone(kInstant).abbreviation, "JST");
  char* own[] = {entry, nullptr};
  entry[3] = 'A';
  char** const before = std::exchange(environ, own);
  EXPECT_EQ(localZone(kInstant).abbreviation, "KST");
  environ = before;
  EXPECT_EQ(localZone(kInstant).abbreviation, "JST");
}

}  // namespace
}  // namespace quorin::test
