#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace quorin {

/// One metric tag and the name of its message type.
struct MetricTag {
  std::uint16_t tag;
  std::string_view name;
};

// The names are values only and find no class: the lower-case initials of the GSM and SIM names and
// "KCellularRsrpRsrqSinr" are meant.
inline constexpr MetricTag kMetricTags[] = {
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

/// The metric tags that the program knows. Any thread.
class KBBMetricUtility {
 public:
  /// Whether `tag` is a metric tag. The class is taken and not used: meant. Every yes writes one
  /// line to the system log.
  [[nodiscard]] static bool isValidMetricIdTag(std::uint16_t tag, std::string_view forClass);

  /// The same answer without the line, so that a compiler can give it.
  [[nodiscard]] static constexpr bool isTag(std::uint16_t tag) {
    const auto* after = std::ranges::lower_bound(kSortedTags, tag);
    return after != kSortedTags.end() && *after == tag;
  }

  /// All 31, in their own order.
  [[nodiscard]] static std::span<const MetricTag> tags();

 private:
  static constexpr auto kSortedTags = [] {
    std::array<std::uint16_t, std::size(kMetricTags)> tags{};
    std::ranges::transform(kMetricTags, tags.begin(), &MetricTag::tag);
    std::ranges::sort(tags);
    return tags;
  }();
};

}  // namespace quorin
