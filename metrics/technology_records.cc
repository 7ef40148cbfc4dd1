#include "metrics/technology_records.h"

#include <span>

namespace quorin {

namespace {

constexpr Literal kLteSelReselKeys[] = {
    kKey<"timestamp">,
    kKey<"ims_emergency_support">,
    kKey<"ac_barring_for_emergency">,
    kKey<"mo_signalling_ac_barring_factor">,
    kKey<"mo_signalling_ac_barring_time">,
    kKey<"mo_signalling_ac_barring_for_special_ac">,
    kKey<"mo_data_ac_barring_factor">,
    kKey<"mo_data_ac_barring_time">,
    kKey<"mo_data_ac_barring_for_special_ac">,
    kKey<"QRxLevMin">,
    kKey<"QQualMin">,
    kKey<"Q_hyst">,
    kKey<"S_non_intra_search_P">,
    kKey<"S_non_intra_search_Q">,
    kKey<"S_intra_search_P">,
    kKey<"S_intra_search_Q">,
    kKey<"Thresh_serving_lowP">,
    kKey<"Thresh_serving_lowQ">,
    kKey<"priority_operating_freq">,
    kKey<"multi_band_info">,
};

constexpr Literal kUmtsSelReselKeys[] = {
    kKey<"timestamp">,
    kKey<"ims_emergency_support">,
    kKey<"hsdpa_capable">,
    kKey<"edch_capable">,
    kKey<"duplex_mode">,
    kKey<"cell_barred">,
    kKey<"fach_meas_occ_info_present">,
    kKey<"s_rxlev">,
    kKey<"s_qual">,
    kKey<"s_intrasearch">,
    kKey<"s_intersearch">,
    kKey<"s_search_rat">,
    kKey<"s_cell_prio">,
    kKey<"multi_band_info">,
};

const Value kEmptyText(Literal{""});

Dictionary emptyTexts(Keys keys) {
  DictionaryMaker dictionary(keys);
  for (std::size_t place = 0; place < keys.size(); ++place) dictionary.put(place, kEmptyText);
  return dictionary.made();
}

List placeholder(std::string_view text) { return {Value(Dictionary{{text, kEmptyText}})}; }

constexpr std::string_view kWaiting = "Waiting for Update";
constexpr std::string_view kBlank = " ";
constexpr std::string_view kComeBack = "Come Back Later";

}  // namespace

LTE::LTE()
    : SelReselCellInfo(emptyTexts(kLteSelReselKeys)),
      EutraNbrs(placeholder(kWaiting)),
      RsrpRsrqSinr(placeholder(kBlank)),
      TxPower(placeholder(kBlank)),
      EutraNbrsMeas(placeholder(kBlank)),
      UtraNbrsMeas(placeholder(kBlank)),
      GeraNbrsMeas(placeholder(kBlank)),
      CAStatusList(placeholder(kBlank)),
      SecondaryCellMeasList(placeholder(kBlank)),
      MMCommonInfo(placeholder(kComeBack)),
      IMSI(kEmptyText) {}

UMTS::UMTS()
    : rXInfo(placeholder(kWaiting)),
      TxPower(placeholder(kWaiting)),
      SelReselCellInfo(emptyTexts(kUmtsSelReselKeys)),
      eUtraNbrs(placeholder(kWaiting)),
      utraNbrs(placeholder(kWaiting)),
      geraNbrs(placeholder(kWaiting)),
      eUtraNbrMeas(placeholder(kWaiting)),
      utraNbrMeas(placeholder(kWaiting)),
      geraNbrMeas(placeholder(kWaiting)) {}

GSM::GSM()
    : eUtraNbrMeas(placeholder(kWaiting)),
      utraNbrMeas(placeholder(kWaiting)),
      geraNbrMeas(placeholder(kWaiting)) {}

Common::Common() : activeBearer(placeholder(kWaiting)), simContents(placeholder(kWaiting)) {}

Dictionary FixedPlaces::withFixedKeys(const Dictionary& fixed, const Dictionary& latest) {
  const Keys keys = fixed.keys();
  const bool known = keys.data() == _fixed && latest.keys().data() == _latest;
  if (!known || fixed.hasOwnKeys() || latest.hasOwnKeys()) {
    _places.clear();
    for (const Literal& key : keys) _places.push_back(latest.placeOf(key));
    _fixed = keys.data();
    _latest = latest.keys().data();
  }
  DictionaryMaker dictionary(fixed);
  for (std::size_t place = 0; place < keys.size(); ++place) {
    const Value* value = latest.at(_places[place]);
    dictionary.put(place, value ? *value : kEmptyText);
  }
  return dictionary.made();
}

}  // namespace quorin
