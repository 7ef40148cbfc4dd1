#include "basebandd/modem/ReportQueue.h"

#include "metrics/registry/metric_ids.h"
#include "tests/support/rig.h"

namespace quorin::test {
namespace {

using namespace modem;
using modem::Reading;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

struct Rig {
  Rig() {
    readings.modem = {{"AccessTechnologies", {std::int64_t{1 << 14}}}};
    readings.network = {{"RegistrationState", {std::int64_t{1}}}};
  }
  std::vector<std::int64_t> take() {
    std::vector<std::int64_t> given;
    while (!queue.isEmpty())
      queue.give([&](std::int64_t id, const Ref<Data>& /*payload*/) { given.push_back(id); });
    return given;
  }
  void level(double dBm) { readings.signal["Lte"] = {Readings{{"rsrp", {dBm}}}}; }

  VirtualClock clock;
  ReportQueue queue;
  ModemReadings readings;
};

TEST(ReportQueue, GivesAMeasurementAtEachRefreshAndAStateWhenItChanges) {
  Rig rig;
  rig.level(-90);
  rig.queue.refresh(rig.readings, kSignalGroup | kNetworkGroup);
  EXPECT_THAT(rig.take(), UnorderedElementsAre(K_LTE_RSRP_RSRQ_SINR, K_LTE_EMM_CTXT));
  rig.queue.refresh(rig.readings, kSignalGroup | kNetworkGroup);
  EXPECT_THAT(rig.take(), ElementsAre(K_LTE_RSRP_RSRQ_SINR)) << "the same level, measured again";
  rig.readings.network["RegistrationState"] = {std::int64_t{3}};
  rig.queue.refresh(rig.readings, kNetworkGroup);
  EXPECT_THAT(rig.take(), ElementsAre(K_LTE_EMM_CTXT));
}

TEST(ReportQueue, GivesALevelAgainUnderItsNewCell) {
  Rig rig;
  rig.level(-90);
  rig.queue.refresh(rig.readings, kSignalGroup);
  (void)rig.take();
  rig.readings.cells = {{{"cell-type", {std::int64_t{5}}},
                         {"serving", {true}},
                         {"physical-ci", {std::string("21")}}}};
  rig.queue.refresh(rig.readings, kCellGroup);
  EXPECT_THAT(rig.take(), ::testing::Contains(K_LTE_RSRP_RSRQ_SINR));
  rig.queue.refresh(rig.readings, kCellGroup);
  EXPECT_THAT(rig.take(), ::testing::Not(::testing::Contains(K_LTE_RSRP_RSRQ_SINR)));
}

TEST(ReportQueue, SendsNothingAgainThatWasNotRefreshed) {
  Rig rig;
  rig.level(-90);
  rig.queue.refresh(rig.readings, kSignalGroup);
  (void)rig.take();
  for (int i = 0; i < 100; ++i) rig.queue.refresh(rig.readings, 0);
  EXPECT_THAT(rig.take(), IsEmpty());
}

TEST(ReportQueue, TellsLiveFromStaleFromNeverOffered) {
  Rig rig;
  rig.level(-90);
  rig.queue.refresh(rig.readings, kSignalGroup);
  rig.clock.advance(Milliseconds{3000});
  EXPECT_EQ(rig.queue.standing(K_LTE_RSRP_RSRQ_SINR).state, Standing::live);
  EXPECT_EQ(rig.queue.standing(K_LTE_RSRP_RSRQ_SINR).age, Milliseconds{3000});
  EXPECT_EQ(rig.queue.standing(K_UMTS_SCELL_MEAS).state, Standing::notOffered);
  rig.readings.signal.clear();
  rig.queue.refresh(rig.readings, 0);
  rig.clock.advance(Milliseconds{2000});
  EXPECT_EQ(rig.queue.standing(K_LTE_RSRP_RSRQ_SINR).state, Standing::stale);
  EXPECT_EQ(rig.queue.standing(K_LTE_RSRP_RSRQ_SINR).age, Milliseconds{2000});
}

TEST(ReportQueue, GivesWhatComesBackAsNew) {
  Rig rig;
  rig.level(-90);
  rig.queue.refresh(rig.readings, kSignalGroup);
  rig.queue.refresh({}, 0);
  (void)rig.take();
  rig.queue.refresh(rig.readings, 0);
  EXPECT_THAT(rig.take(), UnorderedElementsAre(K_LTE_RSRP_RSRQ_SINR, K_LTE_EMM_CTXT));
}

TEST(ReportQueue, HoldsTheNewestOfEachMetricOnly) {
  Rig rig;
  for (int dBm = -120; dBm < -60; ++dBm) {
    rig.level(dBm);
    rig.queue.refresh(rig.readings, kSignalGroup);
  }
  std::vector<std::string> payloads;
  while (!rig.queue.isEmpty())
    rig.queue.give([&](std::int64_t id, const Ref<Data>& payload) {
      if (id == K_LTE_RSRP_RSRQ_SINR) payloads.push_back(hexText(payload->bytes()));
    });
  // Time 0; one entry with rsrp0, field 4, -61 in zigzag: 121.
  EXPECT_THAT(payloads, ElementsAre("08007a022079"));
}

TEST(ReportQueue, MeasuresAnotherModemAnew) {
  Rig rig;
  rig.level(-90);
  rig.queue.refresh(rig.readings, kSignalGroup);
  (void)rig.take();
  rig.queue.start();
  EXPECT_EQ(rig.queue.standing(K_LTE_EMM_CTXT).state, Standing::stale);
  rig.queue.refresh(rig.readings, 0);
  EXPECT_THAT(rig.take(), UnorderedElementsAre(K_LTE_RSRP_RSRQ_SINR, K_LTE_EMM_CTXT));
}

}  // namespace
}  // namespace quorin::test
