#include "messages/gsm/KCellularGsmCsRfMeasurement.h"
#include "messages/gsm/KCellularGsmIdleConfig.h"
#include "messages/lte/KCellularLteCarrierAggregationStatus.h"
#include "messages/lte/KCellularLteRrcState.h"
#include "messages/lte/KCellularLteRsrpRsrqSinr.h"
#include "messages/lte/KCellularLteSelReselCellInfo.h"
#include "messages/nas/KCellularEmmContext.h"
#include "messages/nas/KCellularMmCommonInfo.h"
#include "messages/shared/TxPowerInfo.h"
#include "messages/umts/KCellularWcdmaRrcConfiguration.h"
#include "tests/support/rig.h"

namespace quorin::test {
namespace {

std::string written(const PBCodable& message) {
  PBDataWriter writer;
  message.writeTo(writer);
  return hexText(writer.bytes());
}

TEST(Write, WritesNothingForAbsentFields) {
  KCellularLteRrcState message;
  EXPECT_EQ(written(message), "");
  message.setState(3);
  message.setHasState(false);
  EXPECT_EQ(written(message), "");
}

TEST(Write, WritesAPresentZero) {
  KCellularLteRrcState message;
  message.setState(0);
  message.setTimestamp(0);
  EXPECT_EQ(written(message), "08001000");
}

TEST(Write, WritesFieldsAscendingByNumberWhateverTheOrderOfSetting) {
  KCellularLteRrcState message;
  message.setCause(7);
  message.setPrevStateDurMs(300);
  message.setTimestamp(1);
  EXPECT_EQ(written(message), "080120ac022807");
}

TEST(Write, WritesANegativeEnumerationInTenBytes) {
  KCellularLteRrcState message;
  message.setState(-1);
  EXPECT_EQ(written(message), "10ffffffffffffffffff01");
}

TEST(Write, WritesScalarsAtTheirLimits) {
  KCellularLteRrcState state;
  state.setTimestamp(18446744073709551615U);
  state.setPrevStateDurMs(4294967295U);
  EXPECT_EQ(written(state), "08ffffffffffffffffff0120ffffffff0f");
  TxPowerInfo power;
  power.setPucchTxPower(std::numeric_limits<std::int32_t>::min());
  power.setPuschTxPower(std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(written(power), "08ffffffff0f10feffffff0f");
}

TEST(Write, WritesBooleansAsOneOrZero) {
  KCellularWcdmaRrcConfiguration message;
  message.setIsMimoConfigured(true);
  message.setIsDcConfigured(false);
  EXPECT_EQ(written(message), "18012000");
}

TEST(Write, WritesPackedNumbersBareBehindOneLength) {
  KCellularLteSelReselCellInfo bands;
  bands.addMultiBandInfo(1);
  bands.addMultiBandInfo(300);
  EXPECT_EQ(written(bands), "120301ac02");
  KCellularGsmCsRfMeasurement powers;
  powers.addCsTxPwr(-1);
  powers.addCsTxPwr(1);
  EXPECT_EQ(written(powers), "2a020102");
  powers.clearCsTxPwrs();
  EXPECT_EQ(written(powers), "");
}

TEST(Write, WritesBytesTextAndNestedMessagesThatAreNotNull) {
  KCellularMmCommonInfo info;
  info.setImsi(data(""));
  info.addEplmnList(make<Plmn>());
  info.addEplmnList(make<Plmn>());
  info.eplmnListAtIndex(1)->setEncodedPlmn(data("62 f2 20"));
  EXPECT_EQ(written(info), "12001a001a050a0362f220");
  KCellularLteRsrpRsrqSinr quality;
  quality.setCallId(make<String>("id"));
  quality.setAvgValues(make<RsrpRsrqSinr>());
  EXPECT_EQ(written(quality), "1a0269647200");
}

TEST(Write, LengthsOfManyBytesStandBeforeTheirContent) {
  KCellularMmCommonInfo info;
  info.setImsi(make<Data>(std::vector<std::uint8_t>(300, 0xaa)));
  const std::string hex = written(info);
  EXPECT_EQ(hex.substr(0, 6), "12ac02");
  EXPECT_EQ(hex.size(), 2U * (3 + 300));
  KCellularLteCarrierAggregationStatus status;
  const auto carrier = make<SecondaryComponentCarrier>();
  carrier->setPci(1);
  for (int i = 0; i < 100; ++i) status.addSccList(carrier);
  EXPECT_EQ(written(status).size(), 2U * 100 * 4);
}

TEST(Write, WritesField19ThatIsNeverReadBack) {
  KCellularLteSelReselCellInfo lte;
  lte.setThreshServingLowQ(5);
  EXPECT_EQ(written(lte), "980105");
  KCellularGsmIdleConfig gsm;
  gsm.setCrOffset(5);
  EXPECT_EQ(written(gsm), "980105");
}

}  // namespace
}  // namespace quorin::test
