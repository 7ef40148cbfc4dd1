#include "basebandd/simulator/State.h"
#include "basebandd/simulator/reports.h"
#include "messages/lte/KCellularLteCdrxConfig.h"
#include "messages/lte/KCellularLteRrcState.h"
#include "messages/umts/KCellularWcdmaRrcConfiguration.h"
#include "messages/umts/KCellularWcdmaRrcConnectionState.h"
#include "metrics/registry/metric_ids.h"

namespace quorin::simulator {

namespace {

bool fillLteState(const State& state, KCellularLteRrcState& message) {
  message.setState(state.lte.state);
  message.setPrevState(state.lte.previous);
  message.setPrevStateDurMs(state.lte.previousMs);
  message.setCause(state.lte.cause);
  return true;
}

bool fillUmtsState(const State& state, KCellularWcdmaRrcConnectionState& message) {
  if (!state.umts.wasEverActive) return false;
  message.setState(state.umts.state);
  if (state.umts.establishmentCause >= 0)
    message.setEstablishmentCause(state.umts.establishmentCause);
  if (state.umts.releaseCause >= 0) message.setReleaseCause(state.umts.releaseCause);
  return true;
}

/// Connected-mode DRX as the network sets it up (TS 36.331 6.3.2, DRX-Config): all in ms but the
/// number of short cycles. The short cycle divides the long one.
struct Drx {
  std::uint32_t onDuration;
  std::uint32_t inactivity;
  std::uint32_t retransmission;
  std::uint32_t longCycle;
  std::uint32_t shortCycle;
  std::uint32_t shortCycles;
};
constexpr Drx kDataDrx = {10, 100, 8, 320, 40, 4};
constexpr Drx kCallDrx = {8, 10, 4, 40, 20, 2};
constexpr std::int64_t kDrxSetupMs = 120;

// Two antenna ports, open loop (TS 36.213 7.1).
constexpr std::uint32_t kTransmissionMode = 3;

bool fillDrx(const State& state, KCellularLteCdrxConfig& message) {
  if (technology(state) != Technology::lte) return false;
  const bool isConnected = state.lte.isConnected();
  message.setRrcState(isConnected || state.lte.isReestablishing ? state.lte.state : lte_rrc::kIdle);
  const bool isConfigured = isConnected && state.now - state.lte.since >= kDrxSetupMs;
  message.setCdrxConfigStatus(isConfigured);
  if (isConnected) message.setTransmissionMode(kTransmissionMode);
  if (!isConfigured) return true;
  const Drx& drx = state.traffic.isCalling() ? kCallDrx : kDataDrx;
  message.setOnDurationMs(drx.onDuration);
  message.setDrxInactivityMs(drx.inactivity);
  message.setDrxRetxTimerMs(drx.retransmission);
  message.setLongDrxCycleMs(drx.longCycle);
  message.setShortDrxCycleMs(drx.shortCycle);
  message.setDrxShortCycleNum(drx.shortCycles);
  return true;
}

constexpr std::uint32_t kIdleCycleMs = 640;  // cycle length coefficients of TS 25.331 10.3.3.49
constexpr std::uint32_t kPchCycleMs = 320;

bool fillUmtsConfiguration(const State& state, KCellularWcdmaRrcConfiguration& message) {
  if (technology(state) != Technology::umts) return false;
  if (state.umts.state == umts_rrc::kIdle) message.setDrxCycleLengthMs(kIdleCycleMs);
  if (state.umts.state == umts_rrc::kUraPch) message.setDrxCycleLengthMs(kPchCycleMs);
  message.setIsMimoConfigured(false);
  message.setIsDcConfigured(false);
  return true;
}

constexpr Report kReports[] = {
    {K_LTE_RRC_STATE, 0, 0, nullptr, made<KCellularLteRrcState, fillLteState>},
    {K_UMTS_RRC_STATE, 0, 0, nullptr, made<KCellularWcdmaRrcConnectionState, fillUmtsState>},
    {K_LTE_CDRX_CONFIG, 0, 0, nullptr, made<KCellularLteCdrxConfig, fillDrx>},
    {K_UMTS_RRC_CONFIG, 0, 0, nullptr, made<KCellularWcdmaRrcConfiguration, fillUmtsConfiguration>},
};

}  // namespace

std::span<const Report> rrcReports() { return kReports; }

std::uint64_t measurementReports(const State& state) { return state.mobility.reported; }

}  // namespace quorin::simulator
