#include <algorithm>

#include "basebandd/simulator/State.h"

namespace quorin::simulator {

namespace {

using namespace lte_rrc;

constexpr std::int64_t kSetupMs = 120;
constexpr std::int64_t kReleaseMs = 80;
constexpr std::int64_t kInactivityMs = 8000;            // after data
constexpr std::int64_t kSignallingInactivityMs = 1000;  // after signalling alone
constexpr std::int64_t kT310Ms = 1000;
constexpr std::int64_t kT311Ms = 3000;
constexpr std::int64_t kCellSearchMs = 200;

constexpr double kQout = -8;  // dB: TS 36.133 7.6.1, 10 % block errors of a hypothetical PDCCH
constexpr double kQin = -6;   // dB: 2 %
constexpr double kLeastForAccess = -7;           // dB
constexpr double kLeastForReestablishment = -5;  // dB

constexpr double kRejectedPercent = 1.5;
constexpr std::int64_t kWaitTimeMs = 4000;  // of the rejection
constexpr std::int64_t kNoResponseWaitMs = 2000;

double sinrOf(const State& state, const Cell& cell) { return state.radio.of(cell).sinr; }

void begin(State& state) {
  if (state.now < state.lte.barredUntil) return;
  const bool signals = state.registration.eps.isPending;
  // Data has to wait for the registration that its tracking area asks for.
  const bool isRegistered = state.registration.isListed(state.mobility.cell->site->trackingArea);
  if (!signals && !(isRegistered && state.traffic.isActive())) return;
  state.lte.nextAt = state.now + kSetupMs;
  state.lte.isReestablishing = false;
  state.lte.move(state.now, kAttempt, signals ? kSignalling : state.traffic.lteCause());
}

void finishSetup(State& state) {
  LteConnection& lte = state.lte;
  if (state.now < lte.nextAt) return;
  if (sinrOf(state, *state.mobility.cell) < kLeastForAccess) {
    lte.barredUntil = state.now + kNoResponseWaitMs;
    return lte.move(state.now, kIdle, kNoResponse);
  }
  if (lte.random.chance(kRejectedPercent)) {
    lte.barredUntil = state.now + kWaitTimeMs;
    return lte.move(state.now, kIdle, kRejected);
  }
  lte.activeAt = state.now;
  lte.carriedData = false;
  lte.lostSync = -1;
  lte.move(state.now, kConnected, lte.cause);
}

const Cell* reestablishmentCell(const State& state) {
  const Cell* best = bestSuitable(state, Technology::lte, Technology::lte);
  return best && sinrOf(state, *best) > kLeastForReestablishment &&
                 trackingArea(best->site->trackingArea).allowed
             ? best
             : nullptr;
}

void reestablish(State& state) {
  LteConnection& lte = state.lte;
  if (state.now - lte.since < kCellSearchMs) return;
  if (const Cell* found = reestablishmentCell(state)) {
    if (found != state.mobility.cell) campOn(state, *found);
    lte.isReestablishing = false;
    lte.lostSync = -1;
    lte.activeAt = state.now;
    return lte.move(state.now, kConnected, kReestablished);
  }
  if (state.now < lte.nextAt) return;
  lte.isReestablishing = false;
  const bool other = bestSuitable(state, Technology::umts, Technology::gsm) != nullptr;
  lte.move(state.now, other ? kNull : kIdle, other ? kOtherTechnologyFound : kNoCellFound);
  if (!other) return;
  state.mobility.cell = nullptr;
  state.mobility.target = nullptr;
  state.mobility.targetAt = state.now + kCellSearchMs;
}

// Radio link monitoring of TS 36.331 5.3.11: true when T310 ran out.
bool lostLink(State& state) {
  const double sinr = sinrOf(state, *state.mobility.cell);
  std::int64_t& since = state.lte.lostSync;
  if (since < 0 && sinr < kQout) since = state.now;
  if (since >= 0 && sinr > kQin) since = -1;
  return since >= 0 && state.now - since >= kT310Ms;
}

void carryOn(State& state) {
  LteConnection& lte = state.lte;
  if (lostLink(state)) {
    state.aggregation.deconfigureAll(state.now);
    lte.isReestablishing = true;
    lte.nextAt = state.now + kT311Ms;
    return lte.move(state.now, kAttempt, kReestablished);
  }
  if (state.traffic.isActive()) lte.carriedData = true;
  if (state.traffic.isTransferring() || state.traffic.isCalling() ||
      state.registration.eps.isPending)
    lte.activeAt = state.now;
  const std::int64_t patience = lte.carriedData ? kInactivityMs : kSignallingInactivityMs;
  if (state.now - lte.activeAt < patience || state.mobility.target) return;
  state.aggregation.deconfigureAll(state.now);
  lte.nextAt = state.now + kReleaseMs;
  lte.move(state.now, kEnding, kReleased);
}

}  // namespace

void LteConnection::move(std::int64_t now, std::int32_t to, std::int32_t why) {
  previous = state;
  previousMs = static_cast<std::uint32_t>(now - since);
  state = to;
  cause = why;
  since = now;
}

void stepLteConnection(State& state) {
  LteConnection& lte = state.lte;
  if (technology(state) != Technology::lte || lte.since == state.now) return;
  if (lte.state == kIdle) return begin(state);
  if (lte.state == kAttempt) return lte.isReestablishing ? reestablish(state) : finishSetup(state);
  if (lte.state == kConnected) return carryOn(state);
  if (state.now < lte.nextAt) return;
  if (lte.state == kEnding) lte.move(state.now, kIdle, kReleased);
  if (lte.state == kInbound) {
    lte.activeAt = state.now;
    lte.carriedData = true;
    lte.lostSync = -1;
    lte.move(state.now, kConnected, kHandedIn);
  }
}

}  // namespace quorin::simulator
