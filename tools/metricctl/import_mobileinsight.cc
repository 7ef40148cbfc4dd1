#include "messages/lte/KCellularLteCarrierAggregationStatus.h"
#include "messages/lte/KCellularLteComponentCarrierInfo.h"
#include "messages/lte/KCellularLteNbrEutraCellMeas.h"
#include "messages/lte/KCellularLteRsrpRsrqSinr.h"
#include "messages/lte/KCellularLteScellInfo.h"
#include "messages/lte/KCellularLteSecondaryCellMeasurements.h"
#include "messages/nas/KCellularActivatedBearerContexts.h"
#include "messages/nas/KCellularEmmContext.h"
#include "metrics/registry/metric_ids.h"
#include "platform/recording/recording.h"
#include "tools/metricctl/import_logs.h"
#include "tools/metricctl/import_quantities.h"

namespace quorin::metricctl {

namespace {

constexpr std::string_view kTimePattern = "YYYY-MM-DD hh:mm:ss";

// The modem codes a level in steps from the lowest: a level at that end was never measured.
constexpr Quantity kRsrp{.lowest = -180, .highest = 0, .filler = -180};
constexpr Quantity kRsrq{.lowest = -30, .highest = 30, .filler = -30};
constexpr Quantity kRsrqHalfSteps{.lowest = -30, .highest = 30, .scale = 2, .filler = -30};
constexpr Quantity kSnrHalfSteps{.lowest = -20, .highest = 60, .scale = 2, .filler = -20};
constexpr Quantity kRsrpHundredths{.lowest = -180, .highest = 0, .scale = 100, .filler = -180};
constexpr Quantity kRsrqHundredths{.lowest = -30, .highest = 30, .scale = 100, .filler = -30};
constexpr Quantity kRssiHundredths{.lowest = -110, .highest = 0, .scale = 100, .filler = -110};
constexpr Quantity kBandwidth{.lowest = 1.4, .highest = 20, .unit = "MHz"};
constexpr Quantity kBandwidthTwice{.lowest = 1.4, .highest = 20, .scale = 2, .unit = "MHz"};
constexpr Quantity kMmegi{.highest = 0xFFFF, .whole = true};
constexpr Quantity kMmec{.highest = 0xFF, .whole = true};
constexpr Quantity kMTmsi{.highest = 0xFFFFFFFF, .whole = true};
constexpr Quantity kEpsBearer{.lowest = 5, .highest = 15, .whole = true};
constexpr Quantity kActiveBearer{.lowest = 2, .highest = 2, .whole = true};

constexpr NamedNumber kPrimary[] = {{"PCell", 0}};
constexpr NamedNumber kSecondary[] = {
    {"1_SCell", 1}, {"2_SCell", 2}, {"3_SCell", 3}, {"4_SCell", 4}};

// Only states that say exactly what a registration status says; the others have none.
constexpr NamedNumber kRegStatus[] = {
    {"EMM_REGISTERED/EMM_REGISTERED_NORMAL_SERVICE",
     valueOf(names::KREG_STATUS, "KREG_STATUS_NORMAL_SERVICE")},
    {"EMM_REGISTERED/EMM_REGISTERED_LIMITED_SERVICE",
     valueOf(names::KREG_STATUS, "KREG_STATUS_LIMITED_SERVICE")},
    {"EMM_REGISTERED/EMM_REGISTERED_NO_CELL_AVAILABLE",
     valueOf(names::KREG_STATUS, "KREG_STATUS_NO_SERVICE")},
    {"EMM_DEREGISTERED/EMM_DEREGISTERED_LIMITED_SERVICE",
     valueOf(names::KREG_STATUS, "KREG_STATUS_LIMITED_SERVICE")},
    {"EMM_DEREGISTERED/EMM_DEREGISTERED_NO_CELL_AVAILABLE",
     valueOf(names::KREG_STATUS, "KREG_STATUS_NO_SERVICE")},
    {"EMM_REGISTERED_INITIATED/EMM_WAITING_FOR_NW_RESPONSE",
     valueOf(names::KREG_STATUS, "KREG_STATUS_REGISTRATION_IN_PROGRESS")},
    {"EMM_REGISTERED_INITIATED/EMM_WAITING_FOR_ESM_RESPONSE",
     valueOf(names::KREG_STATUS, "KREG_STATUS_REGISTRATION_IN_PROGRESS")},
};

// An attach or a tracking area update may be combined; the state does not say, so it has no row.
constexpr NamedNumber kRegProc[] = {
    {"EMM_SERVICE_REQUEST_INITIATED", valueOf(names::EMM_PROC, "EMM_PROC_SERV_REQ")},
};

using Cell = KCellularLteScellInfo;
using Carriers = KCellularLteComponentCarrierInfo;
using Quality = KCellularLteRsrpRsrqSinr;
using Scc = SecondaryComponentCarrier;
using SccStatus = KCellularLteCarrierAggregationStatus;
using SccMeas = KCellularLteSecondaryCellMeasurements;
using Neighbour = EgwErrcNbrEutraMeas;
using Neighbours = KCellularLteNbrEutraCellMeas;
using Emm = KCellularEmmContext;
using Bearers = KCellularActivatedBearerContexts;

// clang-format off
constexpr Rule kCell[] = {
    {"Cell ID",            put<&Cell::setPhyCellId>,        as(kPci)},
    {"Downlink frequency", put<&Cell::setDlFreq>,           as(kEarfcn)},
    {"Uplink frequency",   put<&Cell::setUlFreq>,           as(kEarfcn)},
    {"Downlink bandwidth", put<&Cell::setDlBw>,             as(kBandwidthTwice)},
    {"Uplink bandwidth",   put<&Cell::setUlBw>,             as(kBandwidthTwice)},
    {"Cell Identity",      put<&Cell::setCellId>,           as(kEci)},
    {"Band Indicator",     put<&Cell::setFreqBandInd>,      as(kEutraBand)},
    {"TAC",                put<&Cell::setTrackingAreaCode>, as(kArea)},
    {"MNC Digit",          put<&Cell::setNumMncDigits>,     as(kMncDigits), Role::supporting},
    {"MCC",                put<&Cell::setSelPlmnMcc>,       as(kMcc)},
    {"MNC",                put<&Cell::setSelPlmnMnc>,       as(kMnc)},
};

constexpr Rule kCarriers[] = {
    {"Downlink frequency", put<&Carriers::setPccEarfcn>,    as(kEarfcn)},
    {"Downlink bandwidth", put<&Carriers::setPccBandwidth>, as(kBandwidth)},
};

constexpr Rule kQuality[] = {
    {"Serving Cell Index", nullptr, named(kPrimary), Role::condition},
    {"Is Serving Cell",    nullptr, as(kTrue), Role::condition},
    {"Physical Cell ID", put<&RsrpRsrqSinr::setPhyCellId>, as(kPci), Role::supporting},
    {"RSRP Rx[0]",       put<&RsrpRsrqSinr::setRsrp0>,     as(kRsrp)},
    {"RSRP Rx[1]",       put<&RsrpRsrqSinr::setRsrp1>,     as(kRsrp)},
    {"RSRQ Rx[0]",       put<&RsrpRsrqSinr::setRsrq0>,     as(kRsrq)},
    {"RSRQ Rx[1]",       put<&RsrpRsrqSinr::setRsrq1>,     as(kRsrq)},
    {"FTL SNR Rx[0]",    put<&RsrpRsrqSinr::setSinr0>,     as(kSnrHalfSteps)},
    {"FTL SNR Rx[1]",    put<&RsrpRsrqSinr::setSinr1>,     as(kSnrHalfSteps)},
};

constexpr Rule kScc[] = {
    {"Serving Cell Index", put<&Scc::setIndex>, named(kSecondary), Role::condition},
    {"Is Serving Cell",  nullptr,                as(kTrue), Role::condition},
    {"Physical Cell ID", put<&Scc::setPci>,      as(kPci)},
    {"E-ARFCN",          put<&Scc::setDlEarfcn>, as(kEarfcn)},
    {"RSRP",             put<&Scc::setRsrp>,     as(kRsrpHundredths)},
    {"RSRQ",             put<&Scc::setRsrq>,     as(kRsrqHundredths)},
    {"RSSI",             put<&Scc::setRssi>,     as(kRssiHundredths)},
};

constexpr Rule kSccMeas[] = {
    {"Serving Cell Index", put<&SccRxMeasurement::setIndex>, named(kSecondary), Role::condition},
    {"Is Serving Cell", nullptr,                          as(kTrue), Role::condition},
    {"RSRP",            put<&SccRxMeasurement::setRsrp>, as(kRsrpHundredths)},
    {"RSRQ",            put<&SccRxMeasurement::setRsrq>, as(kRsrqHundredths)},
    {"RSSI",            put<&SccRxMeasurement::setRssi>, as(kRssiHundredths)},
};

constexpr Rule kFilteredNeighbour[] = {
    {"E-ARFCN", put<&Neighbour::setNbrEarfcn>, as(kEarfcn), Role::supporting, Place::enclosing},
    {"Physical Cell ID", put<&Neighbour::setNbrPhysCellId>, as(kPci)},
    {"RSRP(dBm)",        put<&Neighbour::setNbrRsrp>,       as(kRsrp)},
    {"RSRQ(dB)",         put<&Neighbour::setNbrRsrq>,       as(kRsrqHalfSteps)},
};

constexpr Rule kMomentaryNeighbour[] = {
    {"E-ARFCN", put<&Neighbour::setNbrEarfcn>, as(kEarfcn), Role::supporting, Place::enclosing},
    {"Physical Cell ID",   put<&Neighbour::setNbrPhysCellId>, as(kPci)},
    {"Inst Measured RSRP", put<&Neighbour::setNbrRsrp>,       as(kRsrp)},
    {"Inst Measured RSRQ", put<&Neighbour::setNbrRsrq>,       as(kRsrqHalfSteps)},
};

constexpr Rule kEmm[] = {
    {"EMM State", put<&Emm::setRegStatus>, namedWith("EMM Substate", kRegStatus)},
    {"EMM State", put<&Emm::setRegProc>,   named(kRegProc)},
};

constexpr Rule kGuti[] = {
    {"GUTI Valid",        nullptr,               as(kTrue), Role::condition},
    {"GUTI MME Group ID", put<&Guti::setMmegi>,  hexadecimal(kMmegi)},
    {"GUTI MME Code",     put<&Guti::setMmec>,   hexadecimal(kMmec)},
    {"GUTI M-TMSI",       put<&Guti::setMTmsi>,  hexadecimal(kMTmsi)},
};

// An EPS bearer's identity and its NSAPI are the same number (3GPP TS 23.401).
constexpr Rule kBearer[] = {
    {"EPS bearer state", nullptr, as(kActiveBearer), Role::condition},
    {"EPS bearer ID", put<&BearerContext::setNsapi>, as(kEpsBearer)},
};

constexpr Source kSources[] = {
    {"LTE_RRC_Serv_Cell_Info", metric<Cell>(K_LTE_SCELL_INFO), kCell},
    {"LTE_RRC_Serv_Cell_Info", metric<Carriers>(K_LTE_COMPCARR_INFO), kCarriers},
    {"LTE_PHY_Serv_Cell_Measurement", metric<Quality>(K_LTE_RSRP_RSRQ_SINR), {},
        nested<&Quality::addInstValues>(kQuality), "Subpackets"},
    {"LTE_PHY_Serv_Cell_Measurement", metric<SccStatus>(K_LTE_CA_STATUS), {},
        nested<&SccStatus::addSccList>(kScc), "Subpackets"},
    {"LTE_PHY_Serv_Cell_Measurement", metric<SccMeas>(K_LTE_SECONDARYCELL_MEAS), {},
        nested<&SccMeas::addSccRxMeasurement>(kSccMeas), "Subpackets"},
    {"LTE_PHY_Connected_Mode_Intra_Freq_Meas", metric<Neighbours>(K_LTE_INTRARAT_MEAS), {},
        nested<&Neighbours::addMeasNbrEutra>(kFilteredNeighbour, "Neighbor Cells")},
    {"LTE_PHY_Connected_Mode_Neighbor_Measurement", metric<Neighbours>(K_LTE_INTRARAT_MEAS), {},
        nested<&Neighbours::addMeasNbrEutra>(kMomentaryNeighbour, "Neighbor Cells"), "SubPackets"},
    {"LTE_NAS_EMM_State", metric<Emm>(K_LTE_EMM_CTXT), kEmm, nested<&Emm::setGuti>(kGuti)},
    {"LTE_NAS_ESM_State", metric<Bearers>(K_CELLULAR_ACTIVE_BEARER), {},
        nested<&Bearers::addBearerContexts>(kBearer)},
};
// clang-format on

bool importLine(std::string_view line, const Sink& sink, std::string& reason) {
  const Record record = Record::parse(line, nullptr, /*allow_exceptions=*/false);
  if (record.is_discarded()) return reason = "not JSON", false;
  if (!record.is_object()) return reason = "not a JSON object", false;
  const std::string_view kind = textIn(record, "type_id");
  if (kind.empty()) return reason = "no \"type_id\"", false;
  const auto time = timeOf(textIn(record, "timestamp"), kTimePattern);
  if (!time) return reason = "\"timestamp\" is no time", false;
  std::vector<ImportedMetric> metrics;
  if (!importRecord(mobileInsightSources(), kind, record, *time, metrics, reason)) return false;
  sink(*time, metrics);
  return true;
}

}  // namespace

std::span<const Source> mobileInsightSources() { return kSources; }

bool isMobileInsightRecord(std::string_view line) {
  if (!line.starts_with('{')) return false;
  const Record record = Record::parse(line, nullptr, /*allow_exceptions=*/false);
  return record.is_discarded() || find(record, "type_id");
}

void importMobileInsight(std::istream& stream, Lines& lines, const Sink& sink) {
  rewind(stream);
  for (std::string line; lines.next(line);) {
    std::string reason;
    if (!isBlank(line) && !importLine(line, sink, reason)) lines.unreadable(reason);
  }
}

}  // namespace quorin::metricctl
