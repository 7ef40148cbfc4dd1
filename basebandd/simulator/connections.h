#pragma once

#include <cstdint>

#include "basebandd/simulator/Random.h"
#include "basebandd/simulator/streams.h"
#include "messages/lte/names.h"
#include "messages/umts/names.h"

namespace quorin::simulator {

struct State;

namespace lte_rrc {

using names::KLTE_RRC_CAUSE;
using names::KLTE_RRC_STATE;

inline constexpr std::int32_t kNull = valueOf(KLTE_RRC_STATE, "KLTE_RRC_STATE_NULL");
inline constexpr std::int32_t kIdle = valueOf(KLTE_RRC_STATE, "KLTE_RRC_STATE_IDLE");
inline constexpr std::int32_t kAttempt = valueOf(KLTE_RRC_STATE, "KLTE_RRC_STATE_ATMPT_CONNECTION");
inline constexpr std::int32_t kConnected = valueOf(KLTE_RRC_STATE, "KLTE_RRC_STATE_CONNECTED");
inline constexpr std::int32_t kEnding = valueOf(KLTE_RRC_STATE, "KLTE_RRC_STATE_ENDING");
inline constexpr std::int32_t kOutbound =
    valueOf(KLTE_RRC_STATE, "KLTE_RRC_STATE_ATMPT_OUTBND_MOBILITY");
inline constexpr std::int32_t kInbound =
    valueOf(KLTE_RRC_STATE, "KLTE_RRC_STATE_ATMPT_INBND_MOBILITY");

inline constexpr std::int32_t kNoCause = valueOf(KLTE_RRC_CAUSE, "KLTE_RRC_CAUSE_NA");
inline constexpr std::int32_t kNoService = valueOf(KLTE_RRC_CAUSE, "KLTE_RRC_CAUSE_NO_SERVICE");
inline constexpr std::int32_t kSignalling = valueOf(KLTE_RRC_CAUSE, "KLTE_RRC_CAUSE_EST_MO_SIGNAL");
inline constexpr std::int32_t kNoResponse =
    valueOf(KLTE_RRC_CAUSE, "KLTE_RRC_CAUSE_EST_FAIL_NO_RESP_FROM_CELL");
inline constexpr std::int32_t kRejected = valueOf(KLTE_RRC_CAUSE, "KLTE_RRC_CAUSE_EST_FAIL_REJ");
inline constexpr std::int32_t kReleased = valueOf(KLTE_RRC_CAUSE, "KLTE_RRC_CAUSE_REL_OTHER");
inline constexpr std::int32_t kReestablished =
    valueOf(KLTE_RRC_CAUSE, "KLTE_RRC_CAUSE_REEST_OTHER_FAIL_T310_EXP");
inline constexpr std::int32_t kNoCellFound =
    valueOf(KLTE_RRC_CAUSE, "KLTE_RRC_CAUSE_REL_CONN_FAIL_T311_EXP");
inline constexpr std::int32_t kOtherTechnologyFound =
    valueOf(KLTE_RRC_CAUSE, "KLTE_RRC_CAUSE_REL_CONN_FAIL_IRAT_RESEL");
inline constexpr std::int32_t kHandedOut =
    valueOf(KLTE_RRC_CAUSE, "KLTE_RRC_CAUSE_REL_SUCC_MOB_FROM_EUTRAN");
inline constexpr std::int32_t kHandedIn =
    valueOf(KLTE_RRC_CAUSE, "KLTE_RRC_CAUSE_EST_SUCC_MOB_TO_EUTRAN");

}  // namespace lte_rrc

namespace umts_rrc {

using names::KRRC_EST;
using names::KRRC_REL;
using names::KWCDMA_RRC_CONN_STATE;

inline constexpr std::int32_t kInactive =
    valueOf(KWCDMA_RRC_CONN_STATE, "KWCDMA_RRC_CONN_STATE_INACTIVE");
inline constexpr std::int32_t kIdle = valueOf(KWCDMA_RRC_CONN_STATE, "KWCDMA_RRC_CONN_STATE_IDLE");
inline constexpr std::int32_t kEstablish =
    valueOf(KWCDMA_RRC_CONN_STATE, "KWCDMA_RRC_CONN_STATE_ESTABLISH");
inline constexpr std::int32_t kUraPch =
    valueOf(KWCDMA_RRC_CONN_STATE, "KWCDMA_RRC_CONN_STATE_URA_PCH");
inline constexpr std::int32_t kFach =
    valueOf(KWCDMA_RRC_CONN_STATE, "KWCDMA_RRC_CONN_STATE_CELL_FACH");
inline constexpr std::int32_t kDch =
    valueOf(KWCDMA_RRC_CONN_STATE, "KWCDMA_RRC_CONN_STATE_CELL_DCH");
inline constexpr std::int32_t kRelease =
    valueOf(KWCDMA_RRC_CONN_STATE, "KWCDMA_RRC_CONN_STATE_RELEASE");
inline constexpr std::int32_t kFailure =
    valueOf(KWCDMA_RRC_CONN_STATE, "KWCDMA_RRC_CONN_STATE_RADIO_LINK_FAILURE");

inline constexpr std::int32_t kRegistering = valueOf(KRRC_EST, "KRRC_EST_REGISTRATION");
inline constexpr std::int32_t kReselected = valueOf(KRRC_EST, "KRRC_EST_INTER_RAT_CELL_RESELECT");
inline constexpr std::int32_t kNormalEvent = valueOf(KRRC_REL, "KRRC_REL_NORMAL_EVENT");
inline constexpr std::int32_t kCellChanged = valueOf(KRRC_REL, "KRRC_REL_CELL_CHANGED");
inline constexpr std::int32_t kNoCell = valueOf(KRRC_REL, "KRRC_REL_NO_CELL");
inline constexpr std::int32_t kDownlinkLost =
    valueOf(KRRC_REL, "KRRC_REL_CONN_REL_LOWER_LAYER_FAILURE_DL");

}  // namespace umts_rrc

/// The LTE RRC connection (TS 36.331 5.3). Times are ms since the drive began.
struct LteConnection {
  explicit LteConnection(std::uint64_t seed) : random(seed, streams::kConnection) {}

