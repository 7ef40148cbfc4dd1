#include "basebandd/modem/HeldReadings.h"

#include "basebandd/modem/ReportQueue.h"
#include "metrics/registry/metric_ids.h"
#include "tests/support/rig.h"

namespace quorin::test {
namespace {

using namespace modem;
using modem::Reading;

/// A modem on LTE that is followed as the source does it: every five seconds, whatever came.
struct Rig {
  Rig() { held.start(); }

  void quality(std::int64_t seconds, bool isRecent) {
    signal["Rate"] = {seconds};
    modem["SignalQuality"] = {std::vector<Reading>{{std::int64_t{60}}, {isRecent}}};
  }
  void level(double dBm) {
    signal["Lte"] = {Readings{{"rsrp", {dBm}}}};
    held.noteSignal();
  }
  void cells() {
    held.takeCells({{{"cell-type", {std::int64_t{5}}}, {"earfcn", {std::int64_t{1300}}}}});
  }
  void pass(Milliseconds time) {
    for (clock.advance(time % kTick); time >= kTick; time -= kTick) {
      queue.refresh(readings(), 0);
      clock.advance(kTick);
    }
    queue.refresh(readings(), 0);
  }
  [[nodiscard]] ModemReadings readings() const {
    ModemReadings all;
    all.modem = modem;
    all.signal = held.signal(modem, signal);
    all.cells = held.cells();
    return all;
  }
  [[nodiscard]] Standing::State standing(std::int64_t metricID) const {
    return queue.standing(metricID).state;
  }

  static constexpr Milliseconds kTick{5000};
  VirtualClock clock;
  HeldReadings held;
  ReportQueue queue;
  Readings modem{{"AccessTechnologies", {std::int64_t{1 << 14}}}};
  Readings signal;
};

constexpr Milliseconds kMoment{1};

TEST(HeldReadings, LevelsThatNobodyReadsCountForAMinute) {
  struct Row {
    const char* what;
    std::int64_t rate;  // seconds
    bool isRecent;
    bool isRead;
  };
  const Row rows[] = {
      {"the service reads them", 2, true, true},
      {"it does not read them", 0, true, false},
      {"it does not call its own quality recent", 2, false, false},
      {"neither", 0, false, false},
  };
  for (const Row& row : rows) {
    Rig rig;
    rig.quality(row.rate, row.isRecent);
    rig.level(-90);
    rig.pass(HeldReadings::kSignalHold - kMoment);
    EXPECT_EQ(rig.standing(K_LTE_RSRP_RSRQ_SINR), Standing::live) << row.what;
    rig.pass(kMoment);
    EXPECT_EQ(rig.standing(K_LTE_RSRP_RSRQ_SINR), row.isRead ? Standing::live : Standing::stale)
        << row.what;
  }
}

TEST(HeldReadings, LevelsThatMoveAgainAreLiveAgain) {
  Rig rig;
  rig.quality(2, false);
  rig.level(-90);
  rig.pass(HeldReadings::kSignalHold);
  ASSERT_EQ(rig.standing(K_LTE_RSRP_RSRQ_SINR), Standing::stale);
  rig.level(-91);
  rig.pass(HeldReadings::kSignalHold - kMoment);
  EXPECT_EQ(rig.standing(K_LTE_RSRP_RSRQ_SINR), Standing::live);
  rig.pass(kMoment);
  EXPECT_EQ(rig.standing(K_LTE_RSRP_RSRQ_SINR), Standing::stale);
}

TEST(HeldReadings, LevelsOfAModemThatIsNewlyFollowedHaveTheirMinute) {
  Rig rig;
  rig.quality(0, false);
  rig.level(-90);
  rig.pass(HeldReadings::kSignalHold);
  rig.held.start();
  rig.pass(HeldReadings::kSignalHold - kMoment);
  EXPECT_EQ(rig.standing(K_LTE_RSRP_RSRQ_SINR), Standing::live);
}

TEST(HeldReadings, ACellListCountsForTwentySeconds) {
  Rig rig;
  rig.cells();
  rig.pass(HeldReadings::kCellsHold - kMoment);
  EXPECT_EQ(rig.standing(K_LTE_INTRARAT_MEAS), Standing::live);
  rig.cells();
  rig.pass(HeldReadings::kCellsHold - kMoment);
  EXPECT_EQ(rig.standing(K_LTE_INTRARAT_MEAS), Standing::live) << "told again in time";
  rig.pass(kMoment);
  EXPECT_EQ(rig.standing(K_LTE_INTRARAT_MEAS), Standing::stale);
}

TEST(HeldReadings, ACellListIsOfItsModemOnly) {
  Rig rig;
  rig.cells();
  rig.held.start();
  EXPECT_TRUE(rig.held.cells().empty());
}

}  // namespace
}  // namespace quorin::test
