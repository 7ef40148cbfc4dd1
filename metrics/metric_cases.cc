#include "metrics/metric_cases.h"

#include <algorithm>
#include <array>
#include <utility>

#include "messages/gsm/KCellularGsmCsRfMeasurement.h"
#include "messages/gsm/KCellularGsmGprsConfig.h"
#include "messages/gsm/KCellularGsmGrrEventMeasCr.h"
#include "messages/gsm/KCellularGsmIdleConfig.h"
#include "messages/gsm/KCellularGsmIdleScellMeasurement.h"
#include "messages/gsm/KCellularGsmScellInfo.h"
#include "messages/lte/KCellularLteCarrierAggregationStatus.h"
#include "messages/lte/KCellularLteCdrxConfig.h"
#include "messages/lte/KCellularLteComponentCarrierInfo.h"
#include "messages/lte/KCellularLteNbrEutraCellMeas.h"
#include "messages/lte/KCellularLteNbrInterRatCellMeas.h"
#include "messages/lte/KCellularLteRrcState.h"
#include "messages/lte/KCellularLteRsrpRsrqSinr.h"
#include "messages/lte/KCellularLteScellInfo.h"
#include "messages/lte/KCellularLteSecondaryCellMeasurements.h"
#include "messages/lte/KCellularLteSelReselCellInfo.h"
#include "messages/lte/KCellularLteTxPower.h"
#include "messages/nas/KCellularActivatedBearerContexts.h"
#include "messages/nas/KCellularEmmContext.h"
#include "messages/nas/KCellularGmmContext.h"
#include "messages/nas/KCellularMmCommonInfo.h"
#include "messages/nas/KCellularMmContext.h"
#include "messages/nas/KCellularSimCardFiles.h"
#include "messages/umts/KCellularWcdmaCellInfo.h"
#include "messages/umts/KCellularWcdmaNbrCellMeas.h"
#include "messages/umts/KCellularWcdmaRrcConfiguration.h"
#include "messages/umts/KCellularWcdmaRrcConnectionState.h"
#include "messages/umts/KCellularWcdmaScellMeasurement.h"
#include "messages/umts/KCellularWcdmaSelReselCellInfo.h"
#include "messages/umts/KCellularWcdmaTxPower.h"
#include "metrics/conversions.h"

