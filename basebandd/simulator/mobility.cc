#include "basebandd/simulator/mobility.h"

#include "basebandd/simulator/State.h"

namespace quorin::simulator {

namespace {

constexpr std::int64_t kSearchMs = 1200;          // from power on, or from losing service
constexpr std::int64_t kOtherTechnologyMs = 400;  // without a cell between two technologies
constexpr std::int64_t kCommandMs = 80;           // from measurement report to handover command
constexpr std::int64_t kOutboundMs = 200;
constexpr std::int64_t kInboundMs = 160;
constexpr std::int64_t kUnsuitableMs = 4000;  // before an idle modem looks everywhere

Mode choice(bool isIdle, bool isConnected) {
  return isIdle ? Mode::idle : isConnected ? Mode::connected : Mode::between;
}

Mode modeOf(const State& state) {
  const std::int32_t umts = state.umts.state;
  switch (technology(state)) {
    case Technology::lte: return choice(state.lte.state == lte_rrc::kIdle, state.lte.isConnected());
    case Technology::umts:
      return choice(umts == umts_rrc::kIdle || umts == umts_rrc::kUraPch || umts == umts_rrc::kFach,
                    umts == umts_rrc::kDch);
    case Technology::gsm: return choice(!state.gsm.isDedicated, true);
    default: return Mode::between;
  }
}

// The old technology ends now, with its cause; the new one begins a moment later.
void leave(State& state, const Cell* target, bool staysConnected) {
  Mobility& mobility = state.mobility;
  const Cell& old = *mobility.cell;
  if (old.technology() == Technology::umts)
    state.umts.release(state.now, umts_rrc::kInactive,
                       isSuitable(state, old) ? umts_rrc::kCellChanged : umts_rrc::kNoCell);
  else if (old.technology() == Technology::lte && state.lte.state != lte_rrc::kNull)
    state.lte.move(state.now, lte_rrc::kNull, target ? lte_rrc::kNoCause : lte_rrc::kNoService);
  state.gsm.isDedicated = false;
  state.aggregation.deconfigureAll(state.now);
  mobility.cell = nullptr;
  mobility.target = target;
  mobility.targetAt = state.now + (target ? kOtherTechnologyMs : kSearchMs);
  mobility.staysConnected = staysConnected;
}

void enter(State& state, const Cell& cell) {
  const bool connected = state.mobility.staysConnected;
  campOn(state, cell);
  state.mobility.cameFromOther = true;
  if (cell.technology() == Technology::lte) {
    state.lte.nextAt = state.now + kInboundMs;
    state.lte.move(state.now, connected ? lte_rrc::kInbound : lte_rrc::kIdle, lte_rrc::kNoCause);
  } else if (cell.technology() == Technology::umts) {
    state.umts.establishmentCause = -1;
    state.umts.activeAt = state.now;
    state.umts.move(state.now, connected ? umts_rrc::kDch : umts_rrc::kIdle);
  } else {
    state.gsm.isDedicated = connected && state.traffic.isCalling();
  }
}

void change(State& state, const Cell& target) {
  if (target.technology() == technology(state))
    campOn(state, target);
  else
    leave(state, &target, false);
}

void searchCell(State& state) {
  Mobility& mobility = state.mobility;
  if (state.now < mobility.targetAt) return;
  const Cell* found =
      mobility.target ? mobility.target : bestSuitable(state, Technology::lte, Technology::gsm);
  mobility.targetAt = state.now + kSearchMs;
  if (found) enter(state, *found);
}

// The network knows its subscriber: it hands over to no cell of an area closed to him.
bool isAllowed(const Cell& cell) {
  return cell.technology() != Technology::lte || trackingArea(cell.site->trackingArea).allowed;
}

double returnOffset(const State& state, const Cell& cell) {
  const Mobility& mobility = state.mobility;
  return &cell == mobility.previous && state.now - mobility.since < kRecentlyLeftMs ? kReturnOffset
                                                                                    : 0;
}

// The cell, if any, whose criterion has held for long enough; the highest priority wins, then the
// strongest.
template <class Criterion, class Needed>
const Cell* triggered(State& state, Criterion meets, Needed neededMs) {
  const Cell& serving = *state.mobility.cell;
  const Cell* best = nullptr;
  for (const Cell& cell : cells()) {
    if (&cell == &serving) continue;
    const bool met = isMeasured(state, cell) && isSuitable(state, cell) &&
                     (state.mobility.mode == Mode::idle || isAllowed(cell)) &&
                     meets({*serving.carrier, *cell.carrier, state.radio.of(serving).level,
                            state.radio.of(cell).level, returnOffset(state, cell)});
    const std::int64_t held = state.mobility.held.note(cell, met, state.now);
    if (held < 0 || held < neededMs(cell)) continue;
    if (!best || cell.carrier->priority > best->carrier->priority ||
        (cell.carrier->priority == best->carrier->priority &&
         state.radio.of(cell).level > state.radio.of(*best).level))
      best = &cell;
  }
  return best;
}

void reselect(State& state) {
  Mobility& mobility = state.mobility;
  const Cell& serving = *mobility.cell;
  const Cell* target =
      triggered(state, meetsReselection, [](const Cell&) { return kReselectionMs; });
  if (target && state.now - mobility.since > kCampedAtLeastMs) return change(state, *target);
  if (isSuitable(state, serving)) {
    mobility.unsuitableSince = -1;
    return;
  }
  if (mobility.unsuitableSince < 0) mobility.unsuitableSince = state.now;
  const bool isForbidden = serving.technology() == Technology::lte &&
                           state.registration.isForbidden(serving.site->trackingArea);
  if (!isForbidden && state.now - mobility.unsuitableSince < kUnsuitableMs) return;
  if (const Cell* best = bestSuitable(state, Technology::lte, Technology::gsm))
    change(state, *best);
  else
    leave(state, nullptr, false);
}

void executeHandover(State& state) {
  Mobility& mobility = state.mobility;
  const Cell& target = *mobility.target;
  state.lte.activeAt = state.now;
  if (target.technology() == technology(state)) return campOn(state, target);
  if (technology(state) == Technology::lte) {
    state.lte.nextAt = state.now + kOutboundMs;
    return state.lte.move(state.now, lte_rrc::kOutbound, lte_rrc::kNoCause);
  }
  leave(state, &target, true);
}

void handOver(State& state) {
  Mobility& mobility = state.mobility;
  if (mobility.target) {
    if (state.now >= mobility.targetAt) executeHandover(state);
    return;
  }
  const Cell& serving = *mobility.cell;
  mobility.target = triggered(
      state, [](const Candidates& candidates) { return meetsHandover(candidates); },
      [&](const Cell& cell) { return timeToTriggerMs(*serving.carrier, *cell.carrier); });
  if (!mobility.target) return;
  mobility.targetAt = state.now + kCommandMs;
  ++mobility.reported;
}

}  // namespace

void campOn(State& state, const Cell& cell) {
  Mobility& mobility = state.mobility;
  state.aggregation.deconfigureAll(state.now);
  mobility.previous = mobility.cell;
  mobility.cell = &cell;
  mobility.since = state.now;
  mobility.target = nullptr;
  mobility.staysConnected = false;
  mobility.cameFromOther = false;
  mobility.unsuitableSince = -1;
  mobility.held.reset();
}

void stepMobility(State& state) {
  Mobility& mobility = state.mobility;
  if (!mobility.cell) {
    if (!mobility.target && mobility.targetAt == 0) mobility.targetAt = kSearchMs;
    return searchCell(state);
  }
  if (technology(state) == Technology::lte && state.lte.state == lte_rrc::kOutbound) {
    if (state.now < state.lte.nextAt) return;
    state.lte.move(state.now, lte_rrc::kNull, lte_rrc::kHandedOut);
    return leave(state, mobility.target, true);
  }
  const Mode mode = modeOf(state);
  if (mode != mobility.mode) {
    mobility.held.reset();
    mobility.target = nullptr;
    mobility.unsuitableSince = -1;
  }
  mobility.mode = mode;
  if (mode == Mode::connected) handOver(state);
  if (mode == Mode::idle) reselect(state);
}

}  // namespace quorin::simulator
