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
        {{kKey<"dl_bw">, megahertz}}},
    {"myLTE", "RsrpRsrqSinr", in<&LTE::RsrpRsrqSinr>, &MV::myLTERsrpRsrqSinrDict, kKey<"inst_values">,
        {{kKey<"sinr0">, halfSteps}, {kKey<"sinr1">, halfSteps}}},
    {"myLTE", "TxPower", in<&LTE::TxPower>, &MV::myLTETxPowerDict, kKey<"tx_power_info">},
    {"myLTE", "EutraNbrsMeas", in<&LTE::EutraNbrsMeas>, &MV::myLTEIntraRatMeasDict, kKey<"meas_nbr_eutra">,
        {{kKey<"nbr_rsrq">, halfSteps}}},
    {"myLTE", "UtraNbrsMeas", in<&LTE::UtraNbrsMeas>, &MV::myLTEInterRatMeasDict, kKey<"meas_nbr_utra">,
        {{kKey<"ecno">, halfSteps}}},
    {"myLTE", "GeraNbrsMeas", in<&LTE::GeraNbrsMeas>, &MV::myLTEInterRatMeasDict, kKey<"meas_nbr_geran">},
    {"myLTE", "CAStatusList", in<&LTE::CAStatusList>, &MV::myLTECAStatusDict, kKey<"scc_list">,
        {{kKey<"rsrp">, wholeOfHundredths}, {kKey<"rsrq">, hundredths}, {kKey<"rssi">, wholeOfHundredths},
         {kKey<"dl_bandwidth">, megahertz}}},
    {"myLTE", "SecondaryCellMeasList", in<&LTE::SecondaryCellMeasList>,
        &MV::myLTESecondaryCellMeasDict, kKey<"scc_rx_measurement">,
        {{kKey<"rsrp">, wholeOfHundredths}, {kKey<"rsrq">, hundredths}, {kKey<"rssi">, wholeOfHundredths}}},
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
        {{kKey<"rsrq">, halfSteps}}},
    {"myUMTS", "utraNbrMeas", in<&UMTS::utraNbrMeas>, &MV::myUMTSNbrMeasDict, kKey<"meas_utra_result">,
        {{kKey<"ecno">, halfSteps}}},
    {"myUMTS", "geraNbrMeas", in<&UMTS::geraNbrMeas>, &MV::myUMTSNbrMeasDict, kKey<"meas_gsm_result">},

    {"myGSM", "eUtraNbrMeas", in<&GSM::eUtraNbrMeas>, &MV::myGSMNbrMeasDict, kKey<"lte_ncell_meas">,
        {{kKey<"rsrq">, halfSteps}}},
    // The message spells its key "cpich_ecn0", so its values stay as delivered: meant.
    {"myGSM", "utraNbrMeas", in<&GSM::utraNbrMeas>, &MV::myGSMNbrMeasDict, kKey<"umts_ncell_meas">,
        {{kKey<"cpich_ecno">, halfSteps}}},
    {"myGSM", "geraNbrMeas", in<&GSM::geraNbrMeas>, &MV::myGSMNbrMeasDict, kKey<"gsm_ncell_meas">},

    {"myCommon", "activeBearer", in<&Common::activeBearer>, &MV::myCellularActiveBearerDict,
        kKey<"bearer_contexts">},
    {"myCommon", "simContents", in<&Common::simContents>, &MV::mySIMFileInfoDict, kKey<"ef_list">},
};
// clang-format on

constexpr std::size_t kMostConversions = std::size(RecordRow{}.conversions);

/// Where a row's keys stood when it was last rebuilt: mostly where they stand again.
struct RowPlaces {
  std::size_t source = 0;
  std::array<std::size_t, kMostConversions> converted{};
};
constinit std::array<RowPlaces, std::size(kRecordRows)> rowPlaces{};

RowPlaces& placesOf(const RecordRow& row) {
  return rowPlaces[static_cast<std::size_t>(&row - kRecordRows)];
}

/// Converts the entries of one list.
class EntryConverter {
 public:
  EntryConverter(const RecordRow& row, RowPlaces& places, const MV& validator)
      : _count(count(row)), _row(row), _places(places), _validator(validator) {}

  template <class Entry>
  void operator()(Entry& entry) {
    if (entry.keys().data() != _keys) setPlaces(entry);
    for (std::size_t i = 0; i < _count; ++i) {
      const std::size_t place = _places.converted[i];
      if (const Value* value = entry.at(place))
        entry.replace(value, _row.conversions[i].conversion(*value, _validator.dlbwlookup()));
    }
  }

 private:
  template <class Entry>
  void setPlaces(const Entry& entry) {
    for (std::size_t i = 0; i < _count; ++i)
      _places.converted[i] = entry.placeOf(_row.conversions[i].key, _places.converted[i]);
    _keys = entry.keys().data();
  }
  static std::size_t count(const RecordRow& row) {
    std::size_t count = 0;
    while (count < kMostConversions && row.conversions[count].conversion) ++count;
    return count;
  }

  const Literal* _keys = nullptr;  // for which the places hold
  std::size_t _count;
  const RecordRow& _row;
  RowPlaces& _places;
  const MV& _validator;
};

void rebuild(List& list, const RecordRow& row, const Dictionary& store, const MV& validator) {
  if (row.key.text.empty()) {
    list = List();
    return list.append(Value(store));
  }
  RowPlaces& places = placesOf(row);
  places.source = store.placeOf(row.key, places.source);
  const Value* entries = store.at(places.source);
  if (!entries || entries->kind() != Value::Kind::list) {
    list = List();
    return;
  }
  const Value* added = row.addedKey.text.empty() ? nullptr : store.find(row.addedKey);
  List shared = entries->list();
  if (!added && !row.conversions[0].conversion) {
    list = std::move(shared);
    return;
  }
  EntryConverter convert(row, places, validator);
  const bool plain = !added || added->isPlain();
  list = shared.changed(plain, added ? row.keys : Keys(), added ? row.keysWithAdded : Keys(),
                      [&](auto&& entry) {
                        convert(entry);
                        if (added) entry.set(row.addedKey, *added);
                      });
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

/// The rows that each metric's store fills. They stand together.
const auto rowsByCase = [] {
  std::vector<std::span<const RecordRow>> made;
  for (const MetricCase& row : metricCases()) {
    const auto fills = [&](const RecordRow& record) { return record.source == row.get; };
    const auto* first = std::ranges::find_if(kRecordRows, fills);
    made.emplace_back(first, std::find_if_not(first, std::end(kRecordRows), fills));
  }
  return made;
}();

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
  const auto rows = rowsByCase[indexOf(metric)];
  if (rows.empty()) return;
  const Dictionary& store = (validator.*metric.get)();
  for (const RecordRow& row : rows)
    std::visit([&](auto place) { rebuild(place(validator), row, store, validator); }, row.in);
}

}  // namespace quorin
