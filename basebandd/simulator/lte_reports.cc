#include <map>

#include "basebandd/levels.h"
#include "basebandd/simulator/State.h"
#include "basebandd/simulator/reports.h"
#include "messages/lte/KCellularLteNbrEutraCellMeas.h"
#include "messages/lte/KCellularLteNbrInterRatCellMeas.h"
#include "messages/lte/KCellularLteRsrpRsrqSinr.h"
#include "messages/lte/KCellularLteScellInfo.h"
#include "messages/lte/KCellularLteSelReselCellInfo.h"
#include "messages/lte/KCellularLteTxPower.h"
#include "metrics/registry/metric_ids.h"

namespace quorin::simulator {

namespace {

// How many cells a modem keeps track of: on each LTE frequency (TS 36.133 8.1.2.2.1), and of each
// other technology.
constexpr std::size_t kMostNeighbours = 8;

bool isOn(const State& state) { return technology(state) == Technology::lte; }

bool fillServingCell(const State& state, KCellularLteScellInfo& message) {
  if (!isOn(state)) return false;
  const Cell& cell = *state.mobility.cell;
  message.setPhyCellId(cell.code);
  message.setDlFreq(cell.channel);
  message.setUlFreq(cell.carrier->uplinkChannel);
  message.setDlBw(2 * cell.carrier->bandwidthMHz);
  message.setUlBw(2 * cell.carrier->bandwidthMHz);
  message.setCellId(cell.cellID);
  message.setFreqBandInd(cell.carrier->band);
  message.setTrackingAreaCode(cell.site->trackingArea);
  message.setNumMncDigits(kMncDigits);
  message.setSelPlmnMcc(kMcc);
  message.setSelPlmnMnc(kMnc);
  return true;
}

constexpr std::int32_t kFdd = valueOf(names::FRAME_TYPE, "FDD");
constexpr std::int32_t kPmax = 23;  // dBm

bool fillReselection(const State& state, KCellularLteSelReselCellInfo& message) {
  if (!isOn(state)) return false;
  const Carrier& serving = *state.mobility.cell->carrier;
  message.addMultiBandInfo(serving.band);
  message.setImsEmergencySupport(1);
  message.setQRxLevMin(rounded(serving.qRxLevMin));
  message.setQHyst(static_cast<std::uint32_t>(serving.qHyst));
  message.setSNonIntraSearchP(static_cast<std::uint32_t>(serving.sNonIntraSearch));
  message.setSIntraSearchP(kIntraSearch);
  message.setThreshServingLowP(static_cast<std::uint32_t>(serving.threshServingLow));
  message.setPriorityOperatingFreq(serving.priority);
  for (const Carrier& other : carriers()) {
    if (other.technology != Technology::lte || &other == &serving) continue;
    const auto row = make<NbrEutra>();
    row->setEarfcn(other.channel);
    row->setQRxlevMin(rounded(other.qRxLevMin));
    row->setQOffset(0);
    row->setPmax(kPmax);
    row->setDlBw(other.bandwidthCode);
    row->setThresXHighP(static_cast<std::uint32_t>(other.threshXHigh));
    row->setThresXLowP(static_cast<std::uint32_t>(other.threshXLow));
    row->setPriority(other.priority);
    row->setFrameType(kFdd);
    row->setBand(other.band);
    message.addNbrEutra(row);
  }
  return true;
}

Ref<RsrpRsrqSinr> qualityOf(const Cell& cell, const ServingQuality::Sample& sample) {
  auto values = make<RsrpRsrqSinr>();
  values->setPhyCellId(cell.code);
  values->setRsrp0(rounded(sample.main.rsrp));
  values->setRsrp1(rounded(sample.other.rsrp));
  values->setRsrq0(rounded(sample.main.rsrq));
  values->setRsrq1(rounded(sample.other.rsrq));
  values->setSinr0(rounded(2 * sample.main.sinr));
  values->setSinr1(rounded(2 * sample.other.sinr));
  return values;
}

void add(Branch& sum, const Branch& more, double share) {
  sum.rsrp += share * more.rsrp;
  sum.rsrq += share * more.rsrq;
  sum.sinr += share * more.sinr;
}

bool fillQuality(const State& state, KCellularLteRsrpRsrqSinr& message) {
  const auto& samples = state.quality.samples;
  if (!isOn(state) || samples.empty()) return false;
  const auto count = static_cast<std::uint32_t>(samples.size());
  ServingQuality::Sample mean{};
  for (const ServingQuality::Sample& sample : samples) {
    add(mean.main, sample.main, 1.0 / count);
    add(mean.other, sample.other, 1.0 / count);
  }
  message.setLastXSeconds(1);
  message.setLastYSamples(1);
  message.setSamplePeriodMs(static_cast<std::uint32_t>(RadioMap::kPeriodMs));
  message.setDurationMs(count * static_cast<std::uint32_t>(RadioMap::kPeriodMs));
  message.setNumSamples(count);
  message.setAvgValues(qualityOf(*state.mobility.cell, mean));
  message.addInstValues(qualityOf(*state.mobility.cell, samples.back()));
  return true;
}

bool fillNeighbours(const State& state, KCellularLteNbrEutraCellMeas& message) {
  if (!isOn(state)) return false;
  std::map<std::uint32_t, std::size_t> reported;  // by EARFCN
  for (const Cell* cell : neighbours(state, Technology::lte)) {
    if (reported[cell->channel] == kMostNeighbours && cell != state.mobility.target) continue;
    ++reported[cell->channel];
    const Measurement& measured = state.radio.of(*cell);
    const auto row = make<EgwErrcNbrEutraMeas>();
    row->setNbrEarfcn(cell->channel);
    row->setNbrPhysCellId(cell->code);
    row->setFreqBandInd(cell->carrier->band);
    row->setNbrRsrp(rounded(measured.level));
    row->setNbrRsrq(rounded(2 * measured.quality));
    message.addMeasNbrEutra(row);
  }
  return true;
}

bool fillOtherTechnologies(const State& state, KCellularLteNbrInterRatCellMeas& message) {
  if (!isOn(state)) return false;
  for (const Cell* cell : neighbours(state, Technology::umts)) {
    if (message.measNbrUtrasCount() == kMostNeighbours) break;
    const auto row = make<EgwErrcNbrUtraMeas>();
    row->setUarfcn(cell->channel);
    row->setPsc(cell->code);
    row->setRscp(rounded(state.radio.of(*cell).level));
    row->setEcno(reportIndex(state.radio.of(*cell).quality, -24, 0.5, 49));
    message.addMeasNbrUtra(row);
  }
  for (const Cell* cell : neighbours(state, Technology::gsm)) {
    if (message.measNbrGeransCount() == kMostNeighbours) break;
    const auto row = make<EgwErrcNbrGeranMeas>();
    row->setArfcn(cell->channel);
    row->setBsic(cell->code);
    row->setRxlev(reportIndex(state.radio.of(*cell).level, -110, 1, 63));
    message.addMeasNbrGeran(row);
  }
  return true;
}

constexpr std::uint32_t kCallBlocks = 2;
constexpr std::uint32_t kSignallingBlocks = 3;
constexpr std::uint32_t kSubframes[] = {2, 7};

std::uint32_t uplinkBlocks(const State& state) {
  if (state.traffic.isTransferring()) return state.traffic.session()->uplinkBlocks;
  if (state.traffic.isCalling()) return kCallBlocks;
  return state.registration.eps.isPending ? kSignallingBlocks : 0;
}

bool fillTransmitPower(const State& state, KCellularLteTxPower& message) {
  if (!isOn(state) || !state.lte.isConnected()) return false;
  const Cell& cell = *state.mobility.cell;
  const double pathLoss = cell.carrier->referencePower - state.radio.of(cell).level;
  const std::uint32_t blocks = uplinkBlocks(state);
  for (const std::uint32_t subframe : kSubframes) {
    const auto row = make<TxPowerInfo>();
    row->setPucchTxPower(rounded(pucchPower(pathLoss, state.uplink.pucchCorrections)));
    if (blocks > 0)
      row->setPuschTxPower(rounded(puschPower(blocks, pathLoss, state.uplink.puschCorrections)));
    row->setSubframeIndex(subframe);
    message.addTxPowerInfo(row);
  }
  return true;
}

constexpr Report kReports[] = {
    {K_LTE_SCELL_INFO, 0, 0, nullptr, made<KCellularLteScellInfo, fillServingCell>},
    {K_LTE_SEL_RESEL_INFO, 0, 0, nullptr, made<KCellularLteSelReselCellInfo, fillReselection>},
    {K_LTE_RSRP_RSRQ_SINR, 1000, 0, nullptr, made<KCellularLteRsrpRsrqSinr, fillQuality>},
    {K_LTE_TX_POWER, 1000, 160, nullptr, made<KCellularLteTxPower, fillTransmitPower>},
    {K_LTE_INTRARAT_MEAS, 1000, 0, measurementReports,
     made<KCellularLteNbrEutraCellMeas, fillNeighbours>},
    {K_LTE_INTERRAT_MEAS, 1000, 320, measurementReports,
     made<KCellularLteNbrInterRatCellMeas, fillOtherTechnologies>},
};

}  // namespace

std::span<const Report> lteReports() { return kReports; }

}  // namespace quorin::simulator
