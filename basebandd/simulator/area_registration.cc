#include <string_view>

#include "basebandd/simulator/State.h"

namespace quorin::simulator {

namespace {

using names::KNAS_MM_PROC_FAILURE_CAUSE;
using names::KNAS_MM_REG_PROC;
using names::KNAS_MM_REJ_CAUSE;
using names::KREG_STATUS;

constexpr std::int32_t kNormal = valueOf(KREG_STATUS, "KREG_STATUS_NORMAL_SERVICE");
constexpr std::int32_t kFailed = valueOf(KREG_STATUS, "KREG_STATUS_REGISTRATION_FAILURE");
constexpr std::int32_t kInProgress = valueOf(KREG_STATUS, "KREG_STATUS_REGISTRATION_IN_PROGRESS");
constexpr std::int32_t kNoFailure =
    valueOf(KNAS_MM_PROC_FAILURE_CAUSE, "KNAS_MM_PROC_FAILURE_CAUSE_NONE");
constexpr std::int32_t kRejectedByNetwork =
    valueOf(KNAS_MM_PROC_FAILURE_CAUSE, "KNAS_MM_PROC_FAILURE_CAUSE_REJECTED_BY_NW");
constexpr std::int32_t kNoCause = valueOf(KNAS_MM_REJ_CAUSE, "KNAS_MM_REJ_CAUSE_NONE");
constexpr std::int32_t kNetworkFailure = valueOf(KNAS_MM_REJ_CAUSE, "KNAS_MM_REJ_CAUSE_NW_FAILURE");

/// Network operation mode I makes one combined update, mode II two (TS 23.060 6.3.3).
struct Procedure {
  Technology technology;
  std::int32_t procedure;
  bool isCombined;
  std::int64_t answerMs;
};
constexpr Procedure kProcedures[] = {
    {Technology::umts, valueOf(KNAS_MM_REG_PROC, "KNAS_MM_REG_PROC_COMBINED_RAU"), true, 600},
    {Technology::gsm, valueOf(KNAS_MM_REG_PROC, "KNAS_MM_REG_PROC_ROUTING_AREA_UPDATE"), false,
     1480},
};

constexpr double kRefusedPercent = 10;
constexpr std::int64_t kRetryMs = 15000;  // T3311
constexpr double kNewIdentityPercent = 50;

void settle(AreaRegistration& area, std::int32_t status) {
  area.isPending = false;
  area.answerAt = -1;
  area.csStatus = area.psStatus = status;
}

void answer(State& state, std::uint32_t locationArea) {
  AreaRegistration& area = state.registration.area;
  Random& random = state.registration.random;
  if (random.chance(kRefusedPercent)) {
    area.failure = kRejectedByNetwork;
    area.rejectCause = kNetworkFailure;
    area.notBefore = state.now + kRetryMs;
    return settle(area, kFailed);
  }
  const bool isFirst = area.locationArea == 0;
  area.locationArea = locationArea;
  // TS 23.003 2.4: a TMSI's two highest bits are not both set, a P-TMSI's are.
  if (isFirst || random.chance(kNewIdentityPercent))
    area.tmsi = static_cast<std::uint32_t>(random.next() >> 34) | 0x40000000;
  if (isFirst || random.chance(kNewIdentityPercent))
    area.pTmsi = static_cast<std::uint32_t>(random.next() >> 34) | 0xC0000000;
  settle(area, kNormal);
}

}  // namespace

void stepAreaRegistration(State& state) {
  AreaRegistration& area = state.registration.area;
  const Procedure* procedure = nullptr;
  for (const Procedure& row : kProcedures)
    if (row.technology == technology(state)) procedure = &row;
  if (!procedure) {
    if (area.isPending) settle(area, kFailed);
    return;
  }
  const std::uint32_t here = state.mobility.cell->locationArea();
  if (here == area.locationArea) {
    if (area.isPending || area.psStatus != kNormal) settle(area, kNormal);
    return;
  }
  if (!area.isPending) {
    if (state.now < area.notBefore || state.mobility.since == state.now || state.gsm.isDedicated)
      return;
    area.procedure = procedure->procedure;
    area.isCombined = procedure->isCombined;
    area.failure = kNoFailure;
    area.rejectCause = kNoCause;
    area.csStatus = area.psStatus = kInProgress;
    area.isPending = true;
    area.answerAt = -1;
    return;
  }
  const bool canTalk =
      procedure->technology == Technology::gsm || state.umts.state == umts_rrc::kDch;
  if (!canTalk)
    area.answerAt = -1;
  else if (area.answerAt < 0)
    area.answerAt = state.now + procedure->answerMs;
  else if (state.now >= area.answerAt)
    answer(state, here);
}

}  // namespace quorin::simulator
