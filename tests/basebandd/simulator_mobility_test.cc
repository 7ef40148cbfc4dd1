#include <algorithm>
#include <deque>
#include <set>

#include "basebandd/simulator/Carrier.h"
#include "messages/nas/KCellularMmCommonInfo.h"
#include "messages/umts/KCellularWcdmaRrcConnectionState.h"
#include "tests/basebandd/drive_log.h"

// How the simulated modem moves from cell to cell, read from what comes out of the source alone.

namespace quorin::test {
namespace {

constexpr EnumTable kStates = names::KLTE_RRC_STATE;
constexpr std::int32_t kNull = valueOf(kStates, "KLTE_RRC_STATE_NULL");
constexpr std::int32_t kIdle = valueOf(kStates, "KLTE_RRC_STATE_IDLE");
constexpr std::int32_t kConnected = valueOf(kStates, "KLTE_RRC_STATE_CONNECTED");

/// What was measured at one moment: the serving cell and its neighbours.
struct Snapshot {
  std::int64_t t;
  std::int32_t serving;
  std::map<std::pair<std::uint32_t, std::uint32_t>, std::int32_t> neighbours;
};

/// One change of the LTE serving cell.
struct Change {
  std::int64_t t;
  Ref<KCellularLteScellInfo> from;
  Ref<KCellularLteScellInfo> to;
  Picture before;
  std::deque<Snapshot> snapshots;  // of the seconds before, oldest first
  bool isConnected;

