#include "basebandd/simulator/aggregation.h"

#include "basebandd/simulator/State.h"

namespace quorin::simulator {

namespace {

constexpr std::int64_t kSettledMs = 400;        // after the connection or the handover
constexpr std::int64_t kBetweenMs = 200;        // one reconfiguration at a time
constexpr std::int64_t kDeactivationMs = 1280;  // sCellDeactivationTimer rf128
constexpr std::int64_t kNotHeavyMs = 5000;      // then the network takes the carriers back
constexpr std::int64_t kWeakMs = 640;
constexpr double kAddOver = 16;    // dB over qRxLevMin
constexpr double kDropUnder = 10;  // dB over qRxLevMin

void move(SecondaryCarrier& carrier, std::int64_t now, std::int32_t state) {
  carrier.state = state;
  carrier.since = now;
  if (state == scc::kDeconfigured) carrier.cell = nullptr;
}

bool isInUse(const Aggregation& aggregation, const Cell& cell) {
  for (const SecondaryCarrier& carrier : aggregation.carriers)
    if (carrier.cell == &cell) return true;
  return false;
}

// A cell of the serving sector on another carrier.
const Cell* candidate(const State& state) {
  const Cell& serving = *state.mobility.cell;
  for (const Cell& cell : cells())
    if (cell.technology() == Technology::lte && cell.site == serving.site &&
        cell.sector == serving.sector && &cell != &serving && isSuitable(state, cell) &&
        state.radio.srxlev(cell) > kAddOver && !isInUse(state.aggregation, cell))
      return &cell;
  return nullptr;
}

bool isWeak(State& state, SecondaryCarrier& carrier) {
  if (state.radio.srxlev(*carrier.cell) >= kDropUnder) {
    carrier.weakSince = -1;
    return false;
  }
  if (carrier.weakSince < 0) carrier.weakSince = state.now;
  return state.now - carrier.weakSince >= kWeakMs;
}

void stepCarrier(State& state, SecondaryCarrier& carrier) {
  Aggregation& aggregation = state.aggregation;
  const std::int64_t now = state.now;
  if (carrier.state == scc::kDeconfigured) {
    if (aggregation.heavyAt != now || now - carrier.since < kBetweenMs) return;
    carrier.cell = candidate(state);
    carrier.weakSince = -1;
    if (carrier.cell) move(carrier, now, scc::kDeactivated);
    return;
  }
  if (isWeak(state, carrier) || now - aggregation.heavyAt >= kNotHeavyMs)
    return move(carrier, now, scc::kDeconfigured);
  if (carrier.state == scc::kDeactivated && aggregation.busyAt == now &&
      now - carrier.since >= kBetweenMs)
    return move(carrier, now, scc::kActivated);
  if (carrier.state == scc::kActivated && now - aggregation.busyAt >= kDeactivationMs)
    move(carrier, now, scc::kDeactivated);
}

}  // namespace

void Aggregation::deconfigureAll(std::int64_t now) {
  for (SecondaryCarrier& carrier : carriers)
    if (carrier.state != scc::kDeconfigured) move(carrier, now, scc::kDeconfigured);
}

void stepAggregation(State& state) {
  Aggregation& aggregation = state.aggregation;
  if (!state.lte.isConnected() || technology(state) != Technology::lte)
    return aggregation.deconfigureAll(state.now);
  const bool heavy = state.traffic.session() && state.traffic.session()->isHeavy;
  if (heavy) aggregation.heavyAt = state.now;
  if (heavy && state.traffic.isTransferring()) aggregation.busyAt = state.now;
  if (state.now - std::max(state.lte.since, state.mobility.since) < kSettledMs) return;
  for (SecondaryCarrier& carrier : aggregation.carriers) {
    const std::int64_t before = carrier.since;
    stepCarrier(state, carrier);
    if (carrier.since != before) return;
  }
}

}  // namespace quorin::simulator
