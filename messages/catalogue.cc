#include "messages/catalogue.h"

#include <algorithm>

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
#include "messages/lte/KCellularLteServingCellMeasurement.h"
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
#include "metrics/registry/metric_ids.h"

namespace quorin {

namespace {

constexpr CatalogueRow kCatalogue[] = {
    {&kTable<KCellularLteRrcState>, K_LTE_RRC_STATE},
    {&kTable<KCellularLteCdrxConfig>, K_LTE_CDRX_CONFIG},
    {&kTable<KCellularLteServingCellMeasurement>, K_LTE_SCELL_MEAS},
    {&kTable<RxInfo>},
    {&kTable<KCellularLteRsrpRsrqSinr>, K_LTE_RSRP_RSRQ_SINR},
    {&kTable<RsrpRsrqSinr>},
    {&kTable<KCellularLteTxPower>, K_LTE_TX_POWER},
    {&kTable<TxPowerInfo>},
    {&kTable<KCellularLteNbrEutraCellMeas>, K_LTE_INTRARAT_MEAS},
    {&kTable<EgwErrcNbrEutraMeas>},
    {&kTable<KCellularLteNbrInterRatCellMeas>, K_LTE_INTERRAT_MEAS},
    {&kTable<EgwErrcNbrUtraMeas>},
    {&kTable<EgwErrcNbrGeranMeas>},
    {&kTable<KCellularLteSelReselCellInfo>, K_LTE_SEL_RESEL_INFO},
    {&kTable<NbrEutra>},
    {&kTable<KCellularLteScellInfo>, K_LTE_SCELL_INFO},
    {&kTable<KCellularLteComponentCarrierInfo>, K_LTE_COMPCARR_INFO},
    {&kTable<KCellularLteCarrierAggregationStatus>, K_LTE_CA_STATUS},
    {&kTable<SecondaryComponentCarrier>},
    {&kTable<KCellularLteSecondaryCellMeasurements>, K_LTE_SECONDARYCELL_MEAS},
    {&kTable<SccRxMeasurement>},
    {&kTable<KCellularWcdmaRrcConnectionState>, K_UMTS_RRC_STATE},
    {&kTable<KCellularWcdmaRrcConfiguration>, K_UMTS_RRC_CONFIG},
    {&kTable<KCellularWcdmaCellInfo>, K_UMTS_SCELL_INFO},
    {&kTable<KCellularWcdmaScellMeasurement>, K_UMTS_SCELL_MEAS},
    {&kTable<KCellularWcdmaNbrCellMeas>, K_UMTS_NCELL_MEAS},
    {&kTable<UtraCellMeasResult>},
    {&kTable<GsmCellMeasResult>},
    {&kTable<LteCellMeasResult>},
    {&kTable<KCellularWcdmaTxPower>, K_UMTS_TX_POWER},
    {&kTable<KCellularWcdmaSelReselCellInfo>, K_UMTS_SEL_RESEL_INFO},
    {&kTable<EutraFreqInfo>},
    {&kTable<UtraFreqInfo>},
    {&kTable<GsmFreqInfo>},
    {&kTable<KCellularGsmScellInfo>, K_GSM_SCELL_INFO},
    {&kTable<KCellularGsmIdleConfig>, K_GSM_IDLE_CONFIG},
    {&kTable<KCellularGsmGprsConfig>, K_GSM_GPRS_CONFIG},
    {&kTable<KCellularGsmIdleScellMeasurement>, K_GSM_IDLE_SCELL_MEAS},
    {&kTable<KCellularGsmCsRfMeasurement>, K_GSM_CS_RF_MEAS},
    {&kTable<KCellularGsmGrrEventMeasCr>, K_GSM_NCELL_MEAS},
    {&kTable<GsmNcellMeas>},
    {&kTable<UmtsNcellMeas>},
    {&kTable<LteNcellMeas>},
    {&kTable<KCellularMmCommonInfo>, K_CELLULAR_MM_INFO},
    {&kTable<Plmn>},
    {&kTable<KCellularLocationAreaId>},
    {&kTable<KCellularTrackingAreaId>},
    {&kTable<RoutingAreaId>},
    {&kTable<KCellularMmContext>, K_CELLULAR_MM_CTXT},
    {&kTable<KCellularGmmContext>, K_CELLULAR_GMM_CTXT},
    {&kTable<KCellularEmmContext>, K_LTE_EMM_CTXT},
    {&kTable<Guti>},
    {&kTable<KCellularActivatedBearerContexts>, K_CELLULAR_ACTIVE_BEARER},
    {&kTable<BearerContext>},
    {&kTable<KCellularSimCardFiles>, K_SIM_FILE_INFO},
    {&kTable<ElementaryFile>},
};

const CatalogueRow* firstWhere(auto condition) {
  const auto* row = std::ranges::find_if(kCatalogue, condition);
  return row == std::end(kCatalogue) ? nullptr : row;
}

}  // namespace

std::span<const CatalogueRow> catalogue() { return kCatalogue; }

const CatalogueRow* catalogueRow(std::string_view className) {
  return firstWhere([&](const CatalogueRow& row) { return row.table->name == className; });
}

const CatalogueRow* catalogueRow(std::int64_t metricID) {
  return firstWhere(
      [&](const CatalogueRow& row) { return row.metricID != 0 && row.metricID == metricID; });
}

}  // namespace quorin