  /// To another state, for a cause. At most one move a step, so that each is reported.
  void move(std::int64_t now, std::int32_t to, std::int32_t why);
  [[nodiscard]] bool isConnected() const { return state == lte_rrc::kConnected; }

  Random random;
  std::int32_t state = lte_rrc::kNull;
  std::int32_t previous = lte_rrc::kNull;
  std::int32_t cause = lte_rrc::kNoCause;
  std::int64_t since = 0;
  std::uint32_t previousMs = 0;
  std::int64_t nextAt = 0;       // when the state under way ends
  std::int64_t barredUntil = 0;  // after a failed attempt
  std::int64_t activeAt = 0;     // when data or signalling last went through
  std::int64_t lostSync = -1;    // T310 runs since then; -1: it does not
  bool isReestablishing = false;
  bool carriedData = false;  // not only signalling
};

/// The UMTS RRC connection (TS 25.331 7).
struct UmtsConnection {
  void move(std::int64_t now, std::int32_t to);
  /// To a state without connection.
  void release(std::int64_t now, std::int32_t to, std::int32_t why);
  [[nodiscard]] bool isConnected() const {
    return state == umts_rrc::kDch || state == umts_rrc::kFach || state == umts_rrc::kUraPch;
  }

  std::int32_t state = umts_rrc::kInactive;
  std::int32_t establishmentCause = -1;  // -1: none
  std::int32_t releaseCause = -1;        // -1: none
  std::int64_t since = 0;
  std::int64_t activeAt = 0;
  std::int64_t lostSync = -1;
  bool wasEverActive = false;
};

/// The circuit-switched GSM call, if there is one.
struct GsmCall {
  bool isDedicated = false;
  std::int64_t since = 0;
};

/// Each does one step of its connection at the state's time.
void stepLteConnection(State& state);
void stepUmtsConnection(State& state);
void stepGsmCall(State& state);

}  // namespace quorin::simulator
