#include "basebandd/SimulatorSource.h"

#include <cmath>
#include <numbers>
#include <set>

#include "basebandd/levels.h"
#include "basebandd/simulator/Shadowing.h"
#include "basebandd/simulator/arithmetic.h"
#include "basebandd/simulator/link.h"
#include "basebandd/simulator/propagation.h"
#include "tests/basebandd/drive_log.h"

namespace quorin::test {
namespace {

using namespace simulator;

TEST(SimulatorArithmetic, AgreesWithTheMathematicsLibrary) {
  for (double x = -20; x < 20; x += 0.0137) {
    EXPECT_NEAR(cosine(x), std::cos(2 * std::numbers::pi * x), 1e-11);
    EXPECT_NEAR(exponential(x) / std::exp(x), 1, 1e-13);
    EXPECT_NEAR(decibels(power(x)), x, 1e-12);
  }
  for (double x = -1; x <= 1; x += 0.001)
    EXPECT_NEAR(degreesOfCosine(x), std::acos(x) * 180 / std::numbers::pi, 0.01);
}

TEST(SimulatorArithmetic, RoundsToTheNearestAndIndexesAsTheReportsDo) {
  EXPECT_EQ(rounded(-100.5), -101);
  EXPECT_EQ(rounded(-100.4), -100);
  EXPECT_EQ(rounded(2.5), 3);
  constexpr struct {
    double level;
    double lowest;
    double step;
    std::uint32_t last;
    std::uint32_t index;
  } kRows[] = {
      {-140.1, -140, 1, 97, 0}, {-140, -140, 1, 97, 1},   {-139.1, -140, 1, 97, 1},
      {-44, -140, 1, 97, 97},   {-20, -140, 1, 97, 97},   {-19.4, -19.5, 0.5, 34, 1},
      {-3, -19.5, 0.5, 34, 34}, {-110.5, -110, 1, 63, 0}, {-47.5, -110, 1, 63, 63},
  };
  for (const auto& row : kRows)
    EXPECT_EQ(reportIndex(row.level, row.lowest, row.step, row.last), row.index) << row.level;
}

TEST(SimulatorRandom, GivesTheSameNumbersEverywhere) {
  Random random(1, 1);
  EXPECT_EQ(random.next(), 12793040940332582595u);
  EXPECT_EQ(random.next(), 17925934194126948328u);
  EXPECT_NE(Random(1, 2).next(), Random(1, 1).next());
  EXPECT_NE(Random(2, 1).next(), Random(1, 1).next());
}

TEST(SimulatorPropagation, LosesWhatTheUrbanModelLoses) {
  // TR 36.942 4.5.2: 128.1 + 37.6 log10(R) at 2 GHz, 120.9 + 37.6 log10(R) at 900 MHz.
  EXPECT_NEAR(pathLoss(1000, 2000), 128.1, 0.1);
  EXPECT_NEAR(pathLoss(500, 2000), 128.1 - 11.3, 0.1);
  EXPECT_NEAR(pathLoss(1000, 900), 120.9, 0.2);
  EXPECT_EQ(pathLoss(1, 900), pathLoss(35, 900));
  EXPECT_EQ(antennaPattern(0), 0);
  EXPECT_NEAR(antennaPattern(32.5), -3, 0.01);
  EXPECT_EQ(antennaPattern(180), -20);
}

TEST(SimulatorShadowing, DeviatesBySixToTenDecibelsAndDecorrelatesWithinThirtyToAHundredMetres) {
  double sum = 0;
  double squares = 0;
  std::map<double, double> products;
  std::size_t count = 0;
  constexpr double kDistances[] = {30, 100};
  for (std::uint64_t seed = 1; seed <= 40; ++seed) {
    const Shadowing shadowing(seed);
    for (int i = 0; i < 40; ++i) {
      const Point here{-2000.0 + 97 * i, 300.0 - 61 * i};
      const std::vector<double> values = shadowing.at(here);
      for (const double value : values) {
        sum += value;
        squares += value * value;
        ++count;
      }
      for (const double metres : kDistances) {
        const std::vector<double> there = shadowing.at({here.x + metres, here.y});
        for (std::size_t site = 0; site < values.size(); ++site)
          products[metres] += values[site] * there[site];
      }
    }
  }
  const double mean = sum / static_cast<double>(count);
  const double variance = squares / static_cast<double>(count) - mean * mean;
  EXPECT_NEAR(mean, 0, 1);
  EXPECT_GE(std::sqrt(variance), 6);
  EXPECT_LE(std::sqrt(variance), 10);
  const auto correlation = [&](double metres) {
    return products[metres] / static_cast<double>(count) / variance;
  };
  EXPECT_GT(correlation(30), 1 / std::numbers::e);
  EXPECT_LT(correlation(100), 1 / std::numbers::e);
}

TEST(SimulatorLink, DoublingTheResourceBlocksAtEqualLoadAndRsrpAddsThreeDecibelsOfRssi) {
  const LteSignal cells[] = {{-95, 0.4}, {-101, 0.7}};
  const double element = powerPerElement(cells);
  for (const std::uint32_t blocks : {25u, 50u})
    EXPECT_NEAR(rssi(element, 2 * blocks) - rssi(element, blocks), 3.01, 0.01);
  EXPECT_NEAR(rsrq(-95, rssi(element, 100), 100), rsrq(-95, rssi(element, 50), 50), 1e-9);
}

TEST(SimulatorLink, ANeighboursLoadLowersSinrAndRsrqAndNeverRsrp) {
  double lastSinr = 1000;
  double lastRsrq = 1000;
  for (double load = 0; load <= 1; load += 0.1) {
    const LteSignal cells[] = {{-95, 0.3}, {-99, load}};
    const double element = powerPerElement(cells);
    EXPECT_LT(sinr(cells[0], element), lastSinr);
    EXPECT_LT(rsrq(cells[0].rsrp, rssi(element, 50), 50), lastRsrq);
    lastSinr = sinr(cells[0], element);
    lastRsrq = rsrq(cells[0].rsrp, rssi(element, 50), 50);
  }
}

TEST(SimulatorLink, KnowsTheLimitsOfRsrqAndSinr) {
  const LteSignal empty{-60, 0};
  const LteSignal full{-60, 1};
  EXPECT_NEAR(rsrq(-60, rssi(powerPerElement({&empty, 1}), 50), 50), -3, 0.02);
  EXPECT_NEAR(rsrq(-60, rssi(powerPerElement({&full, 1}), 50), 50), -10.8, 0.02);
  EXPECT_NEAR(sinr(full, powerPerElement({&full, 1})), -60 - kNoisePerElement, 1e-6);
  const Branch main{-100, -9, 8};
  const Branch weaker = weakerBranch(main, 3);
  EXPECT_EQ(weaker.rsrp, -103);
  EXPECT_LT(weaker.rsrq, main.rsrq);
  EXPECT_LT(weaker.sinr, main.sinr);
  EXPECT_NEAR(weakerBranch(main, 0).sinr, main.sinr, 1e-9);
}

TEST(SimulatorUplink, PuschPowerIsTheOpenLoopUpToItsLimit) {
  EXPECT_NEAR(puschPower(10, 100, 0), 10 + kP0Pusch + 80, 1e-9);
  EXPECT_NEAR(puschPower(20, 100, 0) - puschPower(10, 100, 0), 3.01, 0.01);
  EXPECT_NEAR(puschPower(10, 110, 0) - puschPower(10, 100, 0), 10 * kAlpha, 1e-9);
  EXPECT_NEAR(puschPower(10, 100, 2) - puschPower(10, 100, 0), 2, 1e-9);
  EXPECT_EQ(puschPower(100, 150, 0), kLtePcmax);
  EXPECT_EQ(pucchPower(160, 0), kLtePcmax);
  EXPECT_EQ(dpcchPower(160, 0), kUmtsPmax);
  EXPECT_EQ(gsmPower(-100), 33);
  EXPECT_EQ(gsmPower(-65), 23);
  EXPECT_EQ(gsmPower(-20), 5);
}

TEST(SimulatorTown, NoTwoCellsOfAChannelShareTheirCodeAndNoTwoCellsTheirIdentity) {
  std::set<std::tuple<Technology, std::uint32_t, std::uint32_t>> codes;
  std::set<std::pair<Technology, std::uint32_t>> identities;
  for (const simulator::Cell& cell : cells()) {
    EXPECT_TRUE(codes.emplace(cell.technology(), cell.channel, cell.code).second) << cell.code;
    EXPECT_TRUE(identities.emplace(cell.technology(), cell.cellID).second) << cell.cellID;
  }
}

std::vector<std::pair<std::int64_t, std::string>> driven(std::uint64_t seed, Milliseconds step) {
  SimulatorSource source(seed, Milliseconds(kDriveStart), Milliseconds(kUptimeStart));
  std::vector<std::pair<std::int64_t, std::string>> all;
  const Milliseconds end(kUptimeStart + 300'000);
  for (Milliseconds now(kUptimeStart); now <= end; now += step)
    source.advanceTo(now, [&](std::int64_t id, const Ref<Data>& payload) {
      all.emplace_back(id, hexText(payload->bytes()));
    });
  return all;
}

TEST(SimulatorSource, IsTheSameDriveToTheByteForTheSameSeedAndTimes) {
  const auto first = driven(7, Milliseconds(300'000));
  EXPECT_GT(first.size(), 1000u);
  EXPECT_EQ(first, driven(7, Milliseconds(300'000)));
  EXPECT_NE(first, driven(8, Milliseconds(300'000)));
}

// The model owes nothing to the machine's mathematics. Whoever changes the model changes the drives.
TEST(SimulatorSource, DrivesTheSameOnEveryMachineAndInEveryVersion) {
  const std::pair<std::uint64_t, std::uint64_t> rows[] = {
      {1, 707237843561884621}, {2, 7081415340100055792}};
  for (const auto& [seed, digest] : rows) {
    std::uint64_t driving = 0xcbf29ce484222325;  // FNV-1a
    for (const auto& [id, payload] : driven(seed, Milliseconds(300'000)))
      for (const char c : std::to_string(id) + payload)
        driving = (driving ^ static_cast<std::uint8_t>(c)) * 0x100000001b3;
    EXPECT_EQ(driving, digest) << "seed " << seed;
  }
}

TEST(SimulatorSource, GivesTheSameHoweverOftenItIsAsked) {
  EXPECT_EQ(driven(3, Milliseconds(300'000)), driven(3, Milliseconds(1000)));
}

TEST(SimulatorSource, HasSomethingToGiveAtTheTimeItSaysAndNothingBefore) {
  SimulatorSource source(1, Milliseconds(kDriveStart), Milliseconds(kUptimeStart));
  for (int i = 0; i < 2000; ++i) {
    const Milliseconds next = *source.next();
    source.advanceTo(next - Milliseconds(1),
                     [](std::int64_t, const Ref<Data>&) { ADD_FAILURE() << "too early"; });
    int given = 0;
    source.advanceTo(next, [&](std::int64_t, const Ref<Data>&) { ++given; });
    ASSERT_GT(given, 0);
    ASSERT_GT(*source.next(), next);
  }
}

TEST(SimulatorSource, SaysWhatItIsAndHowItStands) {
  SimulatorSource source(42, Milliseconds(kDriveStart), Milliseconds(kUptimeStart));
  EXPECT_EQ(source.description(), "simulated drive, seed 42, 0 s under way, searching");
  for (const auto& [milliseconds, seconds] : {std::pair{1000, "1"}, {300000, "300"}}) {
    source.advanceTo(Milliseconds(kUptimeStart + milliseconds),
                     [](std::int64_t, const Ref<Data>&) {});
    EXPECT_THAT(source.description(), ::testing::StartsWith("simulated drive, seed 42, " +
                                                            std::string(seconds) + " s under way"));
  }
}

}  // namespace
}  // namespace quorin::test
