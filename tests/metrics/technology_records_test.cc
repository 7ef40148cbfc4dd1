#include "metrics/technology_records.h"

#include "tests/support/rig.h"

namespace quorin::test {
namespace {

constexpr const char* kLteKeys[] = {"timestamp",
                                    "ims_emergency_support",
                                    "ac_barring_for_emergency",
                                    "mo_signalling_ac_barring_factor",
                                    "mo_signalling_ac_barring_time",
                                    "mo_signalling_ac_barring_for_special_ac",
                                    "mo_data_ac_barring_factor",
                                    "mo_data_ac_barring_time",
                                    "mo_data_ac_barring_for_special_ac",
                                    "QRxLevMin",
                                    "QQualMin",
                                    "Q_hyst",
                                    "S_non_intra_search_P",
                                    "S_non_intra_search_Q",
                                    "S_intra_search_P",
                                    "S_intra_search_Q",
                                    "Thresh_serving_lowP",
                                    "Thresh_serving_lowQ",
                                    "priority_operating_freq",
                                    "multi_band_info"};
constexpr const char* kUmtsKeys[] = {"timestamp",
                                     "ims_emergency_support",
                                     "hsdpa_capable",
                                     "edch_capable",
                                     "duplex_mode",
                                     "cell_barred",
                                     "fach_meas_occ_info_present",
                                     "s_rxlev",
                                     "s_qual",
                                     "s_intrasearch",
                                     "s_intersearch",
                                     "s_search_rat",
                                     "s_cell_prio",
                                     "multi_band_info"};

template <std::size_t count>
void expectEmptyTexts(const Dictionary& dictionary, const char* const (&keys)[count]) {
  ASSERT_EQ(dictionary.size(), count);
  for (std::size_t i = 0; i < count; ++i) {
    EXPECT_EQ(dictionary[i].key.text, keys[i]);
    EXPECT_EQ(dictionary[i].value.kind(), Value::Kind::text);
    EXPECT_EQ(dictionary[i].value.text(), "") << keys[i];
  }
}

TEST(TechnologyRecords, StartWithTheFixedKeysOfTheirDictionariesAndEmptyTexts) {
  expectEmptyTexts(LTE().SelReselCellInfo, kLteKeys);
  expectEmptyTexts(UMTS().SelReselCellInfo, kUmtsKeys);
}

TEST(TechnologyRecords, StartWithOnePlaceholderInEachList) {
  const LTE lte;
  EXPECT_EQ(printed(lte.EutraNbrs), "[[Waiting for Update: ]]");
  for (const List* list : {&lte.RsrpRsrqSinr, &lte.TxPower, &lte.EutraNbrsMeas, &lte.UtraNbrsMeas,
                           &lte.GeraNbrsMeas, &lte.CAStatusList, &lte.SecondaryCellMeasList})
    EXPECT_EQ(printed(*list), "[[ : ]]");
  EXPECT_EQ(printed(lte.MMCommonInfo), "[[Come Back Later: ]]");
  EXPECT_EQ(lte.IMSI, Value(std::string()));
  const UMTS umts;
  for (const List* list :
       {&umts.rXInfo, &umts.TxPower, &umts.eUtraNbrs, &umts.utraNbrs, &umts.geraNbrs,
        &umts.eUtraNbrMeas, &umts.utraNbrMeas, &umts.geraNbrMeas})
    EXPECT_EQ(printed(*list), "[[Waiting for Update: ]]");
  const GSM gsm;
  for (const List* list : {&gsm.eUtraNbrMeas, &gsm.utraNbrMeas, &gsm.geraNbrMeas})
    EXPECT_EQ(printed(*list), "[[Waiting for Update: ]]");
  const Common common;
  for (const List* list : {&common.activeBearer, &common.simContents})
    EXPECT_EQ(printed(*list), "[[Waiting for Update: ]]");
}

TEST(WithFixedKeys, TakesTheKeysOfTheOneAndTheValuesOfTheOther) {
  const Dictionary fixed{{"a", Value(std::string("one"))}, {"b", Value(2)}, {"c", Value(3)}};
  const Dictionary latest{{"c", Value(9)}, {"x", Value(8)}, {"a", Value(7)}};
  FixedPlaces places;
  EXPECT_EQ(printed(places.withFixedKeys(fixed, latest)), "[a: 7, b: , c: 9]");
  EXPECT_EQ(printed(places.withFixedKeys(fixed, {})), "[a: , b: , c: ]");
  const Dictionary turned{{"a", Value(1)}, {"b", Value(test::data("02"))}, {"c", Value(3)}};
  EXPECT_EQ(printed(places.withFixedKeys(fixed, turned)), "[a: 1, b: <02>, c: 3]");
  EXPECT_EQ(printed(places.withFixedKeys(turned, fixed)), "[a: one, b: 2, c: 3]");
}

}  // namespace
}  // namespace quorin::test
