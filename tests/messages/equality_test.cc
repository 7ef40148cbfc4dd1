#include "messages/catalogue.h"
#include "messages/gsm/KCellularGsmCsRfMeasurement.h"
#include "messages/lte/EgwErrcNbrGeranMeas.h"
#include "messages/lte/KCellularLteCarrierAggregationStatus.h"
#include "messages/lte/KCellularLteRrcState.h"
#include "messages/lte/KCellularLteRsrpRsrqSinr.h"
#include "messages/nas/KCellularEmmContext.h"
#include "messages/nas/KCellularMmCommonInfo.h"
#include "messages/shared/TxPowerInfo.h"
#include "messages/umts/GsmCellMeasResult.h"
#include "messages/umts/KCellularWcdmaRrcConfiguration.h"
#include "tests/support/rig.h"

namespace quorin::test {
namespace {

constexpr std::uint64_t kSpread = 0x9E3779B1;

TEST(IsEqual, WantsThePresenceBitsAndTheValues) {
  KCellularLteRrcState a;
  KCellularLteRrcState b;
  EXPECT_TRUE(a.isEqual(b));
  a.setState(0);
  EXPECT_FALSE(a.isEqual(b)) << "equal values, different presence";
  b.setState(0);
  EXPECT_TRUE(a.isEqual(b));
  b.setState(1);
  EXPECT_FALSE(a.isEqual(b));
  a.setHasState(false);
  b.setHasState(false);
  EXPECT_TRUE(a.isEqual(b)) << "the values of absent fields do not count";
}

TEST(IsEqual, HoldsOnlyWithinExactlyOneClass) {
  EgwErrcNbrGeranMeas fromLte;
  GsmCellMeasResult fromUmts;
  fromLte.setArfcn(1);
  fromUmts.setArfcn(1);
  EXPECT_EQ(fromLte.dictionaryRepresentation(), fromUmts.dictionaryRepresentation());
  EXPECT_FALSE(fromLte.isEqual(fromUmts));
  EXPECT_FALSE(fromLte.isEqual(*data("01")));
}

TEST(IsEqual, ComparesObjectsByContent) {
  KCellularMmCommonInfo a;
  KCellularMmCommonInfo b;
  a.setImsi(data("01"));
  EXPECT_FALSE(a.isEqual(b));
  b.setImsi(data("01"));
  EXPECT_TRUE(a.isEqual(b));
  b.setImsi(data("02"));
  EXPECT_FALSE(a.isEqual(b));

  KCellularLteRsrpRsrqSinr c;
  KCellularLteRsrpRsrqSinr d;
  c.setCallId(make<String>("id"));
  d.setCallId(make<String>("id"));
  EXPECT_TRUE(c.isEqual(d));
  d.setCallId(make<String>("ID"));
  EXPECT_FALSE(c.isEqual(d));

  KCellularEmmContext e;
  KCellularEmmContext f;
  e.setGuti(make<Guti>());
  EXPECT_FALSE(e.isEqual(f));
  f.setGuti(make<Guti>());
  EXPECT_TRUE(e.isEqual(f));
  f.guti()->setMmec(1);
  EXPECT_FALSE(e.isEqual(f));
}

TEST(IsEqual, ComparesArraysElementByElementAndNullIsNotEmpty) {
  KCellularLteCarrierAggregationStatus a;
  KCellularLteCarrierAggregationStatus b;
  a.addSccList(make<SecondaryComponentCarrier>());
  EXPECT_FALSE(a.isEqual(b));
  b.addSccList(make<SecondaryComponentCarrier>());
  EXPECT_TRUE(a.isEqual(b));
  b.sccListAtIndex(0)->setPci(1);
  EXPECT_FALSE(a.isEqual(b));
  a.clearSccLists();
  EXPECT_FALSE(a.isEqual(KCellularLteCarrierAggregationStatus()));
}

TEST(IsEqual, ComparesPackedNumbers) {
  KCellularGsmCsRfMeasurement a;
  KCellularGsmCsRfMeasurement b;
  a.addCsTxPwr(1);
  EXPECT_FALSE(a.isEqual(b));
  b.addCsTxPwr(1);
  EXPECT_TRUE(a.isEqual(b));
  EXPECT_EQ(a.hash(), b.hash());
  a.clearCsTxPwrs();
  b.clearCsTxPwrs();
  EXPECT_TRUE(a.isEqual(KCellularGsmCsRfMeasurement()));
}

TEST(Hash, OfScalarsIsTheirWidenedValueTimesTheSpread) {
  KCellularLteRrcState state;
  EXPECT_EQ(state.hash(), 0U);
  state.setTimestamp(0xFFFFFFFFFFFFFFFF);
  EXPECT_EQ(state.hash(), 0xFFFFFFFFFFFFFFFF * kSpread);
  state.setHasTimestamp(false);
  EXPECT_EQ(state.hash(), 0U) << "an absent scalar gives 0";
  state.setState(-1);
  EXPECT_EQ(state.hash(), 0xFFFFFFFFFFFFFFFF * kSpread) << "sign-extended";
  state.setHasState(false);
  state.setPrevStateDurMs(0xFFFFFFFF);
  EXPECT_EQ(state.hash(), 0xFFFFFFFFU * kSpread) << "zero-extended";
  TxPowerInfo power;
  power.setPucchTxPower(-2);
  EXPECT_EQ(power.hash(), 0xFFFFFFFFFFFFFFFE * kSpread) << "sign-extended";
  KCellularWcdmaRrcConfiguration configuration;
  configuration.setIsDcConfigured(true);
  EXPECT_EQ(configuration.hash(), kSpread);
}

TEST(Hash, IsTheXorOverTheFields) {
  KCellularLteRrcState state;
  state.setTimestamp(5);
  state.setCause(7);
  EXPECT_EQ(state.hash(), (5 * kSpread) ^ (7 * kSpread));
  state.setTimestamp(7);
  EXPECT_EQ(state.hash(), 0U);
}

TEST(Hash, OfObjectsIsTheirOwn) {
  KCellularMmCommonInfo info;
  info.setImsi(data("01 02"));
  EXPECT_EQ(info.hash(), info.imsi()->hash());
  KCellularLteRsrpRsrqSinr quality;
  quality.setCallId(make<String>("id"));
  EXPECT_EQ(quality.hash(), quality.callId()->hash());
  KCellularEmmContext context;
  context.setGuti(make<Guti>());
  context.guti()->setMmec(5);
  EXPECT_EQ(context.hash(), 5 * kSpread);
  KCellularLteCarrierAggregationStatus status;
  status.addSccList(make<SecondaryComponentCarrier>());
  EXPECT_EQ(status.hash(), status.sccLists()->hash());
  KCellularGsmCsRfMeasurement powers;
  powers.addCsTxPwr(1);
  PBRepeatedInt32 numbers{{1}};
  EXPECT_EQ(powers.hash(), PBRepeatedInt32Hash(numbers));
  EXPECT_NE(powers.hash(), 0U);
}

}  // namespace
}  // namespace quorin::test
