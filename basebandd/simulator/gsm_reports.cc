#include "basebandd/levels.h"
#include "basebandd/simulator/State.h"
#include "basebandd/simulator/reports.h"
#include "messages/gsm/KCellularGsmCsRfMeasurement.h"
#include "messages/gsm/KCellularGsmGprsConfig.h"
#include "messages/gsm/KCellularGsmGrrEventMeasCr.h"
#include "messages/gsm/KCellularGsmIdleConfig.h"
#include "messages/gsm/KCellularGsmIdleScellMeasurement.h"
#include "messages/gsm/KCellularGsmScellInfo.h"
#include "metrics/registry/metric_ids.h"

namespace quorin::simulator {

namespace {

constexpr std::size_t kMostNeighbours = 6;

bool isOn(const State& state) { return technology(state) == Technology::gsm; }

std::uint32_t rxlev(const State& state, const Cell& cell) {
  return reportIndex(state.radio.of(cell).level, -110, 1, 63);
}

// RXQUAL from carrier over noise in dB: a little over 20 dB leaves no bit errors (TS 45.008 8.2.4).
std::uint32_t rxqual(double carrierOverNoise) {
  return 7 - std::min<std::uint32_t>(7, reportIndex(carrierOverNoise, 3, 3, 7));
}

bool fillServingCell(const State& state, KCellularGsmScellInfo& message) {
  if (!isOn(state)) return false;
  const Cell& cell = *state.mobility.cell;
  message.setMcc(kMcc);
  message.setMnc(kMnc);
  message.setLac(cell.locationArea());
  message.setCellId(cell.cellID);
  message.setGsmBand(cell.carrier->sysBand);
  message.setArfcn(cell.channel);
  message.setBsic(cell.code);
  message.setState(state.gsm.isDedicated ? valueOf(names::DEDICATED_STATE, "DEDICATED_STATE")
                                         : valueOf(names::DEDICATED_STATE, "NON_DEDICATED_STATE"));
  message.setNumMncDigits(kMncDigits);
  return true;
}

// Broadcast in the model's GSM cells (TS 44.018 10.5.2): levels and powers in dB and dBm, the
// radio link timeout in SACCH blocks, T3212 in tenths of an hour.
constexpr std::uint32_t kRadioLinkTimeout = 24;
constexpr std::uint32_t kMaximumPower = 33;
constexpr std::uint32_t kPagingMultiframes = 5;
constexpr std::uint32_t kMaximumRetransmissions = 2;
constexpr std::uint32_t kSecondsPerT3212 = 360;

bool fillIdleConfiguration(const State& state, KCellularGsmIdleConfig& message) {
  if (!isOn(state)) return false;
  const Cell& cell = *state.mobility.cell;
  message.setArfcnBcch(cell.channel);
  message.setMcc(kMcc);
  message.setMnc(kMnc);
  message.setLac(cell.locationArea());
  message.setCi(cell.cellID);
  message.setBsic(cell.code);
  message.setDtxFromBs(1);
  message.setRadioLinkTimeout(kRadioLinkTimeout);
  message.setMsTxpwr(kMaximumPower);
  message.setRxAccMin(reportIndex(cell.carrier->qRxLevMin, -110, 1, 63));
  message.setCbq(0);
  message.setCba(0);
  message.setC2Valid(0);
  message.setT3212(kT3212Seconds / kSecondsPerT3212);
  message.setBsPaMfrms(kPagingMultiframes);
  message.setMaxRetransCs(kMaximumRetransmissions);
  message.setEmergCallAllowed(1);
  message.setAttachAllowed(1);
  message.setReestAllowed(0);
  return true;
}

bool fillGprs(const State& state, KCellularGsmGprsConfig& message) {
  if (!isOn(state)) return false;
  message.setGprsSup(true);
  message.setRac(kRoutingAreaCode);
  message.setSpPgCy(false);
  message.setNco(0);
  message.setNom(2);
  message.setCrHyst(static_cast<std::uint32_t>(state.mobility.cell->carrier->qHyst));
  return true;
}

bool fillIdleMeasurement(const State& state, KCellularGsmIdleScellMeasurement& message) {
  if (!isOn(state) || state.gsm.isDedicated) return false;
  message.setScellArfcn(state.mobility.cell->channel);
  message.setIdleRxlevDBm(rounded(state.radio.of(*state.mobility.cell).level));
  return true;
}

bool fillCallMeasurement(const State& state, KCellularGsmCsRfMeasurement& message) {
  if (!isOn(state) || !state.gsm.isDedicated) return false;
  const Cell& cell = *state.mobility.cell;
  message.setScellArfcn(cell.channel);
  message.addCsTxPwr(gsmPower(state.radio.of(cell).level));
  message.setCsRxlevSub(rxlev(state, cell));
  message.setCsRxqualSub(rxqual(state.radio.of(cell).quality));
  return true;
}

void addGsm(const State& state, const Cell& cell, KCellularGsmGrrEventMeasCr& message) {
  const auto row = make<GsmNcellMeas>();
  row->setMcc(kMcc);
  row->setMnc(kMnc);
  row->setLac(cell.locationArea());
  row->setCi(cell.cellID);
  row->setBsic(cell.code);
  row->setArfcn(cell.channel);
  row->setRxlev(rxlev(state, cell));
  message.addGsmNcellMeas(row);
}

void addUmts(const State& state, const Cell& cell, KCellularGsmGrrEventMeasCr& message) {
  const auto row = make<UmtsNcellMeas>();
  row->setCpichSc(cell.code);
  row->setDlUarfcn(cell.channel);
  row->setCpichRscp(reportIndex(state.radio.of(cell).level, -115, 1, 91));
  row->setCpichEcn0(reportIndex(state.radio.of(cell).quality, -24, 0.5, 49));
  message.addUmtsNcellMeas(row);
}

void addLte(const State& state, const Cell& cell, KCellularGsmGrrEventMeasCr& message) {
  const auto row = make<LteNcellMeas>();
  row->setPhysicalCellId(cell.code);
  row->setBandwidth(cell.carrier->bandwidthCode);
  row->setRsrp(reportIndex(state.radio.of(cell).level, -140, 1, 97));
  row->setEarfcn(cell.channel);
  row->setRsrq(reportIndex(state.radio.of(cell).quality, -19.5, 0.5, 34));
  message.addLteNcellMeas(row);
}

struct Neighbours {
  Technology technology;
  void (*add)(const State&, const Cell&, KCellularGsmGrrEventMeasCr&);
};
constexpr Neighbours kNeighbours[] = {
    {Technology::gsm, addGsm}, {Technology::umts, addUmts}, {Technology::lte, addLte}};

bool fillNeighbours(const State& state, KCellularGsmGrrEventMeasCr& message) {
  if (!isOn(state)) return false;
  for (const Neighbours& list : kNeighbours) {
    const auto found = neighbours(state, list.technology);
    for (std::size_t i = 0; i < found.size() && i < kMostNeighbours; ++i)
      list.add(state, *found[i], message);
  }
  return true;
}

constexpr Report kReports[] = {
    {K_GSM_SCELL_INFO, 0, 0, nullptr, made<KCellularGsmScellInfo, fillServingCell>},
    {K_GSM_IDLE_CONFIG, 0, 0, nullptr, made<KCellularGsmIdleConfig, fillIdleConfiguration>},
    {K_GSM_GPRS_CONFIG, 0, 0, nullptr, made<KCellularGsmGprsConfig, fillGprs>},
    {K_GSM_IDLE_SCELL_MEAS, 1000, 0, nullptr,
     made<KCellularGsmIdleScellMeasurement, fillIdleMeasurement>},
    {K_GSM_CS_RF_MEAS, 1000, 0, nullptr, made<KCellularGsmCsRfMeasurement, fillCallMeasurement>},
    {K_GSM_NCELL_MEAS, 1000, 240, measurementReports,
     made<KCellularGsmGrrEventMeasCr, fillNeighbours>},
};

}  // namespace

std::span<const Report> gsmReports() { return kReports; }

}  // namespace quorin::simulator