  [[nodiscard]] std::pair<std::uint32_t, std::uint32_t> target() const {
    return {to->dlFreq(), to->phyCellId()};
  }
};

/// Every change of the serving cell within LTE.
void walkChanges(const std::vector<LoggedMetric>& drive,
                 const std::function<void(const Change&)>& each) {
  std::deque<Snapshot> snapshots;
  bool wasLost = true;
  walk(drive, [&](const LoggedMetric& metric, const Picture& before) {
    if (metric.id == K_LTE_RRC_STATE &&
        decodedAs<KCellularLteRrcState>(metric.payload)->state() == kNull)
      wasLost = true;
    if (metric.id == K_LTE_INTRARAT_MEAS) {
      const auto list = decodedAs<KCellularLteNbrEutraCellMeas>(metric.payload);
      const auto quality = before.latest<KCellularLteRsrpRsrqSinr>(K_LTE_RSRP_RSRQ_SINR);
      Snapshot now{metric.t, 0, {}};
      if (quality->instValuesCount() > 0) now.serving = quality->instValuesAtIndex(0)->rsrp0();
      for (std::size_t i = 0; i < list->measNbrEutrasCount(); ++i) {
        const auto row = list->measNbrEutraAtIndex(i);
        now.neighbours[{row->nbrEarfcn(), row->nbrPhysCellId()}] = row->nbrRsrp();
      }
      if (quality->timestamp() == list->timestamp() || before.lteState() == kConnected)
        snapshots.push_back(now);
      if (snapshots.size() > 10) snapshots.pop_front();
    }
    if (metric.id != K_LTE_SCELL_INFO) return;
    if (!std::exchange(wasLost, false))
      each({metric.t, before.lteCell(), decodedAs<KCellularLteScellInfo>(metric.payload), before,
            snapshots, before.lteState() == kConnected});
    snapshots.clear();
  });
}

/// A cell found again after a lost link: no handover, and no reselection either.
bool isReestablishment(const Change& change) {
  const auto state = change.before.latest<KCellularLteRrcState>(K_LTE_RRC_STATE);
  return state->timestamp() == change.to->timestamp() &&
         state->cause() ==
             valueOf(names::KLTE_RRC_CAUSE, "KLTE_RRC_CAUSE_REEST_OTHER_FAIL_T310_EXP");
}

/// A cell that may no longer be camped on: of a forbidden area, or below the lowest level.
bool wasUnsuitable(const Change& change) {
  const auto common = change.before.latest<KCellularMmCommonInfo>(K_CELLULAR_MM_INFO);
  for (std::size_t i = 0; i < common->roamingFtaiListsCount(); ++i)
    if (common->roamingFtaiListAtIndex(i)->tac() == change.from->trackingAreaCode()) return true;
  const auto quality = change.before.latest<KCellularLteRsrpRsrqSinr>(K_LTE_RSRP_RSRQ_SINR);
  return quality->instValuesCount() > 0 && quality->instValuesAtIndex(0)->sinr0() <= -15;
}

/// The snapshots of the reselection time before an idle change.
std::vector<Snapshot> reselectionTime(const Change& change) {
  std::vector<Snapshot> within;
  for (const Snapshot& snapshot : change.snapshots)
    if (snapshot.t >= change.t - simulator::kReselectionMs && snapshot.t < change.t)
      within.push_back(snapshot);
  return within;
}

// (e) Levels are rounded to a dB on both sides.
constexpr double kRounding = 1;

TEST(SimulatedMobility,
     IdleReselectionOnOneFrequencyWaitsForTheHysteresisDuringTheReselectionTime) {
  std::size_t checked = 0;
  for (const std::uint64_t seed : {1u, 2u})
    walkChanges(hourOfDrive(seed), [&](const Change& change) {
      if (change.isConnected || isReestablishment(change) || wasUnsuitable(change) ||
          change.from->dlFreq() != change.to->dlFreq())
        return;
      const auto broadcast =
          change.before.latest<KCellularLteSelReselCellInfo>(K_LTE_SEL_RESEL_INFO);
      const auto within = reselectionTime(change);
      EXPECT_GE(within.size(), 2u) << change.t;
      for (const Snapshot& snapshot : within) {
        ASSERT_TRUE(snapshot.neighbours.contains(change.target())) << change.t;
        EXPECT_GE(snapshot.neighbours.at(change.target()),
                  snapshot.serving + static_cast<double>(broadcast->qHyst()) - kRounding)
            << change.t;
      }
      EXPECT_GT(change.to->timestamp(), change.from->timestamp() + 1000);
      ++checked;
    });
  EXPECT_GT(checked, 1u);
}

TEST(SimulatedMobility, IdleReselectionToAnotherFrequencyFollowsItsPriorityAndThresholds) {
  std::size_t higher = 0;
  std::size_t lower = 0;
  for (const std::uint64_t seed : {1u, 2u})
    walkChanges(hourOfDrive(seed), [&](const Change& change) {
      if (change.isConnected || isReestablishment(change) || wasUnsuitable(change) ||
          change.from->dlFreq() == change.to->dlFreq())
        return;
      const auto broadcast =
          change.before.latest<KCellularLteSelReselCellInfo>(K_LTE_SEL_RESEL_INFO);
      Ref<NbrEutra> row;
      for (std::size_t i = 0; i < broadcast->nbrEutrasCount(); ++i)
        if (broadcast->nbrEutraAtIndex(i)->earfcn() == change.to->dlFreq())
          row = broadcast->nbrEutraAtIndex(i);
      ASSERT_TRUE(row);
      ASSERT_NE(row->priority(), broadcast->priorityOperatingFreq());
      const bool isHigher = row->priority() > broadcast->priorityOperatingFreq();
      ++(isHigher ? higher : lower);
      const auto within = reselectionTime(change);
      EXPECT_GE(within.size(), 2u) << change.t;
      for (const Snapshot& snapshot : within) {
        ASSERT_TRUE(snapshot.neighbours.contains(change.target())) << change.t;
        const double srxlev = snapshot.neighbours.at(change.target()) - row->qRxlevMin();
        EXPECT_GE(srxlev, (isHigher ? row->thresXHighP() : row->thresXLowP()) - kRounding)
            << change.t;
        if (!isHigher) {
          EXPECT_LE(snapshot.serving - broadcast->qRxLevMin(),
                    broadcast->threshServingLowP() + kRounding)
              << change.t;
        }
      }
    });
  EXPECT_GT(higher + lower, 2u);
}

// (i)
TEST(SimulatedMobility, TheTargetOfAHandoverWasAMeasuredNeighbour) {
  std::size_t handovers = 0;
  walkChanges(hourOfDrive(), [&](const Change& change) {
    if (!change.isConnected || isReestablishment(change)) return;
    ++handovers;
    const bool wasMeasured = std::ranges::any_of(change.snapshots, [&](const Snapshot& snapshot) {
      return snapshot.t < change.t && snapshot.t >= change.t - 1000 &&
             snapshot.neighbours.contains(change.target());
    });
    EXPECT_TRUE(wasMeasured) << change.t;
  });
  EXPECT_GT(handovers, 20u);
}

TEST(SimulatedMobility, AHandoverOnOneFrequencyGoesToAStrongerCell) {
  std::size_t handovers = 0;
  walkChanges(hourOfDrive(), [&](const Change& change) {
    if (!change.isConnected || isReestablishment(change) || change.snapshots.empty() ||
        change.from->dlFreq() != change.to->dlFreq())
      return;
    const auto quality = change.before.latest<KCellularLteRsrpRsrqSinr>(K_LTE_RSRP_RSRQ_SINR);
    const Snapshot& report = change.snapshots.back();
    if (quality->timestamp() + 100 < static_cast<std::uint64_t>(kDriveStart + report.t)) return;
    EXPECT_GE(report.neighbours.at(change.target()), quality->instValuesAtIndex(0)->rsrp0() + 3);
    ++handovers;
  });
  EXPECT_GT(handovers, 0u);
}

TEST(SimulatedMobility, UnderFivePercentOfTheHandoversGoBackWithinFiveSeconds) {
  std::size_t handovers = 0;
  std::size_t pingPongs = 0;
  for (std::uint64_t seed = 1; seed <= 4; ++seed) {
    std::uint32_t cellBefore = 0;
    std::int64_t lastAt = 0;
    walkChanges(hourOfDrive(seed), [&](const Change& change) {
      const bool isBack = change.to->cellId() == cellBefore && change.t - lastAt < 5000;
      cellBefore = change.from->cellId();
      lastAt = change.t;
      if (!change.isConnected || isReestablishment(change)) return;
      ++handovers;
      pingPongs += isBack;
    });
  }
  EXPECT_GT(handovers, 100u);
  EXPECT_LT(100.0 * static_cast<double>(pingPongs) / static_cast<double>(handovers), 5)
      << pingPongs << " of " << handovers;
}

enum class Family { lte, umts, gsm, common };

Family familyOf(std::int64_t id) {
  constexpr std::int64_t kUmts[] = {K_UMTS_RRC_STATE,  K_UMTS_RRC_CONFIG, K_UMTS_SCELL_INFO,
                                    K_UMTS_SCELL_MEAS, K_UMTS_TX_POWER,   K_UMTS_SEL_RESEL_INFO,
                                    K_UMTS_NCELL_MEAS};
  constexpr std::int64_t kGsm[] = {K_GSM_SCELL_INFO, K_GSM_IDLE_CONFIG, K_GSM_IDLE_SCELL_MEAS,
                                   K_GSM_CS_RF_MEAS, K_GSM_NCELL_MEAS,  K_GSM_GPRS_CONFIG};
  constexpr std::int64_t kCommon[] = {K_CELLULAR_MM_INFO, K_CELLULAR_ACTIVE_BEARER,
                                      K_CELLULAR_MM_CTXT, K_CELLULAR_GMM_CTXT, K_SIM_FILE_INFO};
  if (std::ranges::find(kUmts, id) != std::end(kUmts)) return Family::umts;
  if (std::ranges::find(kGsm, id) != std::end(kGsm)) return Family::gsm;
  if (std::ranges::find(kCommon, id) != std::end(kCommon)) return Family::common;
  return Family::lte;
}

// In this hour LTE is left by reselection, by handover and after a lost link.
constexpr std::uint64_t kSeedOfAllWaysOut = 3;

// (j)
TEST(SimulatedMobility, OneTechnologyReportsAtATimeAndTheOldOneSaidWhyItLeft) {
  constexpr EnumTable kCauses = names::KLTE_RRC_CAUSE;
  constexpr EnumTable kUmtsStates = names::KWCDMA_RRC_CONN_STATE;
  // LTE's last words: the state it left, and the cause that belongs to it.
  const std::map<std::int32_t, std::int32_t> causes = {
      {kIdle, valueOf(kCauses, "KLTE_RRC_CAUSE_NA")},
      {valueOf(kStates, "KLTE_RRC_STATE_ATMPT_CONNECTION"),
       valueOf(kCauses, "KLTE_RRC_CAUSE_REL_CONN_FAIL_IRAT_RESEL")},
      {valueOf(kStates, "KLTE_RRC_STATE_ATMPT_OUTBND_MOBILITY"),
       valueOf(kCauses, "KLTE_RRC_CAUSE_REL_SUCC_MOB_FROM_EUTRAN")},
  };
  const std::set<std::int32_t> umtsCauses = {valueOf(names::KRRC_REL, "KRRC_REL_CELL_CHANGED"),
                                             valueOf(names::KRRC_REL, "KRRC_REL_NO_CELL")};
  std::map<std::pair<Family, Family>, int> changes;
  std::set<std::int32_t> seen;
  Family last = Family::lte;
  bool hasLeft = true;
  for (const LoggedMetric& metric : hourOfDrive(kSeedOfAllWaysOut)) {
    const Family family = familyOf(metric.id);
    if (family == Family::common) continue;
    if (family != last) {
      EXPECT_TRUE(hasLeft || last == Family::gsm) << metric.t;
      ++changes[{last, family}];
      last = family;
      hasLeft = false;
    }
    EXPECT_FALSE(hasLeft && metric.id != K_LTE_RRC_STATE && metric.id != K_UMTS_RRC_STATE)
        << metric.t;
    if (metric.id == K_LTE_RRC_STATE) {
      const auto state = decodedAs<KCellularLteRrcState>(metric.payload);
      hasLeft = state->state() == kNull;
      if (hasLeft && metric.t > 0) {
        ASSERT_TRUE(causes.contains(state->prevState())) << metric.t;
        EXPECT_EQ(state->cause(), causes.at(state->prevState())) << metric.t;
        seen.insert(state->cause());
      }
    } else if (metric.id == K_UMTS_RRC_STATE) {
      const auto state = decodedAs<KCellularWcdmaRrcConnectionState>(metric.payload);
      hasLeft = state->state() == valueOf(kUmtsStates, "KWCDMA_RRC_CONN_STATE_INACTIVE");
      if (hasLeft) {
        EXPECT_TRUE(umtsCauses.contains(state->releaseCause())) << metric.t;
      }
    }
  }
  EXPECT_EQ(seen.size(), causes.size());
  EXPECT_GT((changes[{Family::lte, Family::umts}]), 0);
  EXPECT_GT((changes[{Family::umts, Family::gsm}]), 0);
  EXPECT_GT((changes[{Family::gsm, Family::umts}]), 0);
  EXPECT_GT((changes[{Family::umts, Family::lte}]), 0);
}

TEST(SimulatedMobility, TheRrcStatesFollowEachOtherAndLastAsLongAsTheySay) {
  Ref<KCellularLteRrcState> last;
  std::set<std::int32_t> causes;
  for (const LoggedMetric& metric : hourOfDrive()) {
    if (metric.id != K_LTE_RRC_STATE) continue;
    const auto state = decodedAs<KCellularLteRrcState>(metric.payload);
    if (last) {
      EXPECT_EQ(state->prevState(), last->state()) << metric.t;
      EXPECT_EQ(state->prevStateDurMs(), state->timestamp() - last->timestamp()) << metric.t;
    }
    last = state;
    causes.insert(state->cause());
  }
  EXPECT_GE(causes.size(), 6u);
}

}  // namespace
}  // namespace quorin::test
