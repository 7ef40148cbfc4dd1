#include "messages/gsm/KCellularGsmIdleScellMeasurement.h"
#include "messages/gsm/KCellularGsmScellInfo.h"
#include "messages/lte/KCellularLteRsrpRsrqSinr.h"
#include "messages/lte/KCellularLteScellInfo.h"
#include "messages/umts/KCellularWcdmaCellInfo.h"
#include "messages/umts/KCellularWcdmaScellMeasurement.h"
#include "metrics/registry/metric_ids.h"
#include "tools/metricctl/import_logs.h"
#include "tools/metricctl/import_quantities.h"

namespace quorin::metricctl {

namespace {

// A level at an end of the phone's scale of 31 steps says nothing: the phone had none to report.
constexpr Quantity kLteLevel{.lowest = -139, .highest = -45, .filler = -113, .otherFiller = -51};
constexpr Quantity kLteQual{.lowest = -34, .highest = 3};
constexpr Quantity kLteSnr{.lowest = -30, .highest = 50, .scale = 2};
constexpr Quantity kUmtsLevel{.lowest = -119, .highest = -25, .filler = -113, .otherFiller = -51};
constexpr Quantity kGsmLevel{.lowest = -112, .highest = -49, .filler = -113, .otherFiller = -51};

constexpr NamedNumber kUmtsBands[] = {
    {"U1", valueOf(names::SYS_BAND, "SYS_BAND_WCDMA_I_IMT_2000")},
    {"U2", valueOf(names::SYS_BAND, "SYS_BAND_WCDMA_II_PCS_1900")},
    {"U3", valueOf(names::SYS_BAND, "SYS_BAND_WCDMA_III_1700")},
    {"U4", valueOf(names::SYS_BAND, "SYS_BAND_WCDMA_IV_1700")},
    {"U5", valueOf(names::SYS_BAND, "SYS_BAND_WCDMA_V_850")},
    {"U6", valueOf(names::SYS_BAND, "SYS_BAND_WCDMA_VI_800")},
    {"U7", valueOf(names::SYS_BAND, "SYS_BAND_WCDMA_VII_2600")},
    {"U8", valueOf(names::SYS_BAND, "SYS_BAND_WCDMA_VIII_900")},
    {"U9", valueOf(names::SYS_BAND, "SYS_BAND_WCDMA_IX_1700")},
    {"U11", valueOf(names::SYS_BAND, "SYS_BAND_WCDMA_XI_1500")},
    {"U19", valueOf(names::SYS_BAND, "SYS_BAND_WCDMA_XIX_850")},
};

// "G900" has no row: primary, extended and railway GSM 900 are three bands, and it names none.
constexpr NamedNumber kGsmBands[] = {
    {"G850", valueOf(names::SYS_BAND, "SYS_BAND_GSM_850")},
    {"G1800", valueOf(names::SYS_BAND, "SYS_BAND_GSM_DCS_1800")},
    {"G1900", valueOf(names::SYS_BAND, "SYS_BAND_GSM_PCS_1900")},
};

// State: a voice call, a data transfer, both, or idle. A call and a transfer need an RRC
// connection; idle does not say that there is none, for it outlives the last transfer.
constexpr NamedNumber kConnectedStates[] = {{"V", 1}, {"D", 1}, {"VD", 1}};
constexpr NamedNumber kCallStates[] = {{"V", 1}, {"VD", 1}};
constexpr NamedNumber kGsmStates[] = {
    {"V", valueOf(names::DEDICATED_STATE, "DEDICATED_STATE")},
    {"VD", valueOf(names::DEDICATED_STATE, "DEDICATED_STATE")},
    {"I", valueOf(names::DEDICATED_STATE, "NON_DEDICATED_STATE")},
    {"D", valueOf(names::DEDICATED_STATE, "NON_DEDICATED_STATE")},
};

using LteCell = KCellularLteScellInfo;
using UmtsCell = KCellularWcdmaCellInfo;
using GsmCell = KCellularGsmScellInfo;
using GsmIdle = KCellularGsmIdleScellMeasurement;

// clang-format off
constexpr Rule kLteCell[] = {
    {"PSC",      put<&LteCell::setPhyCellId>,        as(kPci)},
    {"ARFCN",    put<&LteCell::setDlFreq>,           as(kEarfcn)},
    {"CellID",   put<&LteCell::setCellId>,           joined(kCellOfEnb, "Node", kEnb)},
    {"BAND",     put<&LteCell::setFreqBandInd>,      afterLetter("L", kEutraBand)},
    {"LAC",      put<&LteCell::setTrackingAreaCode>, as(kArea)},
    {"Operator", put<&LteCell::setNumMncDigits>,     kMncDigitsOfNetwork},
    {"Operator", put<&LteCell::setSelPlmnMcc>,       kMccOfNetwork},
    {"Operator", put<&LteCell::setSelPlmnMnc>,       kMncOfNetwork},
};

constexpr Rule kLteQuality[] = {
    {"PSC",   put<&RsrpRsrqSinr::setPhyCellId>, as(kPci), Role::supporting},
    {"Level", put<&RsrpRsrqSinr::setRsrp0>,     as(kLteLevel)},
    {"Qual",  put<&RsrpRsrqSinr::setRsrq0>,     as(kLteQual)},
    {"SNR",   put<&RsrpRsrqSinr::setSinr0>,     as(kLteSnr)},
};

constexpr Rule kUmtsCell[] = {
    {"Operator", put<&UmtsCell::setMcc>,          kMccOfNetwork},
    {"Operator", put<&UmtsCell::setMnc>,          kMncOfNetwork},
    {"LAC",      put<&UmtsCell::setLac>,          as(kArea)},
    {"CellID",   put<&UmtsCell::setCellId>,       joined(kCellOfRnc, "Node", kRnc)},
    {"BAND",     put<&UmtsCell::setWcdmaBand>,    named(kUmtsBands)},
    {"ARFCN",    put<&UmtsCell::setDlUarfcn>,     as(kUarfcn)},
    {"PSC",      put<&UmtsCell::setPsc>,          as(kPsc)},
    {"Operator", put<&UmtsCell::setNumMncDigits>, kMncDigitsOfNetwork},
};

constexpr Rule kUmtsConnection[] = {
    {"State", put<&KCellularWcdmaScellMeasurement::setConnectedMode>, named(kConnectedStates)},
};

constexpr Rule kUmtsLevels[] = {{"Level", put<&RxInfo::setRssi>, as(kUmtsLevel)}};

constexpr Rule kGsmCell[] = {
    {"Operator", put<&GsmCell::setMcc>,          kMccOfNetwork},
    {"Operator", put<&GsmCell::setMnc>,          kMncOfNetwork},
    {"LAC",      put<&GsmCell::setLac>,          as(kArea)},
    {"CellID",   put<&GsmCell::setCellId>,       as(kCellOfLac)},
    {"BAND",     put<&GsmCell::setGsmBand>,      named(kGsmBands)},
    {"ARFCN",    put<&GsmCell::setArfcn>,        as(kArfcn)},
    {"PSC",      put<&GsmCell::setBsic>,         as(kBsic)},
    {"State",    put<&GsmCell::setState>,        named(kGsmStates)},
    {"Operator", put<&GsmCell::setNumMncDigits>, kMncDigitsOfNetwork},
};

constexpr Rule kGsmIdle[] = {
    {"State", nullptr,                         noneOf(kCallStates), Role::condition},
    {"ARFCN", put<&GsmIdle::setScellArfcn>,    as(kArfcn), Role::supporting},
    {"Level", put<&GsmIdle::setIdleRxlevDBm>,  as(kGsmLevel)},
};

constexpr Source kSources[] = {
    {"4G", metric<LteCell>(K_LTE_SCELL_INFO), kLteCell},
    {"4G", metric<KCellularLteRsrpRsrqSinr>(K_LTE_RSRP_RSRQ_SINR), {},
        nested<&KCellularLteRsrpRsrqSinr::addInstValues>(kLteQuality)},
    {"3G", metric<UmtsCell>(K_UMTS_SCELL_INFO), kUmtsCell},
    {"3G", metric<KCellularWcdmaScellMeasurement>(K_UMTS_SCELL_MEAS), kUmtsConnection,
        nested<&KCellularWcdmaScellMeasurement::addRxInfo>(kUmtsLevels)},
    {"2G", metric<GsmCell>(K_GSM_SCELL_INFO), kGsmCell},
    {"2G", metric<GsmIdle>(K_GSM_IDLE_SCELL_MEAS), kGsmIdle},
};
// clang-format on

}  // namespace

std::span<const Source> gnettrackSources() { return kSources; }

}  // namespace quorin::metricctl
