#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>
#include <set>
#include <sstream>

#include "basebandd/simulator/Carrier.h"
#include "basebandd/simulator/uplink.h"
#include "messages/lte/KCellularLteSecondaryCellMeasurements.h"
#include "messages/lte/KCellularLteTxPower.h"
#include "metrics/metric_cases.h"
#include "tests/basebandd/drive_log.h"

// An hour of simulated drive, read from what comes out of the source alone.

namespace quorin::test {
namespace {

constexpr std::int32_t kConnected = valueOf(names::KLTE_RRC_STATE, "KLTE_RRC_STATE_CONNECTED");
constexpr double kBlocksOfCode[] = {6, 15, 25, 50, 75, 100};  // TS 36.101 5.6

const simulator::Carrier& carrierOf(std::uint32_t earfcn) {
  for (const simulator::Carrier& carrier : simulator::carriers())
    if (carrier.technology == simulator::Technology::lte && carrier.channel == earfcn)
      return carrier;
  ADD_FAILURE() << "no such EARFCN: " << earfcn;
  return simulator::carriers().front();
}

TEST(SimulatedHour, HasEveryMetricThatTheViewerHandles) {
  std::set<std::int64_t> seen;
  for (const LoggedMetric& metric : hourOfDrive()) seen.insert(metric.id);
  for (const MetricCase& row : metricCases()) EXPECT_TRUE(seen.contains(row.id)) << row.logText;
  EXPECT_EQ(seen.size(), metricCases().size());
}

/// Counts and digests of what each metric had, its times included.
struct MetricOfTheHour {
  std::string_view name;
  std::size_t count;
  std::uint64_t digest;  // FNV-1a of time and payload of each
};
constexpr MetricOfTheHour kHourOfSeedOne[] = {
    {"K_LTE_CDRX_CONFIG", 166, 0xaf93c8e3ea0c1043},
    {"K_LTE_RRC_STATE", 148, 0x6dffa68b9216593c},
    {"K_LTE_SCELL_INFO", 126, 0x9bb43019e71d501},
    {"K_LTE_SEL_RESEL_INFO", 49, 0x9d513676e9d7690c},
    {"K_LTE_TX_POWER", 2206, 0x5b5be5cd12148786},
    {"K_LTE_RSRP_RSRQ_SINR", 2599, 0x6ff2ab8334055fae},
    {"K_LTE_COMPCARR_INFO", 154, 0x8fcc7a393dd8ba76},
    {"K_LTE_CA_STATUS", 1301, 0x3e2859cea048be67},
    {"K_LTE_INTERRAT_MEAS", 2705, 0xc7f2b0086c740b3d},
    {"K_LTE_INTRARAT_MEAS", 2708, 0x38df2c140910ffe9},
    {"K_LTE_SECONDARYCELL_MEAS", 945, 0xd25c46a6b482d00b},
    {"K_CELLULAR_MM_INFO", 2, 0xd4cb9b4d66efa550},
    {"K_CELLULAR_ACTIVE_BEARER", 21, 0xa9b9dbbdee25fb07},
    {"K_LTE_EMM_CTXT", 77, 0xc428e4481f847206},
    {"K_CELLULAR_MM_CTXT", 28, 0xe51d4005d0f38fad},
    {"K_CELLULAR_GMM_CTXT", 28, 0x5cb2968769f7755f},
    {"K_UMTS_RRC_STATE", 65, 0x11ea15ba07511f5c},
    {"K_UMTS_RRC_CONFIG", 30, 0x2ae4e63348544fca},
    {"K_UMTS_SCELL_INFO", 12, 0xebef5a2345dcd956},
    {"K_UMTS_SCELL_MEAS", 461, 0x740996a6e1c207a2},
    {"K_UMTS_TX_POWER", 256, 0xf4549bf99350298},
    {"K_UMTS_SEL_RESEL_INFO", 104, 0x9342f945b3912f25},
    {"K_UMTS_NCELL_MEAS", 467, 0x92b8831188338283},
    {"K_GSM_SCELL_INFO", 29, 0x441f94dde262f526},
    {"K_GSM_IDLE_CONFIG", 12, 0xc8c1c0d7af06013c},
    {"K_GSM_IDLE_SCELL_MEAS", 358, 0x5c81feea213befbc},
    {"K_GSM_CS_RF_MEAS", 175, 0x6dd79e584e628e79},
    {"K_GSM_NCELL_MEAS", 537, 0xbafdc4dd5e6d903},
    {"K_GSM_GPRS_CONFIG", 4, 0x57df0bd7a62d351d},
    {"K_SIM_FILE_INFO", 1, 0x69fc49869403007e},
};

// The model owes nothing to the machine's mathematics, so what a seed names may be kept as numbers.
// Whoever changes the model changes the drive, and this table with it: a failure prints the rows.
TEST(SimulatedHour, OfSeedOneIsTheSameOnEveryMachineAndInEveryVersion) {
  constexpr MetricOfTheHour kEmpty{"", 0, 0xcbf29ce484222325};
  std::map<std::int64_t, MetricOfTheHour> told;
  const auto take = [](MetricOfTheHour& row, std::uint8_t byte) {
    row.digest = (row.digest ^ byte) * 0x100000001b3;
  };
  for (const LoggedMetric& metric : hourOfDrive()) {
    MetricOfTheHour& row = told.try_emplace(metric.id, kEmpty).first->second;
    ++row.count;
    for (int shift = 0; shift < 64; shift += 8)
      take(row, static_cast<std::uint8_t>(metric.t >> shift));
    for (const std::uint8_t byte : metric.payload->bytes()) take(row, byte);
  }
  std::string rows;
  for (const MetricID& metric : kMetricIDs) {
    if (!told.contains(metric.id)) continue;
    const MetricOfTheHour& row = told.at(metric.id);
    const auto* kept = std::ranges::find(kHourOfSeedOne, metric.name, &MetricOfTheHour::name);
    EXPECT_TRUE(kept != std::end(kHourOfSeedOne) && kept->count == row.count &&
                kept->digest == row.digest)
        << metric.name;
    std::ostringstream line;
    line << "    {\"" << metric.name << "\", " << row.count << ", 0x" << std::hex << row.digest
         << "},\n";
    rows += line.str();
  }
  EXPECT_EQ(told.size(), std::size(kHourOfSeedOne));
  if (HasFailure()) ADD_FAILURE() << "the drive is now:\n" << rows;
}

TEST(SimulatedHour, IsTheSameToTheByteWhenDrivenTwice) {
  const auto& first = hourOfDrive();
  SimulatorSource again(1, Milliseconds(kDriveStart), Milliseconds(kUptimeStart));
  std::size_t next = 0;
  bool isSame = true;
  again.advanceTo(Milliseconds(kUptimeStart + kHour),
                  [&](std::int64_t id, const Ref<Data>& payload) {
                    isSame = isSame && next < first.size() && first[next].id == id &&
                             first[next].payload->isEqual(*payload);
                    ++next;
                  });
  EXPECT_TRUE(isSame);
  EXPECT_EQ(next, first.size());
}

TEST(SimulatedHour, StampsEveryMetricWithItsTimeInAscendingOrder) {
  std::int64_t last = 0;
  for (const LoggedMetric& metric : hourOfDrive()) {
    EXPECT_GE(metric.t, last);
    last = metric.t;
    Dictionary store;
    ASSERT_TRUE(metricCase(metric.id)->message->decode(metric.payload->bytes(), store));
    const Value* stamp = store.find("timestamp");
    ASSERT_TRUE(stamp);
    EXPECT_EQ(printed(*stamp), std::to_string(kDriveStart + metric.t));
  }
}

// (a)
TEST(SimulatedHour, RsrqIsBandwidthTimesRsrpOverRssiOnEveryCarrier) {
  std::map<std::uint32_t, std::uint32_t> codes;  // of the carriers by index
  std::size_t checked = 0;
  const auto check = [&](std::uint32_t code, const auto& levels) {
    const double expected = 1000 * std::log10(kBlocksOfCode[code]) + levels.rsrp() - levels.rssi();
    EXPECT_NEAR(levels.rsrq(), expected, 1.6);  // three roundings to a hundredth
    ++checked;
  };
  for (const LoggedMetric& metric : hourOfDrive()) {
    if (metric.id == K_LTE_CA_STATUS) {
      const auto status = decodedAs<KCellularLteCarrierAggregationStatus>(metric.payload);
      codes.clear();
      for (std::size_t i = 0; i < status->sccListsCount(); ++i) {
        const auto row = status->sccListAtIndex(i);
        if (!row->hasDlBandwidth()) continue;
        codes[row->index()] = row->dlBandwidth();
        check(row->dlBandwidth(), *row);
      }
    } else if (metric.id == K_LTE_SECONDARYCELL_MEAS) {
      const auto measured = decodedAs<KCellularLteSecondaryCellMeasurements>(metric.payload);
      for (std::size_t i = 0; i < measured->sccRxMeasurementsCount(); ++i) {
        const auto row = measured->sccRxMeasurementAtIndex(i);
        ASSERT_TRUE(codes.contains(row->index()));
        check(codes[row->index()], *row);
      }
    }
  }
  EXPECT_GT(checked, 300u);
}

// (c) With RSRQ r and SINR s as ratios, 1 / r = 2 + 10 load + 12 / s, the load being the cell's
// own.
TEST(SimulatedHour, SinrAndRsrqTellTheSameStory) {
  std::size_t checked = 0;
  const auto linear = [](double level) { return std::pow(10, level / 10); };
  for (const LoggedMetric& metric : hourOfDrive()) {
    if (metric.id != K_LTE_RSRP_RSRQ_SINR) continue;
    const auto message = decodedAs<KCellularLteRsrpRsrqSinr>(metric.payload);
    const auto now = message->instValuesAtIndex(0);
    const double sinr = now->sinr0() * 0.5;
    const double best = -10 * std::log10(2 + 12 / linear(sinr));
    const double worst = -10 * std::log10(12 + 12 / linear(sinr));
    EXPECT_LE(now->rsrq0(), best + 2);
    EXPECT_GE(now->rsrq0(), worst - 2);
    EXPECT_LE(now->rsrp1(), now->rsrp0());
    EXPECT_LE(now->rsrq1(), now->rsrq0());
    EXPECT_LE(now->sinr1(), now->sinr0());
    EXPECT_EQ(message->numSamples() * message->samplePeriodMs(), message->durationMs());
    ++checked;
  }
  EXPECT_GT(checked, 1000u);
}

// Least squares of power over path loss.
struct Slope {
  double n = 0, x = 0, y = 0, xx = 0, xy = 0;
  void add(double pathLoss, double power) {
    n += 1;
    x += pathLoss;
    y += power;
    xx += pathLoss * pathLoss;
    xy += pathLoss * power;
  }
  [[nodiscard]] double value() const { return (n * xy - x * y) / (n * xx - x * x); }
};

// (d)
TEST(SimulatedHour, TransmitPowerFollowsPathLossUpToItsLimitAndThereIsNoneInIdle) {
  Slope pusch;
  Slope pucch;
  walk(hourOfDrive(), [&](const LoggedMetric& metric, const Picture& before) {
    if (metric.id != K_LTE_TX_POWER) return;
    EXPECT_EQ(before.lteState(), kConnected);
    const auto message = decodedAs<KCellularLteTxPower>(metric.payload);
    const auto quality = before.latest<KCellularLteRsrpRsrqSinr>(K_LTE_RSRP_RSRQ_SINR);
    if (quality->timestamp() + 400 < message->timestamp() ||
        quality->instValuesAtIndex(0)->phyCellId() != before.lteCell()->phyCellId())
      return;
    const double pathLoss = carrierOf(before.lteCell()->dlFreq()).referencePower -
                            quality->instValuesAtIndex(0)->rsrp0();
    for (std::size_t i = 0; i < message->txPowerInfosCount(); ++i) {
      const auto row = message->txPowerInfoAtIndex(i);
      EXPECT_LE(row->pucchTxPower(), simulator::kLtePcmax);
      EXPECT_LE(row->puschTxPower(), simulator::kLtePcmax);
      if (row->pucchTxPower() < 23) pucch.add(pathLoss, row->pucchTxPower());
      if (!row->hasPuschTxPower() || row->puschTxPower() == 23) continue;
      pusch.add(pathLoss, row->puschTxPower());
      const double most = simulator::puschPower(100, pathLoss + 2, 4);
      const double least = simulator::puschPower(1, pathLoss - 2, -4);
      EXPECT_LE(row->puschTxPower(), most + 1);
      EXPECT_GE(row->puschTxPower(), least - 1);
    }
  });
  EXPECT_GT(pusch.n, 200);
  // M and f change beside the path loss: the slope is seen through their noise.
  EXPECT_NEAR(pusch.value(), simulator::kAlpha, 0.3);
  EXPECT_NEAR(pucch.value(), 1, 0.15);
}

// (i)
TEST(SimulatedHour, AllPagesShowTheSameServingCell) {
  std::map<std::pair<std::uint32_t, std::uint32_t>, std::uint32_t> identities;
  std::size_t checked = 0;
  walkMoments(hourOfDrive(), [&](std::int64_t t, const Picture& picture) {
    if (!isOnLte(picture)) return;
    const auto cell = picture.lteCell();
    const simulator::Carrier& carrier = carrierOf(cell->dlFreq());
    EXPECT_EQ(cell->freqBandInd(), carrier.band);
    EXPECT_EQ(cell->ulFreq(), cell->dlFreq() + 18000);
    EXPECT_EQ(cell->dlBw(), 2 * carrier.bandwidthMHz);
    EXPECT_EQ(
        identities.try_emplace({cell->dlFreq(), cell->phyCellId()}, cell->cellId()).first->second,
        cell->cellId());
    const auto components = picture.latest<KCellularLteComponentCarrierInfo>(K_LTE_COMPCARR_INFO);
    EXPECT_EQ(components->pccEarfcn(), cell->dlFreq());
    EXPECT_EQ(2 * components->pccBandwidth(), cell->dlBw());
    const auto broadcast = picture.latest<KCellularLteSelReselCellInfo>(K_LTE_SEL_RESEL_INFO);
    EXPECT_EQ(broadcast->multiBandInfoAtIndex(0), cell->freqBandInd());
    for (std::size_t i = 0; i < broadcast->nbrEutrasCount(); ++i) {
      EXPECT_NE(broadcast->nbrEutraAtIndex(i)->earfcn(), cell->dlFreq());
      EXPECT_EQ(broadcast->nbrEutraAtIndex(i)->band(),
                carrierOf(broadcast->nbrEutraAtIndex(i)->earfcn()).band);
    }
    const auto quality = picture.latest<KCellularLteRsrpRsrqSinr>(K_LTE_RSRP_RSRQ_SINR);
    if (quality->timestamp() != static_cast<std::uint64_t>(kDriveStart + t)) return;
    EXPECT_EQ(quality->instValuesAtIndex(0)->phyCellId(), cell->phyCellId());
    EXPECT_EQ(quality->avgValues()->phyCellId(), cell->phyCellId());
    ++checked;
  });
  EXPECT_GT(checked, 1000u);
}

// (i)
TEST(SimulatedHour, NoNeighbourIsTheServingCell) {
  std::size_t checked = 0;
  walkMoments(hourOfDrive(), [&](std::int64_t, const Picture& picture) {
    if (!isOnLte(picture) || !picture.has(K_LTE_INTRARAT_MEAS)) return;
    const auto list = picture.latest<KCellularLteNbrEutraCellMeas>(K_LTE_INTRARAT_MEAS);
    const auto cell = picture.lteCell();
    if (list->timestamp() < cell->timestamp()) return;
    for (std::size_t i = 0; i < list->measNbrEutrasCount(); ++i, ++checked) {
      const auto row = list->measNbrEutraAtIndex(i);
      EXPECT_FALSE(row->nbrEarfcn() == cell->dlFreq() && row->nbrPhysCellId() == cell->phyCellId());
      EXPECT_EQ(row->freqBandInd(), carrierOf(row->nbrEarfcn()).band);
    }
  });
  EXPECT_GT(checked, 1000u);
}

}  // namespace
}  // namespace quorin::test
