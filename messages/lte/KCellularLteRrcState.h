#pragma once

#include "messages/codec/fields.h"
#include "messages/lte/names.h"

namespace quorin {

/// Where the LTE RRC state machine stands (3GPP TS 36.331), for how long it stood before, and why it moved.
class KCellularLteRrcState final : public Message<KCellularLteRrcState> {
  PB_MESSAGE(KCellularLteRrcState)
  PB_UINT64(1, "timestamp",         timestamp,      Timestamp)
  PB_ENUM  (2, "state",             state,          State,     names::KLTE_RRC_STATE)
  PB_ENUM  (3, "prev_state",        prevState,      PrevState, names::KLTE_RRC_STATE)
  PB_UINT32(4, "prev_state_dur_ms", prevStateDurMs, PrevStateDurMs)
  PB_ENUM  (5, "cause",             cause,          Cause,     names::KLTE_RRC_CAUSE)
};

}  // namespace quorin
