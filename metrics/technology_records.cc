#include "metrics/technology_records.h"

#include <span>

namespace quorin {

namespace {

constexpr std::string_view kLteSelReselKeys[] = {
    "timestamp",
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
    "multi_band_info",
};

constexpr std::string_view kUmtsSelReselKeys[] = {
    "timestamp",
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
    "multi_band_info",
};

const Value kEmptyText(Literal{""});

Dictionary emptyTexts(std::span<const std::string_view> keys) {
  Dictionary dictionary;
  for (const auto key : keys) dictionary.append(Literal{key}, kEmptyText);
  return dictionary;
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

Dictionary withFixedKeys(const Dictionary& fixed, const Dictionary& latest) {
  Dictionary dictionary;
  dictionary.reserve(fixed.size());
  for (const auto& entry : fixed) {
    const Value* value = latest.find(entry.key.text());
    dictionary.set(entry.key, value ? *value : kEmptyText);
  }
  return dictionary;
}

}  // namespace quorin
