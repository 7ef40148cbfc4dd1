#include "metrics/record_rows.h"

#include <algorithm>
#include <array>

#include "messages/shared/RxInfo.h"

namespace quorin {

namespace {

using MV = MetricValidator;

constexpr auto kRxInfoKeysInRecord = [] {
  constexpr auto& keys = kKeys<RxInfo>;
  std::array<Literal, keys.size() + 1> all;
  *std::ranges::copy(keys, all.begin()).out = kKey<"connected_mode">;
  return all;
}();

// clang-format off
constexpr RecordRow kRecordRows[] = {
    {"myLTE", "SelReselCellInfo", in<&LTE::SelReselCellInfo>, &MV::myLTESelReselDict},
    {"myLTE", "EutraNbrs", in<&LTE::EutraNbrs>, &MV::myLTESelReselDict, kKey<"nbr_eutra">,
        {converted<megahertz>(kKey<"dl_bw">)}},
    {"myLTE", "RsrpRsrqSinr", in<&LTE::RsrpRsrqSinr>, &MV::myLTERsrpRsrqSinrDict, kKey<"inst_values">,
        {converted<halfSteps>(kKey<"sinr0">), converted<halfSteps>(kKey<"sinr1">)}},
    {"myLTE", "TxPower", in<&LTE::TxPower>, &MV::myLTETxPowerDict, kKey<"tx_power_info">},
    {"myLTE", "EutraNbrsMeas", in<&LTE::EutraNbrsMeas>, &MV::myLTEIntraRatMeasDict, kKey<"meas_nbr_eutra">,
        {converted<halfSteps>(kKey<"nbr_rsrq">)}},
    {"myLTE", "UtraNbrsMeas", in<&LTE::UtraNbrsMeas>, &MV::myLTEInterRatMeasDict, kKey<"meas_nbr_utra">,
        {converted<halfSteps>(kKey<"ecno">)}},
    {"myLTE", "GeraNbrsMeas", in<&LTE::GeraNbrsMeas>, &MV::myLTEInterRatMeasDict, kKey<"meas_nbr_geran">},
    {"myLTE", "CAStatusList", in<&LTE::CAStatusList>, &MV::myLTECAStatusDict, kKey<"scc_list">,
        {converted<wholeOfHundredths>(kKey<"rsrp">), converted<hundredths>(kKey<"rsrq">),
         converted<wholeOfHundredths>(kKey<"rssi">), converted<megahertz>(kKey<"dl_bandwidth">)}},
    {"myLTE", "SecondaryCellMeasList", in<&LTE::SecondaryCellMeasList>,
        &MV::myLTESecondaryCellMeasDict, kKey<"scc_rx_measurement">,
        {converted<wholeOfHundredths>(kKey<"rsrp">), converted<hundredths>(kKey<"rsrq">),
         converted<wholeOfHundredths>(kKey<"rssi">)}},
    {"myLTE", "MMCommonInfo", in<&LTE::MMCommonInfo>, &MV::myCellularMMCommonInfoDict},
    {"myLTE", "IMSI", in<&LTE::IMSI>, &MV::myCellularMMCommonInfoDict, kKey<"imsi">},

    {"myUMTS", "rXInfo", in<&UMTS::rXInfo>, &MV::myUMTSCellMeasDict, kKey<"rx_info">, {},
        kKey<"connected_mode">, kKeys<RxInfo>, kRxInfoKeysInRecord},
    {"myUMTS", "TxPower", in<&UMTS::TxPower>, &MV::myUMTSTxPowerDict, kKey<"tx_power_info">},
    {"myUMTS", "SelReselCellInfo", in<&UMTS::SelReselCellInfo>, &MV::myUMTSSelReselDict},
    {"myUMTS", "eUtraNbrs", in<&UMTS::eUtraNbrs>, &MV::myUMTSSelReselDict, kKey<"eutra_prio_info">},
    {"myUMTS", "utraNbrs", in<&UMTS::utraNbrs>, &MV::myUMTSSelReselDict, kKey<"utra_prio_info">},
    {"myUMTS", "geraNbrs", in<&UMTS::geraNbrs>, &MV::myUMTSSelReselDict, kKey<"gsm_prio_info">},
    {"myUMTS", "eUtraNbrMeas", in<&UMTS::eUtraNbrMeas>, &MV::myUMTSNbrMeasDict, kKey<"meas_lte_result">,
        {converted<halfSteps>(kKey<"rsrq">)}},
    {"myUMTS", "utraNbrMeas", in<&UMTS::utraNbrMeas>, &MV::myUMTSNbrMeasDict, kKey<"meas_utra_result">,
        {converted<halfSteps>(kKey<"ecno">)}},
    {"myUMTS", "geraNbrMeas", in<&UMTS::geraNbrMeas>, &MV::myUMTSNbrMeasDict, kKey<"meas_gsm_result">},

    {"myGSM", "eUtraNbrMeas", in<&GSM::eUtraNbrMeas>, &MV::myGSMNbrMeasDict, kKey<"lte_ncell_meas">,
        {converted<halfSteps>(kKey<"rsrq">)}},
    // The message spells its key "cpich_ecn0", so its values stay as delivered: meant.
    {"myGSM", "utraNbrMeas", in<&GSM::utraNbrMeas>, &MV::myGSMNbrMeasDict, kKey<"umts_ncell_meas">,
        {converted<halfSteps>(kKey<"cpich_ecno">)}},
    {"myGSM", "geraNbrMeas", in<&GSM::geraNbrMeas>, &MV::myGSMNbrMeasDict, kKey<"gsm_ncell_meas">},

    {"myCommon", "activeBearer", in<&Common::activeBearer>, &MV::myCellularActiveBearerDict,
        kKey<"bearer_contexts">},
    {"myCommon", "simContents", in<&Common::simContents>, &MV::mySIMFileInfoDict, kKey<"ef_list">},
};
// clang-format on

constexpr std::size_t kMostConversions = std::size(RecordRow{}.conversions);

/// A row, and where its keys stood when it was last rebuilt: mostly where they stand again.
struct RowState {
  const RecordRow* row;
  std::size_t conversions = 0;
  std::size_t source = 0;
  std::array<std::size_t, kMostConversions> converted{};
  FixedPlaces fixed;

