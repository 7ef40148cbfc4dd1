#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "basebandd/simulator/Random.h"
#include "basebandd/simulator/streams.h"
#include "messages/nas/names.h"

namespace quorin::simulator {

struct State;

/// Registration for EPS services (TS 24.301). The phone is in PS mode 1, calls over LTE are IMS
/// calls, and ISR (TS 23.401 4.3.5.6) keeps the registrations of LTE and of the older technologies
/// valid side by side: coming back to a listed tracking area needs no update.
struct EpsRegistration {
  std::int32_t status = valueOf(names::KREG_STATUS, "KREG_STATUS_NO_SERVICE");
  std::int32_t update = valueOf(names::EPS_STATUS, "EPS_STATUS_NOT_UPDATED");
  std::int32_t procedure = valueOf(names::EMM_PROC, "EMM_PROC_NO_PROC");
  std::int32_t rejectCause = valueOf(names::EMM_CAUSE, "EMM_CAUSE_NO_CAUSE");
  std::vector<std::uint32_t> listed;  // TACs of the TAI list; empty: not registered
  std::optional<std::uint32_t> mTmsi;
  bool isPending = false;      // a request waits for a connection or an answer
  std::int64_t answerAt = -1;  // ms since the drive began; -1: the request is not out yet
  std::int64_t notBefore = 0;  // after a rejection
};

/// Registration of UMTS and GSM (TS 24.008): the two domains' areas as last accepted.
struct AreaRegistration {
  std::uint32_t locationArea = 0;  // LAC of LAI and RAI; 0: not registered
  std::uint32_t tmsi = 0;
  std::uint32_t pTmsi = 0;
  std::int32_t csStatus = valueOf(names::KREG_STATUS, "KREG_STATUS_AT_NOT_REGISTERED");
  std::int32_t psStatus = valueOf(names::KREG_STATUS, "KREG_STATUS_AT_NOT_REGISTERED");
  std::int32_t failure =
      valueOf(names::KNAS_MM_PROC_FAILURE_CAUSE, "KNAS_MM_PROC_FAILURE_CAUSE_NONE");
  std::int32_t rejectCause = valueOf(names::KNAS_MM_REJ_CAUSE, "KNAS_MM_REJ_CAUSE_NONE");
  std::int32_t procedure = valueOf(names::KNAS_MM_REG_PROC, "KNAS_MM_REG_PROC_PROC_NONE");
  bool isCombined = false;  // network operation mode I: one update for both domains
  bool isPending = false;
  std::int64_t answerAt = -1;
  std::int64_t notBefore = 0;
};

struct Registration {
  explicit Registration(std::uint64_t seed) : random(seed, streams::kRegistration) {}

  [[nodiscard]] bool isForbidden(std::uint32_t tac) const;
  [[nodiscard]] bool isListed(std::uint32_t tac) const;

  Random random;
  EpsRegistration eps;
  AreaRegistration area;
  std::vector<std::uint32_t> forbidden;  // TACs "forbidden tracking areas for roaming"
};

/// One step of each domain's registration at the state's time.
void stepRegistration(State& state);

inline constexpr std::uint32_t kMmeGroup = 32769;
inline constexpr std::uint32_t kMmeCode = 1;
inline constexpr std::uint32_t kRoutingAreaCode = 1;
// Long enough not to run out between two connections of a drive.
inline constexpr std::uint32_t kT3412Seconds = 3240;
inline constexpr std::uint32_t kT3312Seconds = 3240;
inline constexpr std::uint32_t kT3212Seconds = 3600;

}  // namespace quorin::simulator
