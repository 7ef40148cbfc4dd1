#include "basebandd/deviceconfig.h"

#include "metrics/registry/metric_ids.h"
#include "tests/support/rig.h"

namespace quorin::test {
namespace {

std::optional<DeviceConfig> readText(std::string_view text, std::string& reason) {
  return readDeviceConfig({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()},
                          reason);
}

TEST(DeviceConfig, NamesMetricsWithAPeriodOrOnChange) {
  std::string reason;
  const auto config = readText(
      "# commentaire écrit\n[metrics]\nK_LTE_RRC_STATE = \"on change\"\nK_LTE_TX_POWER = 1000\n",
      reason);
  ASSERT_TRUE(config) << reason;
  EXPECT_EQ(*config,
            (DeviceConfig{{K_LTE_RRC_STATE, std::nullopt}, {K_LTE_TX_POWER, Milliseconds{1000}}}));
}

TEST(DeviceConfig, ThatShipsWithTheApplicationAsksForAllHandledMetrics) {
  std::string reason;
  const Ref<Data> file =
      dataWithContentsOfFile(QUORIN_SOURCE_DIR "/app/resources/zef_test_lte.deviceconfig");
  ASSERT_TRUE(file);
  const auto config = readDeviceConfig(file->bytes(), reason);
  ASSERT_TRUE(config) << reason;
  EXPECT_EQ(config->size(), 30U);
  for (const MetricID& row : kMetricIDs)
    EXPECT_EQ(config->contains(row.id), row.id != K_LTE_RLF && row.id != K_LTE_SCELL_MEAS)
        << row.name;
}

struct Refused {
  const char* text;
  const char* reason;
};

constexpr Refused kRefused[] = {
    {"", "line 1: no metric is asked for"},
    {"[metrics]\n", "line 1: no metric is asked for"},
    {"[metrics]\n\nK_NONSENSE = 1000\n", "line 3: K_NONSENSE is no metric"},
    {"[metrics]\nK_LTE_RLF = 1000\n", "line 2: K_LTE_RLF is no metric"},
    {"[metrics]\nK_LTE_TX_POWER = 99\n",
     "line 2: K_LTE_TX_POWER has a period outside 100 to 3600000 milliseconds"},
    {"[metrics]\nK_LTE_TX_POWER = 3600001\n",
     "line 2: K_LTE_TX_POWER has a period outside 100 to 3600000 milliseconds"},
    {"[metrics]\nK_LTE_TX_POWER = \"often\"\n",
     "line 2: K_LTE_TX_POWER is neither \"on change\" nor a period in milliseconds"},
    {"[metrics]\nK_LTE_TX_POWER = 1000.0\n",
     "line 2: K_LTE_TX_POWER is neither \"on change\" nor a period in milliseconds"},
    {"[other]\n", "line 1: other is unknown; only [metrics] is read"},
    {"[metrics]\nK_0123456789_0123456789_0123456789_0123456789_0123456789_0123456789_ = 1\n",
     "line 2: K_0123456789_0123456789_0123456789_0123456789_0123456789_0123456... is no metric"},
    {"[metrics]\n\"K\\n\\u0000\" = 1\n", "line 2: K?? is no metric"},
    {"metrics = 1\n", "line 1: metrics is unknown; only [metrics] is read"},
};

TEST(DeviceConfig, IsRefusedWithLineAndReason) {
  for (const Refused& row : kRefused) {
    std::string reason;
    EXPECT_FALSE(readText(row.text, reason)) << row.text;
    EXPECT_EQ(reason, row.reason) << row.text;
  }
}

TEST(DeviceConfig, HasALimitOfItsSize) {
  std::string reason;
  std::string text = std::string("[metrics]\nK_LTE_TX_POWER = 1000\n#");
  text.resize(65'536, '-');
  EXPECT_TRUE(readText(text, reason)) << reason;
  EXPECT_FALSE(readText(text + "-", reason));
  EXPECT_EQ(reason, "line 1: more than 65536 bytes");
}

TEST(DeviceConfig, ThatNestsWithoutEndIsRefused) {
  const auto nested = [](std::string text, const char* deeper, int times) {
    while (times-- > 0) text += deeper;
    return text;
  };
  for (const std::string& text :
       {nested("a", ".a", 1000) + "=1\n", nested("a", ".a", 30'000) + "=1",
        nested("[a", ".a", 30'000) + "]\n", nested("a=", "[", 30'000), nested("a=", "{a=", 20'000),
        nested("", "[[a]]\n", 9'000)}) {
    std::string reason;
    EXPECT_FALSE(readText(text, reason));
    EXPECT_TRUE(reason.starts_with("line ")) << reason;
    EXPECT_LT(reason.size(), 200U) << reason;
  }
}

TEST(DeviceConfig, ThatIsNoTomlIsRefusedWithItsLine) {
  std::string reason;
  EXPECT_FALSE(readText("[metrics]\nK_LTE_TX_POWER = = 5\n", reason));
  EXPECT_TRUE(reason.starts_with("line 2: ")) << reason;
  EXPECT_FALSE(readText("[metrics]\nK_LTE_TX_POWER = 1000 \u00e9\n", reason));
  EXPECT_FALSE(readText("t=t\n", reason));
  EXPECT_EQ(reason.find('\n'), std::string::npos) << reason;
  for (const char* text : {"[[[", "[[.", "[", "a", "a.", ".a", "=", "a = {", "a = [", "'"})
    EXPECT_FALSE(readText(text, reason)) << text;
  EXPECT_FALSE(readText(std::string_view("\xff\xfe\x00", 3), reason));
  EXPECT_TRUE(reason.starts_with("line 1: ")) << reason;
}

}  // namespace
}  // namespace quorin::test