  RowState(const RecordRow& of) : row(&of) {
    while (conversions < kMostConversions && of.conversions[conversions].one) ++conversions;
  }
};

/// What the row takes of its store, or null.
const Value* find(const Dictionary& store, RowState& state) {
  state.source = store.placeOf(state.row->key, state.source);
  return store.at(state.source);
}

/// Converts the entries of one list, and adds what the row adds.
struct EntryChange {
  RowState& state;
  const BandwidthTable& bandwidths;
  const Value* added;

  void all(const DictionaryDrafts& entries) const {
    const RecordRow& row = *state.row;
    for (std::size_t i = 0; i < state.conversions; ++i) {
      state.converted[i] = entries.placeOf(row.conversions[i].key, state.converted[i]);
      row.conversions[i].all(entries, state.converted[i], bandwidths);
    }
    if (added) entries.set(row.addedKey, *added);
  }
  void one(Dictionary& entry) const {
    const RecordRow& row = *state.row;
    for (std::size_t i = 0; i < state.conversions; ++i)
      entry.change(entry.placeOf(row.conversions[i].key), [&](Value& value) {
        row.conversions[i].one(value, bandwidths);
      });
    if (added) entry.set(row.addedKey, *added);
  }
};

void rebuild(List& list, RowState& state, const Dictionary& store, const MV& validator) {
  const RecordRow& row = *state.row;
  if (row.key.text.empty()) {
    list = List();
    return list.append(Value(store));
  }
  const Value* entries = find(store, state);
  if (!entries || entries->kind() != Value::Kind::list) {
    list = List();
    return;
  }
  const Value* added = row.addedKey.text.empty() ? nullptr : store.find(row.addedKey);
  list = added || state.conversions > 0
             ? List::changed(*entries, !added || added->isPlain(), added ? row.keys : Keys(),
                             added ? row.keysWithAdded : Keys(),
                             EntryChange{state, validator.dlbwlookup(), added})
             : entries->list();
}

// A key that the latest message lacks becomes empty text again, and a time stamp becomes text here
// even where the store keeps the number.
void rebuild(Dictionary& dictionary, RowState& state, const Dictionary& store,
             const MV& /*validator*/) {
  dictionary = state.fixed.withFixedKeys(dictionary, store);
  convertTimeStamp(dictionary);
}

void rebuild(Value& value, RowState& state, const Dictionary& store, const MV& /*validator*/) {
  const Value* latest = find(store, state);
  value = latest ? imsiDigits(*latest) : Value(Literal{""});
}

/// The rows that each metric's store fills.
struct RowsByCase {
  std::vector<RowState> all;
  std::array<std::span<RowState>, kMetricCases.size()> of;

  RowsByCase() {
    all.assign(std::begin(kRecordRows), std::end(kRecordRows));
    for (const MetricCase& metric : kMetricCases) {
      const auto fills = [&](const RowState& state) { return state.row->source == metric.get; };
      const auto first = std::ranges::find_if(all, fills);  // they stand together
      of[metric.index] = {first, std::find_if_not(first, all.end(), fills)};
    }
  }
};
RowsByCase rowsByCase;

[[gnu::noinline]] void rebuildAll(std::span<RowState> rows, MV& validator,
                                  const Dictionary& store) {
  for (RowState& state : rows)
    std::visit([&](auto place) { rebuild(place(validator), state, store, validator); },
               state.row->in);
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

void refreshRecords(MetricValidator& validator, const MetricCase& metric) {
  const std::span<RowState> rows = rowsByCase.of[metric.index];
  if (!rows.empty()) rebuildAll(rows, validator, (validator.*metric.get)());
}

}  // namespace quorin
