#include "basebandd/levels.h"
#include "basebandd/simulator/State.h"
#include "basebandd/simulator/reports.h"
#include "messages/lte/KCellularLteCarrierAggregationStatus.h"
#include "messages/lte/KCellularLteComponentCarrierInfo.h"
#include "messages/lte/KCellularLteSecondaryCellMeasurements.h"
#include "metrics/registry/metric_ids.h"

namespace quorin::simulator {

namespace {

std::int32_t hundredths(double level) { return rounded(100 * level); }

// Levels of a carrier, the same in both lists.
template <class M>
void setLevels(M& message, const Measurement& measured) {
  message.setRsrp(hundredths(measured.level));
  message.setRsrq(hundredths(measured.quality));
  message.setSnr(rounded(measured.sinr));
  message.setRssi(hundredths(measured.rssi));
}

bool fillComponents(const State& state, KCellularLteComponentCarrierInfo& message) {
  if (technology(state) != Technology::lte) return false;
  const Carrier& primary = *state.mobility.cell->carrier;
  message.setPccEarfcn(primary.channel);
  message.setPccBandwidth(primary.bandwidthMHz);
  const auto& [first, second] = state.aggregation.carriers;
  if (first.cell) {
    message.setScc0Earfcn(first.cell->channel);
    message.setScc0Bandwidth(first.cell->carrier->bandwidthMHz);
  }
  if (second.cell) {
    message.setScc1Earfcn(second.cell->channel);
    message.setScc1Bandwidth(second.cell->carrier->bandwidthMHz);
  }
  return true;
}

// Both carriers stand in the list while there is a connection; one that is not configured has
// nothing but its state.
bool fillStatus(const State& state, KCellularLteCarrierAggregationStatus& message) {
  if (technology(state) != Technology::lte) return false;
  if (!state.lte.isConnected()) return true;
  std::uint32_t index = 0;
  for (const SecondaryCarrier& carrier : state.aggregation.carriers) {
    const auto row = make<SecondaryComponentCarrier>();
    row->setIndex(++index);
    row->setState(carrier.state);
    if (carrier.cell) {
      row->setPci(carrier.cell->code);
      row->setDlEarfcn(carrier.cell->channel);
      row->setDlRfBand(carrier.cell->carrier->band);
      row->setDlBandwidth(carrier.cell->carrier->bandwidthCode);
      row->setHasUplink(false);
      setLevels(*row, state.radio.of(*carrier.cell));
    }
    message.addSccList(row);
  }
  return true;
}

bool fillMeasurements(const State& state, KCellularLteSecondaryCellMeasurements& message) {
  if (technology(state) != Technology::lte) return false;
  std::uint32_t index = 0;
  for (const SecondaryCarrier& carrier : state.aggregation.carriers) {
    ++index;
    if (!carrier.cell) continue;
    const auto row = make<SccRxMeasurement>();
    row->setIndex(index);
    setLevels(*row, state.radio.of(*carrier.cell));
    message.addSccRxMeasurement(row);
  }
  return message.sccRxMeasurementsCount() > 0;
}

// Periodic levels are of interest only with a carrier; otherwise the list comes when it changes.
bool fillStatusLevels(const State& state, KCellularLteCarrierAggregationStatus& message) {
  for (const SecondaryCarrier& carrier : state.aggregation.carriers)
    if (carrier.cell) return fillStatus(state, message);
  return false;
}

std::uint64_t configuration(const State& state) {
  std::uint64_t key = technology(state) == Technology::lte ? 1 : 0;
  key = key << 1 | (state.lte.isConnected() ? 1 : 0);
  for (const SecondaryCarrier& carrier : state.aggregation.carriers)
    key = key << 12 | (carrier.cell ? carrier.cell->index + 1 : 0) << 2 |
          static_cast<std::uint64_t>(carrier.state);
  return key;
}

constexpr std::int64_t kNever = 1LL << 62;

constexpr Report kReports[] = {
    {K_LTE_COMPCARR_INFO, 0, 0, nullptr, made<KCellularLteComponentCarrierInfo, fillComponents>},
    {K_LTE_CA_STATUS, kNever, 1, configuration,
     made<KCellularLteCarrierAggregationStatus, fillStatus>},
    {K_LTE_CA_STATUS, 1000, 440, nullptr,
     made<KCellularLteCarrierAggregationStatus, fillStatusLevels>},
    {K_LTE_SECONDARYCELL_MEAS, 1000, 440, nullptr,
     made<KCellularLteSecondaryCellMeasurements, fillMeasurements>},
};

}  // namespace

std::span<const Report> lteCarrierReports() { return kReports; }

}  // namespace quorin::simulator
