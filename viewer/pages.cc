#include "viewer/pages.h"

#include <algorithm>

namespace quorin {

namespace {

using MV = MetricValidator;

template <auto member>
constexpr Shown sections = SectionPerEntryOf{in<member>};

constexpr PageRow kPageRows[] = {
    {"LTE C-DRX", &MV::myLTECDRXConfigDict},
    {"LTE Serving Cell Info", &MV::myLTESCellInfoDict},
    {"LTE RRC State", &MV::myLTERRCStateDict},
    {"LTE Sel Resel Parameters", in<&LTE::SelReselCellInfo>},
    {"LTE EUTRA Neighbor Info", sections<&LTE::EutraNbrs>, "EUTRA Neighbor "},
    {"LTE Tx Power", sections<&LTE::TxPower>, "TxPowerInfo "},
    {"LTE LTE Neighbor Cell Meas", sections<&LTE::EutraNbrsMeas>, "LTE Neighbor "},
    {"LTE UMTS Neighbor Cell Meas", sections<&LTE::UtraNbrsMeas>, "UMTS Neighbor "},
    {"LTE GSM Neighbor Cell Meas", sections<&LTE::GeraNbrsMeas>, "GSM Neighbor "},
    {"LTE NAS", &MV::myLTEEMMContextDict},
    {"LTE Serving Cell Meas", FirstEntryOf{in<&LTE::RsrpRsrqSinr>}},
    {"LTE Component Carrier Info", &MV::myLTECompCarrDict},  // no row of the tree leads here: meant
    {"LTE CA Status", sections<&LTE::CAStatusList>, "Component Carrier "},
    {"LTE Secondary Cell Meas", sections<&LTE::SecondaryCellMeasList>, "Secondary Cell Meas "},
    {"LTE Active Bearers", sections<&Common::activeBearer>, "PDP "},
    {"UMTS Active Bearers", sections<&Common::activeBearer>, "PDP "},
    {"GSM Active Bearers", sections<&Common::activeBearer>, "PDP "},
    {"UMTS RRC State", &MV::myUMTSRRCStateDict},
    {"UMTS RRC Configuration", &MV::myUMTSRRCConfigDict},
    {"UMTS Serving Cell Info", &MV::myUMTSCellInfoDict},
    // One page under two keys, one for its cells and one for its counts and headers, so that the
    // tree's "UMTS Serving Cell Meas" has its sections and every cell says "Come back later":
    // meant.
    {"UMTS Serving Cell Measurement", sections<&UMTS::rXInfo>, "", Question::cells},
    {"UMTS Serving Cell Meas", sections<&UMTS::rXInfo>, "RxInfo ", Question::counts},
    {"UMTS Tx Power", sections<&UMTS::TxPower>, "TxPowerInfo "},
    {"UMTS Sel Resel Parameters", in<&UMTS::SelReselCellInfo>},
    {"UMTS EUTRA Neighbor Info", sections<&UMTS::eUtraNbrs>, "EUTRA Neighbor "},
    {"UMTS UTRA Neighbor Info", sections<&UMTS::utraNbrs>, "UTRA Neighbor "},
    {"UMTS GSM Neighbor Info", sections<&UMTS::geraNbrs>, "GSM Neighbor "},
    {"UMTS LTE Neighbor Cell Meas", sections<&UMTS::eUtraNbrMeas>, "LTE Neighbor "},
    {"UMTS UMTS Neighbor Cell Meas", sections<&UMTS::utraNbrMeas>, "UMTS Neighbor "},
    {"UMTS GSM Neighbor Cell Meas", sections<&UMTS::geraNbrMeas>, "GSM Neighbor "},
    {"UMTS NAS GMM", &MV::myGMMContextDict},
    {"GSM NAS GMM", &MV::myGMMContextDict},
    {"UMTS NAS MM", &MV::myMMContextDict},
    {"GSM NAS MM", &MV::myMMContextDict},
    {"GSM Serving Cell Info", &MV::myGSMScellInfoDict},
    {"GSM Idle Config", &MV::myGSMIdleConfigInfoDict},
    {"GSM Idle Serv Cell Meas", &MV::myGSMIdleScellMeasDict},
    {"Connected Serv Cell Meas", &MV::myGSMConnRfMeasDict},  // without its technology: meant
    {"GSM GPRS Config", &MV::myGSMGPRSConfigDict},
    {"GSM LTE Neighbor Cell Meas", sections<&GSM::eUtraNbrMeas>, "LTE Neighbor "},
    {"GSM UMTS Neighbor Cell Meas", sections<&GSM::utraNbrMeas>, "UMTS Neighbor "},
    {"GSM GSM Neighbor Cell Meas", sections<&GSM::geraNbrMeas>, "GSM Neighbor "},
    {"Device Info SIM Files", sections<&Common::simContents>, "SIM Content "},
};

std::vector<Dictionary> everyEntry(const List& list) {
  std::vector<Dictionary> sections;
  for (const Value& entry : list) sections.push_back(entry.dictionary());
  return sections;
}

struct SectionsNow {
  MetricValidator& validator;
  std::vector<Dictionary> operator()(MV::Store store) const { return {(validator.*store)()}; }
  std::vector<Dictionary> operator()(DictionaryIn dictionary) const {
    return {dictionary(validator)};
  }
  std::vector<Dictionary> operator()(FirstEntryOf first) const {
    const List& list = first.list(validator);
    return {list.empty() ? Dictionary() : list[0].dictionary()};
  }
  std::vector<Dictionary> operator()(SectionPerEntryOf each) const {
    return everyEntry(each.list(validator));
  }
};

struct SourceNow {
  MV::Store operator()(MV::Store store) const { return store; }
  MV::Store operator()(DictionaryIn dictionary) const { return recordRow(dictionary).source; }
  MV::Store operator()(FirstEntryOf first) const { return recordRow(first.list).source; }
  MV::Store operator()(SectionPerEntryOf each) const { return recordRow(each.list).source; }
};

}  // namespace

std::span<const PageRow> pageRows() { return kPageRows; }

const PageRow* pageRow(std::string_view key, Question question) {
  const auto* row = std::ranges::find_if(kPageRows, [&](const PageRow& page) {
    return page.key == key && (!page.only || page.only == question);
  });
  return row == std::end(kPageRows) ? nullptr : row;
}

std::vector<Dictionary> sectionsOf(const PageRow& page, MetricValidator& validator) {
  return std::visit(SectionsNow{validator}, page.shown);
}

MetricValidator::Store sourceOf(const PageRow& page) { return std::visit(SourceNow{}, page.shown); }

}  // namespace quorin
