#include "metrics/record_rows.h"

#include <algorithm>

namespace quorin {

namespace {

using MV = MetricValidator;

// clang-format off
constexpr RecordRow kRecordRows[] = {
    {"myLTE", "SelReselCellInfo", in<&LTE::SelReselCellInfo>, &MV::myLTESelReselDict},
    {"myLTE", "EutraNbrs", in<&LTE::EutraNbrs>, &MV::myLTESelReselDict, "nbr_eutra",
        {{"dl_bw", megahertz}}},
    {"myLTE", "RsrpRsrqSinr", in<&LTE::RsrpRsrqSinr>, &MV::myLTERsrpRsrqSinrDict, "inst_values",
        {{"sinr0", halfSteps}, {"sinr1", halfSteps}}},
    {"myLTE", "TxPower", in<&LTE::TxPower>, &MV::myLTETxPowerDict, "tx_power_info"},
    {"myLTE", "EutraNbrsMeas", in<&LTE::EutraNbrsMeas>, &MV::myLTEIntraRatMeasDict, "meas_nbr_eutra",
        {{"nbr_rsrq", halfSteps}}},
    {"myLTE", "UtraNbrsMeas", in<&LTE::UtraNbrsMeas>, &MV::myLTEInterRatMeasDict, "meas_nbr_utra",
        {{"ecno", halfSteps}}},
    {"myLTE", "GeraNbrsMeas", in<&LTE::GeraNbrsMeas>, &MV::myLTEInterRatMeasDict, "meas_nbr_geran"},
    {"myLTE", "CAStatusList", in<&LTE::CAStatusList>, &MV::myLTECAStatusDict, "scc_list",
        {{"rsrp", wholeOfHundredths}, {"rsrq", hundredths}, {"rssi", wholeOfHundredths},
         {"dl_bandwidth", megahertz}}},
    {"myLTE", "SecondaryCellMeasList", in<&LTE::SecondaryCellMeasList>,
        &MV::myLTESecondaryCellMeasDict, "scc_rx_measurement",
        {{"rsrp", wholeOfHundredths}, {"rsrq", hundredths}, {"rssi", wholeOfHundredths}}},
    {"myLTE", "MMCommonInfo", in<&LTE::MMCommonInfo>, &MV::myCellularMMCommonInfoDict},
    {"myLTE", "IMSI", in<&LTE::IMSI>, &MV::myCellularMMCommonInfoDict, "imsi"},

    {"myUMTS", "rXInfo", in<&UMTS::rXInfo>, &MV::myUMTSCellMeasDict, "rx_info", {}, "connected_mode"},
    {"myUMTS", "TxPower", in<&UMTS::TxPower>, &MV::myUMTSTxPowerDict, "tx_power_info"},
    {"myUMTS", "SelReselCellInfo", in<&UMTS::SelReselCellInfo>, &MV::myUMTSSelReselDict},
    {"myUMTS", "eUtraNbrs", in<&UMTS::eUtraNbrs>, &MV::myUMTSSelReselDict, "eutra_prio_info"},
    {"myUMTS", "utraNbrs", in<&UMTS::utraNbrs>, &MV::myUMTSSelReselDict, "utra_prio_info"},
    {"myUMTS", "geraNbrs", in<&UMTS::geraNbrs>, &MV::myUMTSSelReselDict, "gsm_prio_info"},
    {"myUMTS", "eUtraNbrMeas", in<&UMTS::eUtraNbrMeas>, &MV::myUMTSNbrMeasDict, "meas_lte_result",
        {{"rsrq", halfSteps}}},
    {"myUMTS", "utraNbrMeas", in<&UMTS::utraNbrMeas>, &MV::myUMTSNbrMeasDict, "meas_utra_result",
        {{"ecno", halfSteps}}},
    {"myUMTS", "geraNbrMeas", in<&UMTS::geraNbrMeas>, &MV::myUMTSNbrMeasDict, "meas_gsm_result"},

    {"myGSM", "eUtraNbrMeas", in<&GSM::eUtraNbrMeas>, &MV::myGSMNbrMeasDict, "lte_ncell_meas",
        {{"rsrq", halfSteps}}},
    // The message spells its key "cpich_ecn0", so its values stay as delivered: meant.
    {"myGSM", "utraNbrMeas", in<&GSM::utraNbrMeas>, &MV::myGSMNbrMeasDict, "umts_ncell_meas",
        {{"cpich_ecno", halfSteps}}},
    {"myGSM", "geraNbrMeas", in<&GSM::geraNbrMeas>, &MV::myGSMNbrMeasDict, "gsm_ncell_meas"},

    {"myCommon", "activeBearer", in<&Common::activeBearer>, &MV::myCellularActiveBearerDict,
        "bearer_contexts"},
    {"myCommon", "simContents", in<&Common::simContents>, &MV::mySIMFileInfoDict, "ef_list"},
};
// clang-format on

Dictionary converted(Dictionary entry, const RecordRow& row, const MV& validator) {
  for (const auto& [key, conversion] : row.conversions)
    if (const Value* value = conversion ? entry.find(key) : nullptr)
      entry.set(Literal{key}, conversion(*value, validator.dlbwlookup()));
  return entry;
}

void rebuild(List& list, const RecordRow& row, const Dictionary& store, const MV& validator) {
  list = List();
  if (row.key.empty()) return list.append(Value(store));
  const Value* entries = store.find(row.key);
  if (!entries || entries->kind() != Value::Kind::list) return;
  const Value* added = row.addedKey.empty() ? nullptr : store.find(row.addedKey);
  for (const Value& value : entries->list()) {
    Dictionary entry = converted(value.dictionary(), row, validator);
    if (added) entry.set(Literal{row.addedKey}, *added);
    list.append(Value(entry));
  }
}

// A key that the latest message lacks becomes empty text again, and a time stamp becomes text here
// even where the store keeps the number.
void rebuild(Dictionary& dictionary, const RecordRow& /*row*/, const Dictionary& store,
             const MV& /*validator*/) {
  dictionary = withFixedKeys(dictionary, store);
  convertTimeStamp(dictionary);
}

void rebuild(Value& value, const RecordRow& row, const Dictionary& store, const MV& /*validator*/) {
  const Value* latest = store.find(row.key);
  value = latest ? imsiDigits(*latest) : Value(Literal{""});
}

}  // namespace

std::span<const RecordRow> recordRows() { return kRecordRows; }

const RecordRow& recordRow(const MemberIn& member) {
  const auto* row = std::ranges::find(kRecordRows, member, &RecordRow::in);
  if (row == std::end(kRecordRows)) fatal();
  return *row;
}

Value valueOf(MetricValidator& validator, const RecordRow& row) {
  return std::visit([&](auto place) { return Value(place(validator)); }, row.in);
}

void refreshRecords(MetricValidator& validator, MetricValidator::Store store) {
  for (const RecordRow& row : kRecordRows)
    if (row.source == store)
      std::visit(
          [&](auto place) { rebuild(place(validator), row, (validator.*store)(), validator); },
          row.in);
}

}  // namespace quorin