namespace quorin {

namespace {

using MV = MetricValidator;

constexpr StoreRow kStoreRows[] = {
    {"myLTERRCStateDict", &MV::myLTERRCStateDict, &MV::setMyLTERRCStateDict},
    {"myLTECDRXConfigDict", &MV::myLTECDRXConfigDict, &MV::setMyLTECDRXConfigDict},
    {"myLTESCellInfoDict", &MV::myLTESCellInfoDict, &MV::setMyLTESCellInfoDict},
    {"myLTESCellMeasDict", &MV::myLTESCellMeasDict, &MV::setMyLTESCellMeasDict},
    {"myLTESelReselDict", &MV::myLTESelReselDict, &MV::setMyLTESelReselDict},
    {"myLTERsrpRsrqSinrDict", &MV::myLTERsrpRsrqSinrDict, &MV::setMyLTERsrpRsrqSinrDict},
    {"myLTECompCarrDict", &MV::myLTECompCarrDict, &MV::setMyLTECompCarrDict},
    {"myLTETxPowerDict", &MV::myLTETxPowerDict, &MV::setMyLTETxPowerDict},
    {"myLTEInterRatMeasDict", &MV::myLTEInterRatMeasDict, &MV::setMyLTEInterRatMeasDict},
    {"myLTEIntraRatMeasDict", &MV::myLTEIntraRatMeasDict, &MV::setMyLTEIntraRatMeasDict},
    {"myLTECAStatusDict", &MV::myLTECAStatusDict, &MV::setMyLTECAStatusDict},
    {"myLTESecondaryCellMeasDict", &MV::myLTESecondaryCellMeasDict,
     &MV::setMyLTESecondaryCellMeasDict},
    {"myLTEEMMContextDict", &MV::myLTEEMMContextDict, &MV::setMyLTEEMMContextDict},
    {"myCellularMMCommonInfoDict", &MV::myCellularMMCommonInfoDict,
     &MV::setMyCellularMMCommonInfoDict},
    {"myCellularActiveBearerDict", &MV::myCellularActiveBearerDict,
     &MV::setMyCellularActiveBearerDict},
    {"myGMMContextDict", &MV::myGMMContextDict, &MV::setMyGMMContextDict},
    {"myMMContextDict", &MV::myMMContextDict, &MV::setMyMMContextDict},
    {"myUMTSRRCStateDict", &MV::myUMTSRRCStateDict, &MV::setMyUMTSRRCStateDict},
    {"myUMTSRRCConfigDict", &MV::myUMTSRRCConfigDict, &MV::setMyUMTSRRCConfigDict},
    {"myUMTSCellInfoDict", &MV::myUMTSCellInfoDict, &MV::setMyUMTSCellInfoDict},
    {"myUMTSCellMeasDict", &MV::myUMTSCellMeasDict, &MV::setMyUMTSCellMeasDict},
    {"myUMTSTxPowerDict", &MV::myUMTSTxPowerDict, &MV::setMyUMTSTxPowerDict},
    {"myUMTSSelReselDict", &MV::myUMTSSelReselDict, &MV::setMyUMTSSelReselDict},
    {"myUMTSNbrMeasDict", &MV::myUMTSNbrMeasDict, &MV::setMyUMTSNbrMeasDict},
    {"myGSMScellInfoDict", &MV::myGSMScellInfoDict, &MV::setMyGSMScellInfoDict},
    {"myGSMIdleConfigInfoDict", &MV::myGSMIdleConfigInfoDict, &MV::setMyGSMIdleConfigInfoDict},
    {"myGSMIdleScellMeasDict", &MV::myGSMIdleScellMeasDict, &MV::setMyGSMIdleScellMeasDict},
    {"myGSMConnRfMeasDict", &MV::myGSMConnRfMeasDict, &MV::setMyGSMConnRfMeasDict},
    {"myGSMNbrMeasDict", &MV::myGSMNbrMeasDict, &MV::setMyGSMNbrMeasDict},
    {"myGSMGPRSConfigDict", &MV::myGSMGPRSConfigDict, &MV::setMyGSMGPRSConfigDict},
    {"mySIMFileInfoDict", &MV::mySIMFileInfoDict, &MV::setMySIMFileInfoDict},
};

constexpr std::array<MetricCase, 30> completed(std::array<MetricCase, 30> cases) {
  for (std::uint8_t i = 0; MetricCase& row : cases) {
    row.index = i++;
    row.idLine = IDLine(row.id);
  }
  return cases;
}

}  // namespace

// K_LTE_RLF and K_LTE_SCELL_MEAS have no row: meant. The reselection store keeps its milliseconds,
// and the bearer store is logged with them: meant, too.
constexpr std::array<MetricCase, 30> kMetricCases = completed({{
    {K_SIM_FILE_INFO, &kTable<KCellularSimCardFiles>, &MV::mySIMFileInfoDict,
     &MV::setMySIMFileInfoDict, "Received SIM Card File Info is"},
    {K_GSM_SCELL_INFO, &kTable<KCellularGsmScellInfo>, &MV::myGSMScellInfoDict,
     &MV::setMyGSMScellInfoDict, "Received GSM Serving Cell Info"},
    {K_UMTS_SCELL_INFO, &kTable<KCellularWcdmaCellInfo>, &MV::myUMTSCellInfoDict,
     &MV::setMyUMTSCellInfoDict, "Received UMTS Serving Cell Info is"},
    {K_LTE_SCELL_INFO, &kTable<KCellularLteScellInfo>, &MV::myLTESCellInfoDict,
     &MV::setMyLTESCellInfoDict, "Current Serving Cell Info is", StampText::beforeLog,
     halveBandwidths},
    {K_LTE_RRC_STATE, &kTable<KCellularLteRrcState>, &MV::myLTERRCStateDict,
     &MV::setMyLTERRCStateDict, "Current RRC state is"},
    {K_LTE_CDRX_CONFIG, &kTable<KCellularLteCdrxConfig>, &MV::myLTECDRXConfigDict,
     &MV::setMyLTECDRXConfigDict, "Current CDRX Config is"},
    {K_LTE_RSRP_RSRQ_SINR, &kTable<KCellularLteRsrpRsrqSinr>, &MV::myLTERsrpRsrqSinrDict,
     &MV::setMyLTERsrpRsrqSinrDict, "Received RSRP RSRQ SINR is :"},
    {K_GSM_IDLE_CONFIG, &kTable<KCellularGsmIdleConfig>, &MV::myGSMIdleConfigInfoDict,
     &MV::setMyGSMIdleConfigInfoDict, "Received GSM Idle Config Info is"},
    {K_GSM_IDLE_SCELL_MEAS, &kTable<KCellularGsmIdleScellMeasurement>, &MV::myGSMIdleScellMeasDict,
     &MV::setMyGSMIdleScellMeasDict, "Received GSM Idle Serving Cell Meas Info is"},
    {K_GSM_CS_RF_MEAS, &kTable<KCellularGsmCsRfMeasurement>, &MV::myGSMConnRfMeasDict,
     &MV::setMyGSMConnRfMeasDict, "Received GSM Connected Serving Cell Meas Info is"},
    {K_GSM_NCELL_MEAS, &kTable<KCellularGsmGrrEventMeasCr>, &MV::myGSMNbrMeasDict,
     &MV::setMyGSMNbrMeasDict, "Received GSM Nbr Cell Meas Info is"},
    {K_GSM_GPRS_CONFIG, &kTable<KCellularGsmGprsConfig>, &MV::myGSMGPRSConfigDict,
     &MV::setMyGSMGPRSConfigDict, "Received GSM GPRS Config Info is"},
    {K_UMTS_SCELL_MEAS, &kTable<KCellularWcdmaScellMeasurement>, &MV::myUMTSCellMeasDict,
     &MV::setMyUMTSCellMeasDict, "Received UMTS Serving Cell Meas is"},
    {K_UMTS_TX_POWER, &kTable<KCellularWcdmaTxPower>, &MV::myUMTSTxPowerDict,
     &MV::setMyUMTSTxPowerDict, "Received Tx Power is"},
    {K_UMTS_SEL_RESEL_INFO, &kTable<KCellularWcdmaSelReselCellInfo>, &MV::myUMTSSelReselDict,
     &MV::setMyUMTSSelReselDict, "Received UMTS Cell Resel Info is"},
    {K_UMTS_NCELL_MEAS, &kTable<KCellularWcdmaNbrCellMeas>, &MV::myUMTSNbrMeasDict,
     &MV::setMyUMTSNbrMeasDict, "Received UMTS InterRat Meas Info is"},
    {K_UMTS_RRC_STATE, &kTable<KCellularWcdmaRrcConnectionState>, &MV::myUMTSRRCStateDict,
     &MV::setMyUMTSRRCStateDict, "Received UMTS RRC Connection State is"},
    {K_UMTS_RRC_CONFIG, &kTable<KCellularWcdmaRrcConfiguration>, &MV::myUMTSRRCConfigDict,
     &MV::setMyUMTSRRCConfigDict, "Received UMTS RRC Configuration is"},
    {K_LTE_TX_POWER, &kTable<KCellularLteTxPower>, &MV::myLTETxPowerDict, &MV::setMyLTETxPowerDict,
     "Received LTE Tx Power is"},
    {K_LTE_COMPCARR_INFO, &kTable<KCellularLteComponentCarrierInfo>, &MV::myLTECompCarrDict,
     &MV::setMyLTECompCarrDict, "Received Component Carrier info is"},
    {K_LTE_SEL_RESEL_INFO, &kTable<KCellularLteSelReselCellInfo>, &MV::myLTESelReselDict,
     &MV::setMyLTESelReselDict, "Received LTE Cell Resel Info is", StampText::never},
    {K_LTE_INTRARAT_MEAS, &kTable<KCellularLteNbrEutraCellMeas>, &MV::myLTEIntraRatMeasDict,
     &MV::setMyLTEIntraRatMeasDict, "Received LTE IRAT Meas is"},
    {K_LTE_INTERRAT_MEAS, &kTable<KCellularLteNbrInterRatCellMeas>, &MV::myLTEInterRatMeasDict,
     &MV::setMyLTEInterRatMeasDict, "Received LTE InterRat Meas Info is"},
    {K_LTE_CA_STATUS, &kTable<KCellularLteCarrierAggregationStatus>, &MV::myLTECAStatusDict,
     &MV::setMyLTECAStatusDict, "Received CA Status Dict is"},
    {K_LTE_SECONDARYCELL_MEAS, &kTable<KCellularLteSecondaryCellMeasurements>,
     &MV::myLTESecondaryCellMeasDict, &MV::setMyLTESecondaryCellMeasDict,
     "Received Secondary Cell Measurement Dict is"},
    {K_CELLULAR_MM_INFO, &kTable<KCellularMmCommonInfo>, &MV::myCellularMMCommonInfoDict,
     &MV::setMyCellularMMCommonInfoDict, "Received MM Common Info Dict is :"},
    {K_CELLULAR_MM_CTXT, &kTable<KCellularMmContext>, &MV::myMMContextDict,
     &MV::setMyMMContextDict, "Received MM Context Info is"},
    {K_CELLULAR_GMM_CTXT, &kTable<KCellularGmmContext>, &MV::myGMMContextDict,
     &MV::setMyGMMContextDict, "Received GMM Context Info is"},
    {K_LTE_EMM_CTXT, &kTable<KCellularEmmContext>, &MV::myLTEEMMContextDict,
     &MV::setMyLTEEMMContextDict, "Received EMM Context is"},
    {K_CELLULAR_ACTIVE_BEARER, &kTable<KCellularActivatedBearerContexts>,
     &MV::myCellularActiveBearerDict, &MV::setMyCellularActiveBearerDict,
     "Received Bearer Context Info is", StampText::afterLog},
}});
static_assert(std::ranges::is_sorted(kMetricCases, {}, &MetricCase::id));

namespace {

/// Where a metric's row is looked up: no two IDs have one place.
struct Places {
  std::uint64_t factor = 0;
  std::array<std::uint8_t, 256> rows{};  // of kMetricCases; any row where there is none
};

constexpr std::size_t placeOf(std::int64_t id, std::uint64_t factor) {
  return static_cast<std::size_t>(static_cast<std::uint64_t>(id) * factor >> 56);
}

constexpr bool fill(Places& places) {
  std::array<bool, 256> taken{};
  for (std::uint8_t row = 0; row < std::size(kMetricCases); ++row) {
    const std::size_t place = placeOf(kMetricCases[row].id, places.factor);
    if (std::exchange(taken[place], true)) return false;
    places.rows[place] = row;
  }
  return true;
}

constexpr Places kPlaces = [] {
  for (Places places{0x9e3779b97f4a7c15, {}};; places.factor *= 0x5851f42d4c957f2d)
    if (fill(places)) return places;
}();

}  // namespace

std::span<const StoreRow> storeRows() { return kStoreRows; }

const MetricCase* metricCase(std::int64_t id) {
  const MetricCase& row = kMetricCases[kPlaces.rows[placeOf(id, kPlaces.factor)]];
  return row.id == id ? &row : nullptr;
}

}  // namespace quorin
