#pragma once

#include "messages/codec/fields.h"
#include "messages/lte/names.h"

namespace quorin {

/// Connected-mode DRX timers and cycles (3GPP TS 36.321, 5.7).
class KCellularLteCdrxConfig final : public Message<KCellularLteCdrxConfig> {
  PB_MESSAGE(KCellularLteCdrxConfig)
  PB_UINT64( 1, "timestamp",           timestamp,        Timestamp)
  PB_UINT32( 2, "cell_status",         cellStatus,       CellStatus)
  PB_UINT32( 3, "on_duration_ms",      onDurationMs,     OnDurationMs)
  PB_UINT32( 4, "drx_inactivity_ms",   drxInactivityMs,  DrxInactivityMs)
  PB_UINT32( 5, "drx_retx_timer_ms",   drxRetxTimerMs,   DrxRetxTimerMs)
  PB_UINT32( 7, "long_drx_cycle_ms",   longDrxCycleMs,   LongDrxCycleMs)
  PB_UINT32(10, "short_drx_cycle_ms",  shortDrxCycleMs,  ShortDrxCycleMs)
  PB_UINT32(11, "drx_short_cycle_num", drxShortCycleNum, DrxShortCycleNum)
  PB_ENUM  (12, "rrc_state",           rrcState,         RrcState, names::KLTE_RRC_STATE)
  PB_UINT32(13, "cdrx_config_status",  cdrxConfigStatus, CdrxConfigStatus)
  PB_UINT32(14, "transmission_mode",   transmissionMode, TransmissionMode)
};

}  // namespace quorin
