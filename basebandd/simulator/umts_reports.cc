#include "basebandd/levels.h"
#include "basebandd/simulator/State.h"
#include "basebandd/simulator/reports.h"
#include "messages/umts/KCellularWcdmaCellInfo.h"
#include "messages/umts/KCellularWcdmaNbrCellMeas.h"
#include "messages/umts/KCellularWcdmaScellMeasurement.h"
#include "messages/umts/KCellularWcdmaSelReselCellInfo.h"
#include "messages/umts/KCellularWcdmaTxPower.h"
#include "metrics/registry/metric_ids.h"

namespace quorin::simulator {

namespace {

constexpr std::size_t kMostNeighbours = 8;
constexpr double kQqualMin = -18;       // dB
constexpr double kSecondAntenna = 2;    // dB below the first
constexpr double kDataOverControl = 4;  // dB: gain factors of DPDCH and DPCCH (TS 25.214 5.1.2.5)

bool isOn(const State& state) { return technology(state) == Technology::umts; }

bool fillServingCell(const State& state, KCellularWcdmaCellInfo& message) {
  if (!isOn(state)) return false;
  const Cell& cell = *state.mobility.cell;
  message.setMcc(kMcc);
  message.setMnc(kMnc);
  message.setLac(cell.locationArea());
  message.setCellId(cell.cellID);
  message.setWcdmaBand(cell.carrier->sysBand);
  message.setDlUarfcn(cell.channel);
  message.setPsc(cell.code);
  message.setNumMncDigits(kMncDigits);
  message.setHspa(valueOf(names::SYS_HS_IND, "SYS_HS_IND_HSDPA_HSUPA_SUPP_CELL"));
  return true;
}

bool fillServingMeasurement(const State& state, KCellularWcdmaScellMeasurement& message) {
  if (!isOn(state)) return false;
  const Measurement& measured = state.radio.of(*state.mobility.cell);
  message.setConnectedMode(state.umts.isConnected());
  for (const double lost : {0.0, kSecondAntenna}) {
    const auto row = make<RxInfo>();
    row->setRssi(rounded(measured.rssi - lost));
    message.addRxInfo(row);
  }
  return true;
}

// The shared entry names LTE's channels; here they hold the control and the data channel.
bool fillTransmitPower(const State& state, KCellularWcdmaTxPower& message) {
  if (!isOn(state) || state.umts.state != umts_rrc::kDch) return false;
  const Cell& cell = *state.mobility.cell;
  const double pathLoss = cell.carrier->referencePower - state.radio.of(cell).level;
  const double control = dpcchPower(pathLoss, state.uplink.pucchCorrections);
  const auto row = make<TxPowerInfo>();
  row->setPucchTxPower(rounded(control));
  if (state.traffic.isTransferring() || state.traffic.isCalling())
    row->setPuschTxPower(rounded(std::min(kUmtsPmax, control + kDataOverControl)));
  message.addTxPowerInfo(row);
  return true;
}

bool fillReselection(const State& state, KCellularWcdmaSelReselCellInfo& message) {
  if (!isOn(state)) return false;
  const Cell& cell = *state.mobility.cell;
  message.setHsdpaCapable(1);
  message.setEdchCapable(1);
  message.setDuplexMode(valueOf(names::DUPLEX_MODE, "FDD"));
  message.addMultiBandInfo(cell.carrier->band);
  message.setCellBarred(0);
  message.setSRxlev(rounded(state.radio.srxlev(cell)));
  message.setSQual(rounded(state.radio.of(cell).quality - kQqualMin));
  message.setSSearchRat(rounded(cell.carrier->sNonIntraSearch));
  message.setSCellPrio(cell.carrier->priority);
  for (const Carrier& carrier : carriers()) {
    if (carrier.technology == Technology::lte) {
      const auto row = make<EutraFreqInfo>();
      row->setEarfcn(carrier.channel);
      row->setPrio(carrier.priority);
      message.addEutraPrioInfo(row);
    } else if (carrier.technology == Technology::umts) {
      const auto row = make<UtraFreqInfo>();
      row->setUarfcn(carrier.channel);
      row->setPrio(carrier.priority);
      message.addUtraPrioInfo(row);
    }
  }
  for (const Cell& other : cells()) {
    if (other.technology() != Technology::gsm || other.site != cell.site) continue;
    const auto row = make<GsmFreqInfo>();
    row->setArfcn(other.channel);
    row->setPrio(other.carrier->priority);
    message.addGsmPrioInfo(row);
  }
  return true;
}

void addUtra(const State& state, const Cell& cell, KCellularWcdmaNbrCellMeas& message) {
  const auto row = make<UtraCellMeasResult>();
  row->setUarfcn(cell.channel);
  row->setBand(cell.carrier->band);
  row->setPsc(cell.code);
  row->setEcno(reportIndex(state.radio.of(cell).quality, -24, 0.5, 49));
  row->setRscp(rounded(state.radio.of(cell).level));
  message.addMeasUtraResult(row);
}

void addGsm(const State& state, const Cell& cell, KCellularWcdmaNbrCellMeas& message) {
  const auto row = make<GsmCellMeasResult>();
  row->setArfcn(cell.channel);
  row->setBsic(cell.code);
  row->setRxlev(reportIndex(state.radio.of(cell).level, -110, 1, 63));
  message.addMeasGsmResult(row);
}

void addLte(const State& state, const Cell& cell, KCellularWcdmaNbrCellMeas& message) {
  const auto row = make<LteCellMeasResult>();
  row->setEarfcn(cell.channel);
  row->setPhyCellId(cell.code);
  row->setEutraBand(cell.carrier->band);
  row->setRsrp(rounded(state.radio.of(cell).level));
  row->setRsrq(rounded(2 * state.radio.of(cell).quality));
  message.addMeasLteResult(row);
}

struct Neighbours {
  Technology technology;
  void (*add)(const State&, const Cell&, KCellularWcdmaNbrCellMeas&);
};
constexpr Neighbours kNeighbours[] = {
    {Technology::umts, addUtra}, {Technology::gsm, addGsm}, {Technology::lte, addLte}};

bool fillNeighbours(const State& state, KCellularWcdmaNbrCellMeas& message) {
  if (!isOn(state)) return false;
  for (const Neighbours& list : kNeighbours) {
    const auto found = neighbours(state, list.technology);
    for (std::size_t i = 0; i < found.size() && i < kMostNeighbours; ++i)
      list.add(state, *found[i], message);
  }
  return true;
}

std::uint64_t servingCell(const State& state) {
  return isOn(state) ? state.mobility.cell->index + 1 : 0;
}

constexpr Report kReports[] = {
    {K_UMTS_SCELL_INFO, 0, 0, nullptr, made<KCellularWcdmaCellInfo, fillServingCell>},
    {K_UMTS_SEL_RESEL_INFO, 5000, 320, servingCell,
     made<KCellularWcdmaSelReselCellInfo, fillReselection>},
    {K_UMTS_SCELL_MEAS, 1000, 0, nullptr,
     made<KCellularWcdmaScellMeasurement, fillServingMeasurement>},
    {K_UMTS_TX_POWER, 1000, 160, nullptr, made<KCellularWcdmaTxPower, fillTransmitPower>},
    {K_UMTS_NCELL_MEAS, 1000, 0, measurementReports,
     made<KCellularWcdmaNbrCellMeas, fillNeighbours>},
};

}  // namespace

std::span<const Report> umtsReports() { return kReports; }

}  // namespace quorin::simulator
