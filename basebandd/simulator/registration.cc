#include "basebandd/simulator/registration.h"

#include <algorithm>

#include "basebandd/simulator/State.h"

namespace quorin::simulator {

namespace {

constexpr std::int32_t status(std::string_view name) {
  for (const EnumName& row : names::KREG_STATUS.names)
    if (row.name.substr(12) == name) return row.value;
  return -1;
}
constexpr std::int32_t kNormal = status("NORMAL_SERVICE");
constexpr std::int32_t kFailed = status("REGISTRATION_FAILURE");
constexpr std::int32_t kLimited = status("LIMITED_SERVICE");
constexpr std::int32_t kInProgress = status("REGISTRATION_IN_PROGRESS");

constexpr std::int32_t kUpdated = valueOf(names::EPS_STATUS, "EPS_STATUS_UPDATED");
constexpr std::int32_t kNotUpdated = valueOf(names::EPS_STATUS, "EPS_STATUS_NOT_UPDATED");
constexpr std::int32_t kRoamingNotAllowed =
    valueOf(names::EPS_STATUS, "EPS_STATUS_ROAMING_NOT_ALLOWED");

constexpr std::int32_t kNoProcedure = valueOf(names::EMM_PROC, "EMM_PROC_NO_PROC");
constexpr std::int32_t kAttach = valueOf(names::EMM_PROC, "EMM_PROC_ATTACH");
constexpr std::int32_t kUpdate = valueOf(names::EMM_PROC, "EMM_PROC_TAU");

constexpr std::int32_t kNoCause = valueOf(names::EMM_CAUSE, "EMM_CAUSE_NO_CAUSE");
constexpr std::int32_t kNoIdentity =
    valueOf(names::EMM_CAUSE, "EMM_CAUSE_UE_IDENTITY_CANNOT_BE_DERIVED_BY_NETWORK");
constexpr std::int32_t kNetworkFailure = valueOf(names::EMM_CAUSE, "EMM_CAUSE_NETWORK_FAILURE");
constexpr std::int32_t kNoSuitableCells =
    valueOf(names::EMM_CAUSE, "EMM_CAUSE_NO_SUITABLE_CELLS_IN_TRACKING_AREA");

/// What a core network refuses now and then, and what the phone makes of it (TS 24.301 5.5.1.2.5
/// and 5.5.3.2.5).
struct Refusal {
  std::int32_t procedure;
  double percent;
  std::int32_t cause;
  std::int64_t retryMs;    // T3411, or at once
  bool losesRegistration;  // GUTI and TAI list are no longer valid
};
constexpr Refusal kRefusals[] = {
    {kAttach, 25, kNetworkFailure, 10000, true},
    {kUpdate, 12, kNoIdentity, 200, true},
    {kUpdate, 8, kNetworkFailure, 10000, false},
};

constexpr std::int64_t kAnswerMs = 480;
constexpr double kNewIdentityPercent = 60;
// TS 23.003 2.4: the two highest bits tell an M-TMSI or P-TMSI that maps from a TMSI that does not.
constexpr std::uint32_t kMapped = 0xC0000000;

std::uint32_t newIdentity(Random& random) {
  return kMapped | static_cast<std::uint32_t>(random.next() >> 34);
}

void ask(EpsRegistration& eps) {
  eps.procedure = eps.listed.empty() ? kAttach : kUpdate;
  eps.status = kInProgress;
  eps.rejectCause = kNoCause;
  eps.isPending = true;
  eps.answerAt = -1;
}

void settle(EpsRegistration& eps, std::int32_t status, std::int32_t update) {
  eps.isPending = false;
  eps.answerAt = -1;
  eps.status = status;
  eps.update = update;
}

void accept(State& state, const TrackingArea& area) {
  EpsRegistration& eps = state.registration.eps;
  eps.listed.clear();
  for (const std::uint32_t tac : area.listed)
    if (tac != 0) eps.listed.push_back(tac);
  if (!eps.mTmsi || state.registration.random.chance(kNewIdentityPercent))
    eps.mTmsi = newIdentity(state.registration.random);
  settle(eps, kNormal, kUpdated);
}

void refuse(State& state, const Refusal& refusal) {
  EpsRegistration& eps = state.registration.eps;
  eps.rejectCause = refusal.cause;
  eps.notBefore = state.now + refusal.retryMs;
  if (refusal.losesRegistration) {
    eps.listed.clear();
    eps.mTmsi.reset();
  }
  settle(eps, kFailed, kNotUpdated);
}

void answer(State& state) {
  EpsRegistration& eps = state.registration.eps;
  const TrackingArea& area = trackingArea(state.mobility.cell->site->trackingArea);
  if (!area.allowed) {
    state.registration.forbidden.push_back(area.tac);
    eps.rejectCause = kNoSuitableCells;
    return settle(eps, kLimited, kRoamingNotAllowed);
  }
  for (const Refusal& refusal : kRefusals)
    if (refusal.procedure == eps.procedure && state.registration.random.chance(refusal.percent))
      return refuse(state, refusal);
  accept(state, area);
}

void stepEps(State& state) {
  EpsRegistration& eps = state.registration.eps;
  if (technology(state) != Technology::lte) {
    if (eps.isPending) settle(eps, kFailed, kNotUpdated);
    return;
  }
  const std::uint32_t tac = state.mobility.cell->site->trackingArea;
  const bool isListed = state.registration.isListed(tac);
  if (isListed && (eps.isPending || eps.status != kNormal)) {
    eps.procedure = kNoProcedure;
    eps.rejectCause = kNoCause;
    eps.notBefore = 0;
    return settle(eps, kNormal, kUpdated);
  }
  if (!eps.isPending) {
    const bool mayAsk = state.now >= eps.notBefore && !state.registration.isForbidden(tac) &&
                        state.lte.since < state.now &&
                        (state.lte.state == lte_rrc::kIdle || state.lte.isConnected());
    if (!isListed && mayAsk) ask(eps);
    return;
  }
  if (!state.lte.isConnected()) {
    eps.answerAt = -1;
  } else if (eps.answerAt < 0) {
    eps.answerAt = state.now + kAnswerMs;
  } else if (state.now >= eps.answerAt) {
    answer(state);
  }
}

}  // namespace

bool Registration::isForbidden(std::uint32_t tac) const {
  return std::ranges::find(forbidden, tac) != forbidden.end();
}

bool Registration::isListed(std::uint32_t tac) const {
  return std::ranges::find(eps.listed, tac) != eps.listed.end();
}

void stepAreaRegistration(State& state);

void stepRegistration(State& state) {
  stepEps(state);
  stepAreaRegistration(state);
}

}  // namespace quorin::simulator
