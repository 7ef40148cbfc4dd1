#include "metrics/registry/KBBMetricUtility.h"

#include <algorithm>
#include <array>

#include "platform/platform.h"

namespace quorin {

namespace {

// The names are values only and find no class: the lower-case initials of the GSM and SIM names and
// "KCellularRsrpRsrqSinr" are meant.
constexpr MetricTag kTags[] = {
    {19972, "KCellularLteRrcState"},
    {19992, "KCellularLteCdrxConfig"},
    {20005, "KCellularLteRadioLinkFailure"},
    {16578, "KCellularLteScellInfo"},
    {54030, "KCellularLteSelReselCellInfo"},
    {54017, "KCellularLteServingCellMeasurement"},
    {54018, "KCellularLteTxPower"},
    {20330, "KCellularRsrpRsrqSinr"},
    {54540, "KCellularEmmContext"},
    {54027, "KCellularLteComponentCarrierInfo"},
    {54035, "KCellularLteCarrierAggregationStatus"},
    {54032, "KCellularLteNbrInterRatCellMeas"},
    {54031, "KCellularLteNbrEutraCellMeas"},
    {54537, "KCellularMmCommonInfo"},
    {54541, "KCellularActivatedBearerContexts"},
    {53522, "KCellularWcdmaRrcConnectionState"},
    {12300, "KCellularWcdmaCellInfo"},
    {53506, "KCellularWcdmaScellMeasurement"},
    {53507, "KCellularWcdmaTxPower"},
    {53509, "KCellularWcdmaNbrCellMeas"},
    {53508, "KCellularWcdmaSelReselCellInfo"},
    {53523, "KCellularWcdmaRrcConfiguration"},
    {54538, "KCellularMmContext"},
    {54539, "KCellularGmmContext"},
    {11788, "kCellularGsmScellInfo"},
    {53249, "kCellularGsmIdleConfig"},
    {53250, "kCellularGsmIdleScellMeasurement"},
    {53251, "kCellularGsmCsRfMeasurement"},
    {53257, "kCellularGsmGrrEventMeasCr"},
    {53260, "kCellularGsmGprsConfig"},
    {19, "kCellularSimCardFiles"},
};

constexpr auto kSortedTags = [] {
  std::array<std::uint16_t, std::size(kTags)> tags{};
  std::ranges::transform(kTags, tags.begin(), &MetricTag::tag);
  std::ranges::sort(tags);
  return tags;
}();

}  // namespace

bool KBBMetricUtility::isValidMetricIdTag(std::uint16_t tag, std::string_view /*forClass*/) {
  if (!std::ranges::binary_search(kSortedTags, tag)) return false;
  systemLog("valid metricId tag");
  return true;
}

std::span<const MetricTag> KBBMetricUtility::tags() { return kTags; }

}  // namespace quorin
