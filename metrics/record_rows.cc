#include "metrics/record_rows.h"

#include <algorithm>
#include <array>

namespace quorin {

namespace {

using MV = MetricValidator;

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

    {"myUMTS", "rXInfo", in<&UMTS::rXInfo>, &MV::myUMTSCellMeasDict, kKey<"rx_info">, {}, kKey<"connected_mode">},
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

/// Converts the entries of one list, whose keys mostly stand where they stood in the entry before.
class EntryConverter {
 public:
  EntryConverter(const RecordRow& row, const MV& validator)
      : _row(row), _validator(validator), _places(placesOf(row)) {}

  template <class Entry>
  void operator()(Entry& entry) const {
    for (std::size_t i = 0; i < kMostConversions && _row.conversions[i].conversion; ++i) {
      const auto& [key, conversion] = _row.conversions[i];
      const std::size_t place = entry.indexOf(key, _places[i]);
      if (place == entry.size()) continue;
      _places[i] = place;
      entry.setAt(place, conversion(entry[place].value, _validator.dlbwlookup()));
    }
  }

 private:
  using Places = std::array<std::size_t, kMostConversions>;
  /// Kept from list to list.
  static Places& placesOf(const RecordRow& row) {
    static std::array<Places, std::size(kRecordRows)> places{};
    return places[static_cast<std::size_t>(&row - kRecordRows)];
  }

  const RecordRow& _row;
  const MV& _validator;
  Places& _places;
};

void rebuild(List& list, const RecordRow& row, const Dictionary& store, const MV& validator) {
  list = List();
  if (row.key.text.empty()) return list.append(Value(store));
  const Value* entries = store.findFromEnd(row.key);
  if (!entries || entries->kind() != Value::Kind::list) return;
  const Value* added = row.addedKey.text.empty() ? nullptr : store.find(row.addedKey);
  list = entries->list();
  if (!added && !row.conversions[0].conversion) return;
  const EntryConverter convert(row, validator);
  list = list.changed(added ? 1 : 0, !added || added->isPlain(), [&](auto& entry) {
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

/// The rows that a metric's store fills. They stand together.
std::span<const RecordRow> rowsOf(const MetricCase& metric) {
  static const std::vector<std::span<const RecordRow>> rowsByCase = [] {
    std::vector<std::span<const RecordRow>> made;
    for (const MetricCase& row : metricCases()) {
      const auto fills = [&](const RecordRow& record) { return record.source == row.get; };
      const auto* first = std::ranges::find_if(kRecordRows, fills);
      made.emplace_back(first, std::find_if_not(first, std::end(kRecordRows), fills));
    }
    return made;
  }();
  return rowsByCase[static_cast<std::size_t>(&metric - metricCases().data())];
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
  const auto rows = rowsOf(metric);
  for (const RecordRow& row : rows)
    std::visit(
        [&](auto place) { rebuild(place(validator), row, (validator.*metric.get)(), validator); },
        row.in);
}

}  // namespace quorin
