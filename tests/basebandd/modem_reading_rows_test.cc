#include "basebandd/modem/reading_rows.h"

#include <cmath>
#include <set>

#include "tests/support/rig.h"

namespace quorin::test {
namespace {

using namespace modem;
using modem::Reading;

Reading level(double number) { return {number}; }
Reading number(std::int64_t number) { return {number}; }
Reading text(const char* text) { return {std::string(text)}; }

struct Row {
  const ReadingTable* table;
  const char* reading;
  Reading value;
  const char* message;  // all that the reading fills
};

const Row kRows[] = {
    // dBm as they are; half a dB rounds away from zero.
    {&kLteQuality, "rsrp", level(-95.5), "[rsrp0: -96]"},
    {&kLteQuality, "rsrq", level(-10.4), "[rsrq0: -10]"},
    // Half dB: 12.4 dB are 24.8 halves.
    {&kLteQuality, "snr", level(12.4), "[sinr0: 25]"},
    {&kLteQualityCell, "physical-ci", text("1A0"), "[phy_cell_id: 416]"},
    {&kUmtsReceive, "rssi", level(-71.2), "[rssi: -71]"},
    {&kGsmIdle, "rssi", level(-83.0), "[idle_rxlev_dBm: -83]"},
    {&kGsmIdleCell, "arfcn", number(62), "[scell_arfcn: 62]"},

    {&kLteServing, "physical-ci", text("0"), "[phy_cell_id: 0]"},
    // 6300 is 806 MHz of band 20; its uplink number is 18000 away.
    {&kLteServing, "earfcn", number(6300), "[dl_freq: 6300, ul_freq: 24300, freq_band_ind: 20]"},
    {&kLteServing, "ci", text("1CEAD8F"), "[cell_id: 30322063]"},
    {&kLteServing, "tac", text("6FFE"), "[tracking_area_code: 28670]"},
    {&kLteServing, "operator-id", text("26201"),
     "[num_mnc_digits: 2, sel_plmn_mcc: 262, sel_plmn_mnc: 1]"},
    // 10562 is the first number of band I.
    {&kUmtsServing, "uarfcn", number(10562),
     "[wcdma_band: SYS_BAND_WCDMA_I_IMT_2000, dl_uarfcn: 10562]"},
    {&kUmtsServing, "psc", number(511), "[psc: 511]"},
    {&kUmtsServing, "ci", text("D30156"), "[cell_id: 13828438]"},
    {&kUmtsServing, "lac", text("84CD"), "[lac: 33997]"},
    {&kUmtsServing, "operator-id", text("310260"), "[mcc: 310, mnc: 260, num_mnc_digits: 3]"},
    {&kGsmServing, "arfcn", number(62), "[gsm_band: SYS_BAND_GSM_PGSM_900, arfcn: 62]"},
    // NCC 7, BCC 7.
    {&kGsmServing, "base-station-id", text("3F"), "[bsic: 63]"},
    {&kGsmServing, "ci", text("2BAF"), "[cell_id: 11183]"},
    {&kGsmServing, "lac", text("1"), "[lac: 1]"},
    {&kGsmServing, "operator-id", text("001001"), "[mcc: 1, mnc: 1, num_mnc_digits: 3]"},

    {&kLteFromLte, "earfcn", number(1300), "[nbr_earfcn: 1300, freq_band_ind: 3]"},
    {&kLteFromLte, "physical-ci", text("1F7"), "[nbr_phys_cell_id: 503]"},
    {&kLteFromLte, "rsrp", level(-101.0), "[nbr_rsrp: -101]"},
    // Half dB: -12.5 dB are -25 halves.
    {&kLteFromLte, "rsrq", level(-12.5), "[nbr_rsrq: -25]"},
    {&kUmtsFromLte, "uarfcn", number(10737), "[uarfcn: 10737]"},
    {&kUmtsFromLte, "psc", number(0), "[psc: 0]"},
    {&kUmtsFromLte, "rscp", level(-88.6), "[rscp: -89]"},
    // Index: -24 dB and above is 1, half a dB a step: (24 - 7.5) / 0.5 + 1.
    {&kUmtsFromLte, "ecio", level(-7.5), "[ecno: 34]"},
    {&kGsmFromLte, "arfcn", number(700), "[arfcn: 700]"},
    {&kGsmFromLte, "base-station-id", text("A"), "[bsic: 10]"},
    {&kGsmFromLte, "rx-level", number(63), "[rxlev: 63]"},
    {&kUmtsFromUmts, "uarfcn", number(2950), "[uarfcn: 2950, band: 8]"},
    {&kUmtsFromUmts, "psc", number(17), "[psc: 17]"},
    // Index: below -24 dB.
    {&kUmtsFromUmts, "ecio", level(-24.5), "[ecno: 0]"},
    {&kUmtsFromUmts, "rscp", level(-115.0), "[rscp: -115]"},
    {&kGsmFromUmts, "arfcn", number(1023), "[arfcn: 1023]"},
    {&kGsmFromUmts, "base-station-id", text("0"), "[bsic: 0]"},
    {&kGsmFromUmts, "rx-level", number(0), "[rxlev: 0]"},
    {&kLteFromUmts, "earfcn", number(0), "[earfcn: 0, eutra_band: 1]"},
    {&kLteFromUmts, "physical-ci", text("2"), "[phy_cell_id: 2]"},
    {&kLteFromUmts, "rsrp", level(-140.0), "[rsrp: -140]"},
    {&kLteFromUmts, "rsrq", level(-3.0), "[rsrq: -6]"},
    {&kGsmFromGsm, "operator-id", text("26202"), "[mcc: 262, mnc: 2]"},
    {&kGsmFromGsm, "lac", text("FFFD"), "[lac: 65533]"},
    {&kGsmFromGsm, "ci", text("FFFF"), "[ci: 65535]"},
    {&kGsmFromGsm, "base-station-id", text("3f"), "[bsic: 63]"},
    {&kGsmFromGsm, "arfcn", number(0), "[arfcn: 0]"},
    {&kGsmFromGsm, "rx-level", number(31), "[rxlev: 31]"},
    {&kUmtsFromGsm, "psc", number(300), "[cpich_sc: 300]"},
    {&kUmtsFromGsm, "uarfcn", number(10838), "[dl_uarfcn: 10838]"},
    // Index: -115 dBm and above is 1, a dB a step: 115 - 80.3 + 1, rounded down.
    {&kUmtsFromGsm, "rscp", level(-80.3), "[cpich_rscp: 35]"},
    // Index: 0 dB and above is 49.
    {&kUmtsFromGsm, "ecio", level(0.0), "[cpich_ecn0: 49]"},
    {&kLteFromGsm, "physical-ci", text("64"), "[physical_cell_id: 100]"},
    // Index: -140 dBm and above is 1, a dB a step: 140 - 100 + 1.
    {&kLteFromGsm, "rsrp", level(-100.0), "[rsrp: 41]"},
    {&kLteFromGsm, "earfcn", number(262143), "[earfcn: 262143]"},
    // Index: -19.5 dB and above is 1, half a dB a step: (19.5 - 10) / 0.5 + 1.
    {&kLteFromGsm, "rsrq", level(-10.0), "[rsrq: 20]"},

    {&kEmm, "RegistrationState", number(5), "[reg_status: KREG_STATUS_NORMAL_SERVICE]"},
    {&kEmm, "EpsUeModeOperation", number(1), "[ue_op_mode: EPS_UE_OP_MODE_PS_MODE_1]"},
    {&kEmm, "EpsUeModeOperation", number(4), "[ue_op_mode: EPS_UE_OP_MODE_CSPS_MODE_2]"},
    {&kMm, "RegistrationState", number(3), "[reg_status: KREG_STATUS_REGISTRATION_FAILURE]"},
    {&kGmm, "RegistrationState", number(6), "[reg_status: KREG_STATUS_REGISTERED_SMS_ONLY]"},
    {&kTrackingArea, "tac", text("1"), "[tac: 1]"},
    // Digits 2 6 2 and 0 1: the halves of each byte are swapped, F stands for the third of the MNC.
    {&kTrackingArea, "operator-id", text("26201"), "[encoded_plmn: <62f210>]"},
    {&kLocationArea, "lac", text("84CD"), "[lac: 33997]"},
    // Digits 3 1 0 and 2 6 0: the MNC's third digit stands beside the MCC's.
    {&kLocationArea, "operator-id", text("310260"), "[encoded_plmn: <130062>]"},
    {&kRoutingArea, "lac", text("84CD"), "[lac: 33997]"},
    {&kRoutingArea, "operator-id", text("00101"), "[encoded_plmn: <00f110>]"},
    // 15 digits are odd: 1001 and digit 0; then pairs, swapped.
    {&kMmCommon, "Imsi", text("001010123456789"), "[imsi: <0910101032547698>]"},
    // 14 digits are even: 0001 and digit 0; the last half is filled up.
    {&kMmCommon, "Imsi", text("00101012345678"), "[imsi: <01101010325476f8>]"},
    {&kBearer, "ip-type", number(1), "[pdp_type: PDP_TYPE_IPv4]"},
    {&kBearer, "ip-type", number(4), "[pdp_type: PDP_TYPE_IPv4v6]"},
};

std::string filledBy(const ReadingTable& table, const char* key, const Reading& value) {
  const Ref<AnyMessage> message = table.make();
  const bool isFilled = table.fill(*message, {{key, value}});
  EXPECT_EQ(isFilled, printed(message->dictionaryRepresentation()) != "[:]");
  return printed(message->dictionaryRepresentation());
}

TEST(ReadingRows, FillTheirFieldsInTheFieldsUnit) {
  for (const Row& row : kRows)
    EXPECT_EQ(filledBy(*row.table, row.reading, row.value), row.message) << row.reading;
}

TEST(ReadingRows, AreEachTested) {
  std::set<std::pair<const ReadingTable*, std::string_view>> tested;
  std::set<std::pair<const ReadingTable*, std::string_view>> rows;
  for (const Row& row : kRows) tested.insert({row.table, row.reading});
  for (const ReadingTable* table : readingTables()) {
    for (const ReadingRow& row : table->rows) rows.insert({table, row.reading});
    for (const CodingRow& row : table->codings) rows.insert({table, row.reading});
  }
  EXPECT_EQ(tested, rows);
}

/// Each way to say "unknown", and what no such reading can be.
std::vector<Reading> markers() {
  return {{},
          number(-32768),
          level(-32768),
          level(-9999),
          number(0xFFFFFFFF),
          level(4294967295.0),
          level(std::nan("")),
          level(INFINITY),
          level(-INFINITY),
          text(""),
          text("FFFFFFFF"),
          text("unknown"),
          text("-1"),
          text("12 "),
          number(-1),
          {std::vector<std::uint8_t>{}},
          {std::vector<Reading>{}},
          {Readings{}},
          {true}};
}

TEST(ReadingRows, TakeEveryMarkerForAbsence) {
  for (const ReadingTable* table : readingTables())
    for (const Reading& marker : markers()) {
      for (const ReadingRow& row : table->rows)
        EXPECT_EQ(row.convert(marker), std::nullopt) << row.reading;
      for (const CodingRow& row : table->codings)
        EXPECT_EQ(row.code(marker), std::nullopt) << row.reading;
    }
  for (const FileRow& row : fileRows())
    for (const Reading& marker : markers())
      EXPECT_EQ(row.code(marker), std::nullopt) << row.reading;
  for (const Reading& marker : markers()) {
    EXPECT_EQ(ipv4Address(marker), std::nullopt);
    EXPECT_EQ(ipv6Address(marker), std::nullopt);
  }
}

struct Beyond {
  Conversion convert;
  Reading value;
};

TEST(Conversions, GiveNothingBeyondWhatTheQuantityCanBe) {
  const Beyond rows[] = {
      {rsrp, level(0)},
      {rsrp, level(-200)},
      {rsrq, level(40)},
      {snrHalves, level(-60)},
      {rssi, level(10)},
      {rscp, level(-140)},
      {ecnoIndex, level(5)},
      {rxlev, number(64)},
      {rxlev, number(99)},
      {rxlev, number(255)},
      {earfcn, number(262144)},
      {uarfcn, number(16384)},
      {arfcn, number(1024)},
      {scramblingCode, number(512)},
      {areaCode, text("0")},
      {areaCode, text("FFFE")},
      {areaCode, text("FFFF")},
      {areaCode, text("10000")},
      {cellIdentity16, text("10000")},
      {cellIdentity28, text("10000000")},
      {physicalCellIdentity, text("1F8")},
      {baseStationIdentityCode, text("40")},
      {physicalCellIdentity, text("0x10")},
      {mobileCountryCode, text("2620")},
      {mobileNetworkCode, text("2620100")},
      {networkCodeDigits, text("2620A")},
      {eutraBand, number(10360)},
      {eutraUplink, number(9660)},
      {utraBand, number(4400)},
      {gsmSysBand, number(512)},
      {gsmSysBand, number(810)},
      {registrationStatus, number(4)},
      {registrationStatus, number(12)},
      {ueModeOfOperation, number(0)},
      {pdpType, number(0)},
      {pdpType, number(0xFFFFFFF7)},
  };
  for (const Beyond& row : rows)
    EXPECT_EQ(row.convert(row.value), std::nullopt) << &row - rows << " of the rows";
}

TEST(Conversions, NameEveryRegistrationState) {
  const std::pair<int, int> rows[] = {{0, 4},  {1, 0}, {2, 3}, {3, 1},  {5, 0}, {6, 10},
                                      {7, 10}, {8, 8}, {9, 0}, {10, 0}, {11, 2}};
  for (const auto& [theirs, ours] : rows)
    EXPECT_EQ(registrationStatus(number(theirs)), ours) << theirs;
}

TEST(Codings, CodeTheCardsFiles) {
  const auto coded = [](Coding code, const Reading& value) {
    const auto bytes = code(value);
    return bytes ? hexText(*bytes) : "";
  };
  // The length, then the identity.
  EXPECT_EQ(coded(imsiFile, text("001010123456789")), "080910101032547698");
  // A shorter one is filled up to nine bytes.
  EXPECT_EQ(coded(imsiFile, text("001010")), "04011010f0ffffffff");
  EXPECT_EQ(coded(iccidFile, text("89001010123456789015")), "98000101214365870951");
  EXPECT_EQ(coded(iccidFile, text("8900101012345678901")), "980001012143658709f1");
  EXPECT_EQ(coded(plainBytes, {std::vector<std::uint8_t>{1, 0xFF, 0xFF}}), "01ffff");
  EXPECT_EQ(coded(ipv4Address, text("10.64.0.1")), "0a400001");
  EXPECT_EQ(coded(ipv6Address, text("2001:db8::53")), "20010db8000000000000000000000053");
}

}  // namespace
}  // namespace quorin::test
